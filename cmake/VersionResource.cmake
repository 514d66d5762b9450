# kelsd_version_resource(TARGET DESCRIPTION)
#
# On Windows: the resource from which Explorer, installers and GetFileVersionInfo read what the file is, with the
# version of the project. Elsewhere nothing.
function(kelsd_version_resource target description)
  if(NOT WIN32)
    return()
  endif()
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "EXECUTABLE")
    set(file_type VFT_APP)
  else()
    set(file_type VFT_DLL)
  endif()
  # The file's name stands in the resource, and only the generator knows it.
  set(template "${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc.in")
  configure_file("${CMAKE_CURRENT_FUNCTION_LIST_DIR}/version.rc.in" "${template}" @ONLY)
  set(resource "${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc")
  file(GENERATE OUTPUT "${resource}" INPUT "${template}" TARGET ${target})
  target_sources(${target} PRIVATE "${resource}")
endfunction()
