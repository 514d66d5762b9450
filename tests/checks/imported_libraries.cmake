cmake_minimum_required(VERSION 3.25)

# Fails when a Windows program or DLL needs a library that is neither part of Windows nor of the project: a compiler's
# run-time library would be missing on the machines that it is copied to.
# Run as: cmake -DOBJDUMP=objdump -DFILE=program.exe -P imported_libraries.cmake
set(allowed
  advapi32.dll iphlpapi.dll kernel32.dll msvcrt.dll mswsock.dll shell32.dll user32.dll ws2_32.dll
  kelservicediscovery.dll)

execute_process(COMMAND "${OBJDUMP}" --private-headers "${FILE}" OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "DLL Name: [^\n]+" imports "${output}")
list(TRANSFORM imports REPLACE "^DLL Name: " "")
list(TRANSFORM imports TOLOWER)
if(NOT "kernel32.dll" IN_LIST imports)
  message(FATAL_ERROR "The imports of ${FILE} could not be read.")
endif()
list(REMOVE_ITEM imports ${allowed})
# The C run-time library that came with Windows 10, and that newer compilers use.
list(FILTER imports EXCLUDE REGEX "^api-ms-win-crt-")
if(imports)
  message(FATAL_ERROR "${FILE} needs what not every Windows has: ${imports}")
endif()
