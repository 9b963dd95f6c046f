# What `cmake --install` puts where, and the Debian package of it. Neither builds anything.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)
include(GNUInstallDirs)

set(CPACK_PACKAGE_NAME tessaly-lens)
set(CPACK_PACKAGE_VENDOR "Tessaly Lens")
set(CPACK_PACKAGE_CONTACT "The Tessaly Lens authors <maintainers@tessaly-lens.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "inspect and repair Notes and Domino databases")
set(CPACK_PACKAGE_DESCRIPTION "Shows what the Notes client hides: every item of a document with its type,
flags and stored size, the parts of a message, design notes as the database
keeps them. Works beside the client, or alone on databases that come as DXL.
Commands list, import, export, compare and check databases without a window.")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION database)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
# The libraries that the program asks for, with the versions that it was built with.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Windows need a platform, which comes with this one; commands do not.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-qpa-plugins, qt6-translations-l10n")

# A date that a build can be told (SOURCE_DATE_EPOCH), so that it can be made again byte for byte.
string(TIMESTAMP LENS_RELEASE_DATE %Y-%m-%d UTC)
string(TIMESTAMP LENS_RELEASE_MOMENT "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(made ${PROJECT_BINARY_DIR}/packaging)
configure_file(packaging/io.github.tessaly.Lens.metainfo.xml.in ${made}/io.github.tessaly.Lens.metainfo.xml @ONLY)
configure_file(packaging/changelog.in ${made}/changelog @ONLY)
configure_file(packaging/TessalyAndDocContent.1 ${made}/TessalyAndDocContent.1 COPYONLY)
# As packages have them: compressed, without a name or time of their own inside.
find_program(GZIP gzip REQUIRED)
execute_process(COMMAND ${GZIP} -9nfk changelog TessalyAndDocContent.1 WORKING_DIRECTORY ${made}
                COMMAND_ERROR_IS_FATAL ANY)

set(doc ${CMAKE_INSTALL_DATADIR}/doc/tessaly-lens)
install(TARGETS TessalyAndDocContent RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${made}/TessalyAndDocContent.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES packaging/TessalyAndDocContent.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        RENAME TessalyAndDocContent)
install(FILES packaging/io.github.tessaly.Lens.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES packaging/tessaly-lens.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES packaging/tessaly-lens.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
install(FILES ${made}/io.github.tessaly.Lens.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
# What the help menu shows. The program looks for it beside itself, in a directory that no system leaves out; the directory
# for documents leads there.
set(shipped ${CMAKE_INSTALL_DATADIR}/tessaly-lens)
foreach(name ${LENS_DOCUMENTS})
  cmake_path(GET name PARENT_PATH place)
  if(IS_DIRECTORY ${PROJECT_SOURCE_DIR}/${name})
    install(DIRECTORY ${name} DESTINATION ${shipped}/${place})
  else()
    install(FILES ${name} DESTINATION ${shipped}/${place})
  endif()
endforeach()
if(LENS_LRELEASE)
  install(DIRECTORY ${PROJECT_BINARY_DIR}/share/tessaly-lens/translations DESTINATION ${shipped})
endif()
file(MAKE_DIRECTORY ${made}/links)
foreach(name README.md CHANGELOG.md SECURITY.md THIRD_PARTY.md docs)
  file(CREATE_LINK ../../tessaly-lens/${name} ${made}/links/${name} SYMBOLIC)
  install(FILES ${made}/links/${name} DESTINATION ${doc})
endforeach()
install(FILES ${made}/changelog.gz DESTINATION ${doc})
install(FILES LICENSE DESTINATION ${doc} RENAME copyright)

include(CPack)
