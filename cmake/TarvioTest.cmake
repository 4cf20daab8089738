# tarvio_test(NAME [SOURCES file...] LIBRARIES library...)
#
# One test program from NAME.cpp. Programs over Qt run on the offscreen platform, all run with a
# settings store of their own, so that no test ever sees the user's.
function(tarvio_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${name}.cpp ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE ${TEST_LIBRARIES} tarvio_warnings)
  add_test(NAME ${name} COMMAND ${name})
  set(profile "${PROJECT_BINARY_DIR}/test-profiles/${name}")
  file(MAKE_DIRECTORY "${profile}")
  set_tests_properties(${name} PROPERTIES
    TIMEOUT 300
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;XDG_CONFIG_HOME=${profile};HOME=${profile};TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/tsan-suppressions.txt")
endfunction()
