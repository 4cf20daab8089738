# Provides GTest::gtest_main where no built library of it serves: for another system than this one.
set(TARVIO_GOOGLETEST "/usr/src/googletest" CACHE PATH "The sources of GoogleTest")
set(BUILD_GMOCK OFF)
set(INSTALL_GTEST OFF)
add_subdirectory("${TARVIO_GOOGLETEST}" "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
