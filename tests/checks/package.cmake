cmake_minimum_required(VERSION 3.25)

# Unpacks the archive that cpack makes of the build into an empty folder, lets a project outside use what is in it, and
# runs the programs from there.
# Run as: cmake -DBUILD=<build tree> -DSOURCE=<tests/package> -DWORK=<folder> -DLISTED=<files.txt> -DSYSTEM=<name>
#     [-DTOOLCHAIN=<file> -DEMULATOR=<program>] -P package.cmake
#
# LISTED names what the archive must hold, one file a line, for the system SYSTEM: "name" or "name [SYSTEM]".
# EMULATOR is called with a folder of its own and the program; the folder doesn't exist before.
file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
get_filename_component(bin "${CMAKE_COMMAND}" DIRECTORY)
execute_process(COMMAND "${bin}/cpack" --config "${BUILD}/CPackConfig.cmake" -B "${WORK}/archive"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(GLOB archive "${WORK}/archive/KelServiceDiscovery-*")
list(FILTER archive INCLUDE REGEX "\\.(zip|tar\\.gz)$")
file(ARCHIVE_EXTRACT INPUT "${archive}" DESTINATION "${WORK}/unpacked")
file(GLOB prefix "${WORK}/unpacked/*")

file(STRINGS "${LISTED}" rows REGEX "^[^#]")
foreach(row IN LISTS rows)
  string(REGEX MATCH "^([^ ]+) *(.*)$" _ "${row}")
  if(CMAKE_MATCH_2 STREQUAL "" OR CMAKE_MATCH_2 STREQUAL SYSTEM)
    file(GLOB found "${prefix}/${CMAKE_MATCH_1}")
    if(NOT found)
      message(FATAL_ERROR "${archive} lacks ${CMAKE_MATCH_1}.")
    endif()
  endif()
endforeach()

set(toolchain "")
if(TOOLCHAIN)
  set(toolchain "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}")
endif()
if(EMULATOR)
  list(APPEND EMULATOR "${WORK}/emulated")
endif()
if(SYSTEM STREQUAL "Windows")
  set(suffix .exe)
  set(daemon "${prefix}/bin/slpd.exe")
else()
  set(daemon "${prefix}/sbin/slpd")
endif()
file(GLOB package "${prefix}/lib*/cmake/KelServiceDiscovery" "${prefix}/lib*/*/cmake/KelServiceDiscovery")
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${WORK}/build" -G Ninja ${toolchain}
    "-DKelServiceDiscovery_DIR=${package}"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK}/build"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${EMULATOR} "${WORK}/build/uses_package${suffix}" COMMAND_ERROR_IS_FATAL ANY)
# The unpacked programs find the library beside them.
execute_process(COMMAND ${EMULATOR} "${prefix}/bin/kelsd${suffix}" parse service:zdrest.tamro:http://10.0.0.5:8080 --json
  COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${EMULATOR} "${daemon}" --version COMMAND_ERROR_IS_FATAL ANY)
