# What an installation holds: the library with its headers and CMake package, the tool and the daemon.
include(CMakePackageConfigHelpers)

install(TARGETS KelServiceDiscovery kelsd_interface EXPORT KelServiceDiscovery
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY include/kelsd DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(TARGETS kelsd RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS slpd RUNTIME DESTINATION ${CMAKE_INSTALL_SBINDIR})

# The agent's client half as an SLP library for programs that know the C API alone.
install(TARGETS slp
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT slp
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT slp
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT slp)
install(FILES agent/include/slp.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT slp)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/KelServiceDiscovery)
install(EXPORT KelServiceDiscovery NAMESPACE KelServiceDiscovery:: DESTINATION ${package_folder}
  FILE KelServiceDiscoveryConfig.cmake)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KelServiceDiscoveryConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/KelServiceDiscoveryConfigVersion.cmake" DESTINATION ${package_folder})
