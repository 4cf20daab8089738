# cmake -P: writes build_info.cpp from its template, with what git says of the tree at this moment.
# Needs SOURCE_DIR, TEMPLATE, OUTPUT, CONFIGURATION and VERSION. An unchanged file is left alone, so
# that nothing is compiled again.
find_package(Git QUIET)

function(ask_git result)
  set(output "")
  if(Git_FOUND)
    execute_process(COMMAND "${GIT_EXECUTABLE}" ${ARGN}
      WORKING_DIRECTORY "${SOURCE_DIR}"
      OUTPUT_VARIABLE output OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  endif()
  if(output STREQUAL "")
    set(output "unknown")
  endif()
  set(${result} "${output}" PARENT_SCOPE)
endfunction()

ask_git(ORV_COMMIT_ID rev-parse --short=7 HEAD)
ask_git(ORV_COMMIT_DATE log -1 --format=%cs)
set(ORV_CONFIGURATION "${CONFIGURATION}")
set(PROJECT_VERSION "${VERSION}")
configure_file("${TEMPLATE}" "${OUTPUT}" @ONLY)
