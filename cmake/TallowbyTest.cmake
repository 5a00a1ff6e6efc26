# tallowby_test(<name> [X_SESSION] SOURCES <file>... [LINKS <target>...] [PROPERTIES <ctest property> <value>...])
#
# A test program `<name>_test` over GoogleTest with the shared main(), which runs off-screen and fails on any warning
# that a test did not announce. Every test in it becomes a CTest of its own. With X_SESSION the program runs on an X
# server, a window manager and a session bus of its own instead of off-screen.

function(tallowby_test name)
  cmake_parse_arguments(ARG "X_SESSION" "" "SOURCES;LINKS;PROPERTIES" ${ARGN})
  set(target ${name}_test)
  if(ARG_X_SESSION)
    list(APPEND ARG_SOURCES ${CMAKE_SOURCE_DIR}/tests/support/XTestMain.cpp)
  endif()
  if(TALLOWBY_SANITIZE STREQUAL "thread")
    list(APPEND ARG_SOURCES ${CMAKE_SOURCE_DIR}/tests/support/SeenByThreadSanitizer.cpp)
    list(APPEND ARG_LINKS PkgConfig::GSTREAMER ${CMAKE_DL_LIBS})
    list(APPEND ARG_PROPERTIES ENVIRONMENT TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tools/sanitizers/races.supp)
  endif()
  add_executable(${target} ${ARG_SOURCES})
  set_target_properties(${target} PROPERTIES AUTOMOC ON RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  target_link_libraries(${target} PRIVATE ${ARG_LINKS} Tallowby::test_support GTest::gmock)
  target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  tallowby_target_defaults(${target})
  gtest_discover_tests(${target} TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120 ${ARG_PROPERTIES})
endfunction()
