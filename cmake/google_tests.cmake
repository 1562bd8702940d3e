find_package(GTest REQUIRED)
include(GoogleTest)

# watch_end(TARGET): where CTest runs the program, tested code that ends the process before the tests do is a failure too. The
# property is meant for emulators; the one for launchers needs CMake 3.29.
function(watch_end target)
  set_target_properties(${target} PROPERTIES CROSSCOMPILING_EMULATOR ${PROJECT_SOURCE_DIR}/tests/support/run_to_the_end)
endfunction()

# add_google_tests(TARGET [PROPERTIES NAME VALUE...]): each test of the program is a test of CTest's. Pretty values would put
# addresses into the names of the tests.
function(add_google_tests target)
  watch_end(${target})
  gtest_discover_tests(${target} NO_PRETTY_VALUES DISCOVERY_MODE PRE_TEST ${ARGN})
endfunction()
