# The Debian package of what was built: made, unpacked into a root of its own, started there.
#   cmake -DSOURCE=... -DBUILD=... -DCPACK=... -P package_test.cmake
set(place ${BUILD}/package_test)
file(REMOVE_RECURSE ${place})
execute_process(COMMAND ${CPACK} -G DEB --config ${BUILD}/CPackConfig.cmake -B ${place} COMMAND_ERROR_IS_FATAL ANY
                OUTPUT_QUIET)
file(GLOB package ${place}/*.deb)
execute_process(COMMAND ${SOURCE}/scripts/check_package.sh ${package} COMMAND_ERROR_IS_FATAL ANY)
file(REMOVE_RECURSE ${place})
