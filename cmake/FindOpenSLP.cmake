# Finds an installed SLP library with the C API of OpenSLP: slp.h and libslp.
#
# A prefix is named by OpenSLP_ROOT or CMAKE_PREFIX_PATH. Result: OpenSLP_FOUND and the target OpenSLP::slp.
find_path(OpenSLP_INCLUDE_DIR slp.h)
find_library(OpenSLP_LIBRARY slp)
mark_as_advanced(OpenSLP_INCLUDE_DIR OpenSLP_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(OpenSLP REQUIRED_VARS OpenSLP_LIBRARY OpenSLP_INCLUDE_DIR)

if(OpenSLP_FOUND AND NOT TARGET OpenSLP::slp)
  add_library(OpenSLP::slp UNKNOWN IMPORTED)
  set_target_properties(OpenSLP::slp PROPERTIES
    IMPORTED_LOCATION "${OpenSLP_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${OpenSLP_INCLUDE_DIR}")
endif()
