# What an installation holds: the library with its headers and CMake package, the tool, the daemon and the documentation;
# and the archive that `cpack` makes of it.
include(CMakePackageConfigHelpers)

if(WIN32)
  # One folder for all programs, beside the DLL.
  set(CMAKE_INSTALL_SBINDIR ${CMAKE_INSTALL_BINDIR})
endif()

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
if(WIN32)
  install(FILES "${PROJECT_BINARY_DIR}/agent/api/slp.def" DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT slp)
endif()

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/KelServiceDiscovery)
install(EXPORT KelServiceDiscovery NAMESPACE KelServiceDiscovery:: DESTINATION ${package_folder}
  FILE KelServiceDiscoveryConfig.cmake)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KelServiceDiscoveryConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/KelServiceDiscoveryConfigVersion.cmake" DESTINATION ${package_folder})

# The documents with the examples that they name, in the places where their links lead to.
install(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING PATTERN "*.md" PATTERN "*.cpp")

set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
if(WIN32)
  set(CPACK_GENERATOR ZIP)
else()
  set(CPACK_GENERATOR TGZ)
endif()
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/package")
include(CPack)
