# What `cmake --install` puts into a directory is all there, agrees with itself, and starts.
#   cmake -DBUILD=... -DVERSION=... -P install_test.cmake
set(root ${BUILD}/install_test)
file(REMOVE_RECURSE ${root})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${root} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)

foreach(name bin/TessalyAndDocContent share/man/man1/TessalyAndDocContent.1.gz
        share/bash-completion/completions/TessalyAndDocContent share/applications/io.github.tessaly.Lens.desktop
        share/icons/hicolor/scalable/apps/tessaly-lens.svg share/mime/packages/tessaly-lens.xml
        share/metainfo/io.github.tessaly.Lens.metainfo.xml share/doc/tessaly-lens/copyright
        share/doc/tessaly-lens/README.md share/doc/tessaly-lens/docs/command.schema.json
        share/tessaly-lens/LICENSE share/tessaly-lens/THIRD_PARTY.md share/tessaly-lens/docs/guide.md
        share/tessaly-lens/docs/pictures/form1.png)
  if(NOT EXISTS ${root}/${name})
    message(FATAL_ERROR "${name} is not installed")
  endif()
endforeach()

execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=DISPLAY QT_QPA_PLATFORM=none
  ${root}/bin/TessalyAndDocContent --version OUTPUT_VARIABLE told COMMAND_ERROR_IS_FATAL ANY)
if(NOT told STREQUAL "TessalyAndDocContent ${VERSION}\n")
  message(FATAL_ERROR "the installed program says: ${told}")
endif()

file(READ ${root}/share/applications/io.github.tessaly.Lens.desktop desktop)
foreach(line "Exec=TessalyAndDocContent %F" "MimeType=application/x-dxl.xml;" "Icon=tessaly-lens")
  if(NOT desktop MATCHES "\n${line}\n")
    message(FATAL_ERROR "the desktop entry lacks ${line}")
  endif()
endforeach()
file(READ ${root}/share/metainfo/io.github.tessaly.Lens.metainfo.xml metainfo)
if(NOT metainfo MATCHES "<release version=\"${VERSION}\" date=\"[0-9-]+\"/>")
  message(FATAL_ERROR "the metainfo does not tell the version")
endif()
file(REMOVE_RECURSE ${root})
