# Fails when docs/configuration.md does not hold the daemon's own list of properties word for word.
# Run as: cmake -DSLPD=<program> -DDOCUMENT=<configuration.md> -P documented_properties.cmake
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND "${SLPD}" --help-properties OUTPUT_VARIABLE list COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "[ \t]+\n" "\n" list "${list}")
string(FIND "${list}" "\nnet.slp." start)
string(SUBSTRING "${list}" ${start} -1 list)
string(STRIP "${list}" list)
file(READ "${DOCUMENT}" document)
string(FIND "${document}" "\n```\n${list}\n```\n" place)
if(list STREQUAL "" OR place EQUAL -1)
  message(FATAL_ERROR "Copy the output of 'slpd --help-properties' below its first line into ${DOCUMENT}.")
endif()
