# Fails unless LIBRARY exports exactly the functions that HEADER declares.
#
# Usage: cmake -DNM=... -DLIBRARY=... -DHEADER=... -P check_slp_exports.cmake
execute_process(COMMAND "${NM}" --dynamic --defined-only --format=just-symbols "${LIBRARY}"
  OUTPUT_VARIABLE exported COMMAND_ERROR_IS_FATAL ANY)
string(STRIP "${exported}" exported)
string(REPLACE "\n" ";" exported "${exported}")

file(READ "${HEADER}" header)
string(REGEX MATCHALL "SLPEXP_CALL (SLP[A-Za-z]+)\\(" declared "${header}")
list(TRANSFORM declared REPLACE "SLPEXP_CALL (SLP[A-Za-z]+)\\(" "\\1")

list(SORT exported)
list(SORT declared)
if(NOT declared OR NOT exported STREQUAL declared)
  message(FATAL_ERROR "exported: ${exported}\ndeclared: ${declared}")
endif()
