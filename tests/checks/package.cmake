# Installs the build into an empty folder and lets a project outside use it.
# Run as: cmake -DBUILD=<build tree> -DSOURCE=<tests/package> -DWORK=<folder> -P package.cmake
file(REMOVE_RECURSE "${WORK}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}/prefix"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${WORK}/build" -G Ninja
    "-DCMAKE_PREFIX_PATH=${WORK}/prefix"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK}/build"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${WORK}/build/uses_package" COMMAND_ERROR_IS_FATAL ANY)
# The installed programs find the library beside them.
execute_process(COMMAND "${WORK}/prefix/bin/kelsd" parse service:zdrest.tamro:http://10.0.0.5:8080 --json
  COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${WORK}/prefix/sbin/slpd" --version COMMAND_ERROR_IS_FATAL ANY)
