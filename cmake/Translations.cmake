# The program's texts in other languages: translations/tessaly-lens_*.ts, one table each, are made into what the program
# loads beside itself (host/shipped_files.h). Without the tool the program speaks English.
#
# `make translations` brings the tables up to date with the sources and names what is still to be put into words.
find_program(LENS_LRELEASE lrelease HINTS /usr/lib/qt6/bin)
find_program(LENS_LUPDATE lupdate HINTS /usr/lib/qt6/bin)
file(GLOB tables CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/translations/*.ts)

if(LENS_LRELEASE AND tables)
  set(made_tables)
  foreach(table ${tables})
    cmake_path(GET table STEM name)
    set(made ${PROJECT_BINARY_DIR}/share/tessaly-lens/translations/${name}.qm)
    add_custom_command(OUTPUT ${made} DEPENDS ${table}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/share/tessaly-lens/translations
      COMMAND ${LENS_LRELEASE} -silent -removeidentical ${table} -qm ${made})
    list(APPEND made_tables ${made})
  endforeach()
  add_custom_target(translations ALL DEPENDS ${made_tables})
  add_dependencies(TessalyAndDocContent translations)
else()
  message(STATUS "lrelease is not there: the program is built without translations")
endif()
