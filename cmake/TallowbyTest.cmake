# tallowby_test(<name> SOURCES <file>... [LINKS <target>...] [PROPERTIES <ctest property> <value>...])
#
# A test program `<name>_test` over GoogleTest with the shared main(), which runs off-screen and fails on any warning
# that a test did not announce. Every test in it becomes a CTest of its own.

function(tallowby_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PROPERTIES" ${ARGN})
  set(target ${name}_test)
  add_executable(${target} ${ARG_SOURCES})
  set_target_properties(${target} PROPERTIES AUTOMOC ON RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  target_link_libraries(${target} PRIVATE ${ARG_LINKS} Tallowby::test_support GTest::gmock)
  target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  tallowby_target_defaults(${target})
  gtest_discover_tests(${target} TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120 ${ARG_PROPERTIES})
endfunction()
