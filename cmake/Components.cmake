# kelsd_component(NAME SOURCES ... USES ...)
#
# One folder of the source tree as one static library. USES names the other components (or libraries)
# whose headers it may include; cmake/check_layers.cmake fails the test run when a folder includes
# another one.
function(kelsd_component name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;USES")
  add_library(${name} STATIC ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE kelsd_warnings PUBLIC ${arg_USES})
endfunction()

# kelsd_test(NAME [SERIAL] SOURCES ... USES ... [ALONE ...] [TIMEOUT SECONDS] [LOCK NAME] [LABELS ...])
#
# One GoogleTest program; each of its tests runs in a process of its own, so that process-wide state
# starts fresh in every test. SERIAL keeps other tests from running beside them, LOCK those with the same LOCK.
# ALONE names those of the sources that a unity build compiles by themselves, because they give names of their
# own to things that others of the program name alike.
function(kelsd_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "SERIAL" "TIMEOUT;LOCK" "SOURCES;USES;ALONE;LABELS")
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 60)
  endif()
  if(KELSD_SANITIZE)
    # Sanitizers slow a program down several times, a busy machine again; the limit is there for what hangs, and one that
    # hangs shall leave the others their time.
    math(EXPR slowed "${arg_TIMEOUT} * 10")
    if(slowed LESS_EQUAL 900)
      set(arg_TIMEOUT ${slowed})
    elseif(arg_TIMEOUT LESS 900)
      set(arg_TIMEOUT 900)
    endif()
  endif()
  add_executable(${name} ${arg_SOURCES})
  if(arg_ALONE)
    set_source_files_properties(${arg_ALONE} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  endif()
  target_link_libraries(${name} PRIVATE kelsd_warnings ${arg_USES} GTest::gmock_main)
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  set(properties TIMEOUT ${arg_TIMEOUT} RUN_SERIAL ${arg_SERIAL})
  # An empty value would take the next property's name for its own.
  if(arg_LABELS)
    list(APPEND properties LABELS ${arg_LABELS})
  endif()
  if(arg_LOCK)
    list(APPEND properties RESOURCE_LOCK ${arg_LOCK})
  endif()
  gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    NO_PRETTY_VALUES
    PROPERTIES ${properties})
endfunction()
