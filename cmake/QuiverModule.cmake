# One shape for every folder of code.
#
#   quiver_module(core)      src/core:      object library quiver_core, test program core_test
#   quiver_platform(paku)    platform/paku: static library paku, test program paku_test
#
# A folder's files are found by their names: *_test.cpp are tests, *_win32.cpp and *_posix.cpp belong
# to one system, everything else is shared.

include(GoogleTest)

if(WIN32)
  set(QUIVER_OTHER_SYSTEM "_posix(_test)?\\.cpp$")
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
else()
  set(QUIVER_OTHER_SYSTEM "_win32(_test)?\\.cpp$")
endif()

# Lists this folder's sources in `sources` and its tests in `tests`.
function(quiver_sources sources tests)
  file(GLOB all CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  list(FILTER all EXCLUDE REGEX "${QUIVER_OTHER_SYSTEM}")
  set(found_tests ${all})
  list(FILTER all EXCLUDE REGEX "_test\\.cpp$")
  list(FILTER found_tests INCLUDE REGEX "_test\\.cpp$")
  set(${sources} ${all} PARENT_SCOPE)
  set(${tests} ${found_tests} PARENT_SCOPE)
endfunction()

# Lets ctest run a GoogleTest program: test by test, or where starting a program is slow, as a whole.
function(quiver_run_tests name)
  if(NOT WIN32)
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60)
    return()
  endif()
  add_test(NAME ${name}
    COMMAND ${QUIVER_TEST_LAUNCHER} "${Python3_EXECUTABLE}" "${PROJECT_SOURCE_DIR}/scripts/run_windows_test"
      "$<TARGET_FILE:${name}>" "${PROJECT_BINARY_DIR}/test_results/${name}.json")
endfunction()

# Adds a GoogleTest program. Arguments after the name: SOURCES files, LIBRARIES targets.
function(quiver_test_program name)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
  if(NOT QUIVER_BUILD_TESTS OR NOT arg_SOURCES)
    return()
  endif()
  add_executable(${name} ${arg_SOURCES})
  # The kit before the libraries: its callbacks need the library, where a program links it.
  target_link_libraries(${name} PRIVATE quiver_test_kit ${arg_LIBRARIES} GTest::gmock_main quiver_warnings)
  # Most of the build is tests: they are not optimised, only what they test is.
  target_compile_options(${name} PRIVATE -O0)
  quiver_run_tests(${name})
endfunction()

function(quiver_module name)
  quiver_sources(sources tests)
  add_library(quiver_${name} OBJECT ${sources})
  target_include_directories(quiver_${name} PUBLIC
    "${PROJECT_SOURCE_DIR}/include" "${PROJECT_SOURCE_DIR}/src")
  target_compile_definitions(quiver_${name} PRIVATE QV_BUILDING_QUIVER)
  target_link_libraries(quiver_${name} PUBLIC paku symsrv vesk win Threads::Threads PRIVATE quiver_warnings)
  quiver_test_program(${name}_test SOURCES ${tests} LIBRARIES quiver_internal)
endfunction()

function(quiver_platform name)
  quiver_sources(sources tests)
  if(sources)
    add_library(${name} STATIC ${sources})
    set(visibility PUBLIC)
    target_link_libraries(${name} PRIVATE quiver_warnings)
  else()
    # Nothing but headers on this system.
    add_library(${name} INTERFACE)
    set(visibility INTERFACE)
  endif()
  target_include_directories(${name} ${visibility} "${PROJECT_SOURCE_DIR}/platform")
  quiver_test_program(${name}_test SOURCES ${tests} LIBRARIES ${name})
endfunction()
