# Writes build_info.cpp: what the About dialog says about the link library that is running.
# A tree without git (a source archive) says "unknown".
find_package(Git QUIET)

function(tarvio_git result)
  set(output "")
  if(Git_FOUND)
    execute_process(COMMAND "${GIT_EXECUTABLE}" ${ARGN}
      WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
      OUTPUT_VARIABLE output OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  endif()
  if(output STREQUAL "")
    set(output "unknown")
  endif()
  set(${result} "${output}" PARENT_SCOPE)
endfunction()

tarvio_git(ORV_COMMIT_ID rev-parse --short=7 HEAD)
tarvio_git(ORV_COMMIT_DATE log -1 --format=%cs)
set(ORV_CONFIGURATION "${CMAKE_BUILD_TYPE}")
if(ORV_CONFIGURATION STREQUAL "")
  set(ORV_CONFIGURATION "Release")
endif()
configure_file("${PROJECT_SOURCE_DIR}/orv_decoder/build_info.cpp.in"
  "${CMAKE_CURRENT_BINARY_DIR}/build_info.cpp" @ONLY)
