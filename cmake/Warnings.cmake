# Link PRIVATE against tarvio_warnings to compile a target under the project's warnings.
add_library(tarvio_warnings INTERFACE)
if(MSVC)
  target_compile_options(tarvio_warnings INTERFACE /W4)
else()
  target_compile_options(tarvio_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
  if(TARVIO_WARNINGS_AS_ERRORS)
    target_compile_options(tarvio_warnings INTERFACE -Werror)
  endif()
endif()
