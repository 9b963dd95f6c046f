# Every text of the sources has its German, and what counts its English for one and for many: what lacks is named.
#   cmake -DSOURCE=... -DBUILD=... -DLUPDATE=... -P translations_test.cmake
set(copy ${BUILD}/translations_test/tessaly-lens_de.ts)
set(english ${BUILD}/translations_test/tessaly-lens_en.ts)
file(COPY ${SOURCE}/translations/tessaly-lens_de.ts ${SOURCE}/translations/tessaly-lens_en.ts
  DESTINATION ${BUILD}/translations_test)
execute_process(COMMAND ${CMAKE_COMMAND} -E env LUPDATE=${LUPDATE} ${SOURCE}/scripts/translations.sh ${copy} ${english}
  OUTPUT_VARIABLE told ERROR_VARIABLE failure RESULT_VARIABLE code)
if(NOT code EQUAL 0)
  message(FATAL_ERROR "${told}${failure}Put it into words in translations/ (make translations).")
endif()
file(READ ${copy} table)
string(REGEX MATCHALL "<source>" sources "${table}")
list(LENGTH sources count)
if(count LESS 300)
  message(FATAL_ERROR "only ${count} texts were found in the sources")
endif()
file(REMOVE_RECURSE ${BUILD}/translations_test)
