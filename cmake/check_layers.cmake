cmake_minimum_required(VERSION 3.25)

# Fails when a folder includes one that it may not use, or when an operating system shows outside the platform
# folders. Run as: cmake -DROOT=<source tree> -P check_layers.cmake
#
# Every row: a folder, then the folders that it may include from besides itself.
set(layers
  "src/platform:"
  "src/foundation:kelsd"
  "src/types:kelsd foundation"
  "src/config:kelsd foundation"
  "src/slp:kelsd foundation config types platform slp.h"
  "src/client:kelsd foundation config types platform slp slp.h"
  "src/service:kelsd foundation config types platform slp slp.h"
  "agent/base:"
  "agent/text:base"
  "agent/wire:base text"
  "agent/properties:base text"
  "agent/net:base text asio"
  "agent/api:base text wire properties net slp.h asio"
  "agent/slpd:base text wire properties net asio CLI"
  "tools/kelsd:kelsd CLI nlohmann"
  "examples:kelsd")

# Folders of the tree, as they appear in an #include with quotes or angle brackets.
set(folders kelsd foundation types config platform slp client service base text wire properties net api slpd asio
  CLI nlohmann)
set(problems "")

foreach(layer IN LISTS layers)
  string(REGEX MATCH "^([^:]+):(.*)$" _ "${layer}")
  set(folder "${CMAKE_MATCH_1}")
  string(REPLACE " " ";" allowed "${CMAKE_MATCH_2}")
  get_filename_component(own "${folder}" NAME)
  file(GLOB_RECURSE sources "${ROOT}/${folder}/*.h" "${ROOT}/${folder}/*.cpp")
  foreach(source IN LISTS sources)
    file(RELATIVE_PATH name "${ROOT}" "${source}")
    file(STRINGS "${source}" includes REGEX "^[ \t]*#[ \t]*include")
    foreach(include IN LISTS includes)
      string(REGEX MATCH "[\"<]([^\">]+)[\">]" _ "${include}")
      set(target "${CMAKE_MATCH_1}")
      string(REGEX MATCH "^[^/]+" first "${target}")
      string(REGEX REPLACE "\\.hpp$" "" first "${first}")
      if(target STREQUAL "slp.h")
        set(first "slp.h")
      elseif(NOT target MATCHES "/" AND NOT first STREQUAL "asio")
        continue()
      endif()
      if((first IN_LIST folders OR first STREQUAL "slp.h") AND NOT first STREQUAL own AND NOT first IN_LIST allowed)
        list(APPEND problems "${name}: may not include ${target}")
      endif()
    endforeach()
    if(NOT name MATCHES "/(platform|posix|windows)/" AND NOT name MATCHES "^agent/net/")
      file(STRINGS "${source}" systems REGEX "_WIN32|__linux__|__unix__|__APPLE__")
      if(systems)
        list(APPEND problems "${name}: speaks of an operating system")
      endif()
    endif()
  endforeach()
endforeach()

if(problems)
  list(JOIN problems "\n  " text)
  message(FATAL_ERROR "The layers are broken:\n  ${text}")
endif()
message(STATUS "layers: ok")
