# tarvio_test_environment(NAME [VARIABLE=VALUE...])
#
# Programs over Qt run on the offscreen platform, and every test has folders of its own for settings
# and the like, so that none ever sees the user's.
function(tarvio_test_environment name)
  set(profile "${PROJECT_BINARY_DIR}/test-profiles/${name}")
  file(MAKE_DIRECTORY "${profile}")
  file(CHMOD "${profile}" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
  set(suppressions "${PROJECT_SOURCE_DIR}/tests")
  # Qt 5's offscreen screen is 800x600, Qt 6's as large as its file says.
  set(platform offscreen)
  if(TARVIO_QT_VERSION EQUAL 6)
    set(platform "offscreen:configfile=${PROJECT_SOURCE_DIR}/tests/support/offscreen_screen.json")
  endif()
  set(environment
    QT_QPA_PLATFORM=${platform}
    XDG_CONFIG_HOME=${profile}
    XDG_RUNTIME_DIR=${profile}
    HOME=${profile}
    # As without a sanitizer: what no memory could hold is refused, and the program goes on.
    ASAN_OPTIONS=allocator_may_return_null=1
    TSAN_OPTIONS=allocator_may_return_null=1:suppressions=${suppressions}/tsan-suppressions.txt
    LSAN_OPTIONS=suppressions=${suppressions}/lsan-suppressions.txt:print_suppressions=0
    # A program that is given a full disk cannot keep its coverage either; that is no error of it.
    GCOV_ERROR_FILE=/dev/null
    ${ARGN})
  # Long enough for the longest of them on a slow or busy machine, with a sanitizer.
  set_tests_properties(${name} PROPERTIES TIMEOUT 900 ENVIRONMENT "${environment}")
endfunction()

# tarvio_owner_of_precompiled_headers(VARIABLE LIBRARY...): of those that fit what a test is linked to.
function(tarvio_owner_of_precompiled_headers variable)
  if(ARGN MATCHES "qt_test_support|fault_matrix|window_scenes")
    set(${variable} tarvio_views PARENT_SCOPE)
  elseif(ARGN MATCHES "tarvio_ecu|ecu_test_support|tarvioctl_commands|cli_support|ecu_simulator_host")
    set(${variable} tarvio_ecu PARENT_SCOPE)
  else()
    set(${variable} "" PARENT_SCOPE)
  endif()
endfunction()

# tarvio_moc_of_test(NAME): NAME.moc of NAME.cpp, which includes it. For a class of its own moc needs no
# header; CMAKE_AUTOMOC has it read all of Qt's, and with Qt 6 that takes nearly as long as to compile them.
function(tarvio_moc_of_test name)
  add_custom_command(OUTPUT ${name}.moc
    COMMAND Qt${TARVIO_QT_VERSION}::moc --no-notes -o ${name}.moc "${CMAKE_CURRENT_SOURCE_DIR}/${name}.cpp"
    DEPENDS ${name}.cpp
    VERBATIM)
  target_sources(${name} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${name}.moc")
  target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}")
endfunction()

# tarvio_test_program(NAME [SOURCES file...] LIBRARIES library...): a program from NAME.cpp.
function(tarvio_test_program name)
  cmake_parse_arguments(TEST "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${name}.cpp ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE ${TEST_LIBRARIES} tarvio_warnings)
  tarvio_owner_of_precompiled_headers(owner ${TEST_LIBRARIES})
  if(owner)
    tarvio_reuse_precompiled_headers(${name} ${owner})
  endif()
  if(TEST_SOURCES MATCHES "\\.h")
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
  elseif(NOT TEST_LIBRARIES MATCHES "GTest")
    tarvio_moc_of_test(${name})
  endif()
endfunction()

# tarvio_test(NAME [SOURCES file...] LIBRARIES library...): one test program from NAME.cpp.
function(tarvio_test name)
  tarvio_test_program(${name} ${ARGN})
  add_test(NAME ${name} COMMAND ${name})
  tarvio_test_environment(${name})
endfunction()
