# Settings that hold for every target: language level, warnings, sanitizers, hidden symbols, output folders.

option(KELSD_WERROR "Treat warnings as errors" OFF)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

add_library(kelsd_warnings INTERFACE)
if(MSVC)
  target_compile_options(kelsd_warnings INTERFACE /W4 /permissive- /utf-8)
  # Functions of the standard, among them getenv, that MSVC alone calls deprecated.
  target_compile_definitions(kelsd_warnings INTERFACE _CRT_SECURE_NO_WARNINGS)
  if(KELSD_WERROR)
    target_compile_options(kelsd_warnings INTERFACE /WX)
  endif()
else()
  target_compile_options(kelsd_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
    -Wcast-qual -Wformat=2 -Wimplicit-fallthrough -Wextra-semi)
  if(KELSD_WERROR)
    target_compile_options(kelsd_warnings INTERFACE -Werror)
  endif()
endif()

if(KELSD_SANITIZE MATCHES "thread" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Asio's event loop has memory fences, which the sanitizer doesn't see; nothing of ours rests on them.
  target_compile_options(kelsd_warnings INTERFACE -Wno-tsan)
endif()

# What the programs have in common that take signals.
add_library(kelsd_signals INTERFACE)
if(KELSD_SANITIZE MATCHES "thread")
  target_sources(kelsd_signals INTERFACE "${CMAKE_CURRENT_LIST_DIR}/first_blocking_call.cpp")
endif()

if(KELSD_SANITIZE)
  add_compile_options(-fsanitize=${KELSD_SANITIZE} -fno-omit-frame-pointer
    -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${KELSD_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # Every library would export the types of the functions that it calls by pointer.
    add_compile_options(-fno-sanitize=function)
  endif()
endif()

if(WIN32)
  add_compile_definitions(_WIN32_WINNT=0x0A00 WINVER=0x0A00 WIN32_LEAN_AND_MEAN NOMINMAX)
  if(MINGW)
    # The programs and the DLL must run on a machine that has no MinGW runtime.
    add_link_options(-static -static-libgcc -static-libstdc++)
  endif()
endif()
