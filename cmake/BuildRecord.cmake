# Provides build_info.cpp: what the About dialog says about the link library that is running. It is
# looked after at each build, not only when CMake runs. A tree without git (a source archive) says
# "unknown".
set(configuration "${CMAKE_BUILD_TYPE}")
if(configuration STREQUAL "")
  set(configuration "Release")
endif()
set(build_info "${CMAKE_CURRENT_BINARY_DIR}/build_info.cpp")
add_custom_target(build_record
  COMMAND "${CMAKE_COMMAND}"
    "-DSOURCE_DIR=${PROJECT_SOURCE_DIR}"
    "-DTEMPLATE=${PROJECT_SOURCE_DIR}/orv_decoder/build_info.cpp.in"
    "-DOUTPUT=${build_info}"
    "-DCONFIGURATION=${configuration}"
    "-DVERSION=${PROJECT_VERSION}"
    -P "${PROJECT_SOURCE_DIR}/cmake/WriteBuildRecord.cmake"
  BYPRODUCTS "${build_info}"
  COMMENT "Looking at the commit"
  VERBATIM)
