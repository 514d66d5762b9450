# Third-party packages. The header-only ones come from one folder that holds nothing else, so that the
# cross build never sees the host's system headers.

find_package(Threads REQUIRED)

find_path(KELSD_HOST_INCLUDE asio.hpp PATHS /usr/include /usr/local/include
  NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
set(kelsd_headers "${PROJECT_BINARY_DIR}/third_party/include")
file(MAKE_DIRECTORY "${kelsd_headers}")
foreach(entry IN ITEMS asio.hpp asio CLI nlohmann)
  if(NOT EXISTS "${KELSD_HOST_INCLUDE}/${entry}")
    message(FATAL_ERROR "${entry} is missing below ${KELSD_HOST_INCLUDE}: install libasio-dev, "
      "libcli11-dev and nlohmann-json3-dev")
  endif()
  file(COPY "${KELSD_HOST_INCLUDE}/${entry}" DESTINATION "${kelsd_headers}")
endforeach()

add_library(third_party_headers INTERFACE)
target_include_directories(third_party_headers SYSTEM INTERFACE "${kelsd_headers}")

add_library(asio INTERFACE)
target_link_libraries(asio INTERFACE third_party_headers Threads::Threads)
# Left to itself Asio decides by the headers before it whether it takes memory by aligned_alloc, so sources that differ in
# them would free what others allocated another way.
target_compile_definitions(asio INTERFACE ASIO_STANDALONE ASIO_NO_DEPRECATED ASIO_DISABLE_STD_ALIGNED_ALLOC)
if(WIN32)
  target_link_libraries(asio INTERFACE ws2_32 mswsock iphlpapi)
endif()

if(KELSD_TESTS)
  if(CMAKE_CROSSCOMPILING)
    # Debian ships the sources of GoogleTest; a cross build needs its own copy of the library.
    set(INSTALL_GTEST OFF)
    add_subdirectory(/usr/src/googletest "${PROJECT_BINARY_DIR}/third_party/googletest" EXCLUDE_FROM_ALL)
    # Its own CMake files don't name the targets as the installed package does.
    foreach(library IN ITEMS gtest gmock gmock_main)
      if(NOT TARGET GTest::${library})
        add_library(GTest::${library} ALIAS ${library})
      endif()
    endforeach()
  else()
    find_package(GTest REQUIRED)
  endif()
  include(GoogleTest)
endif()
