# What every target of this project is compiled with.
option(WENLOLIB_WARNINGS_AS_ERRORS "Fail the build on a warning (for this project's own checks)" OFF)

add_library(wenlolib_warnings INTERFACE)
target_compile_options(wenlolib_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  # GCC 12 sees overlaps, overflows and uninitialised values in its own std::string and
  # std::optional where there are none (GCC bug 105651 and its like), here and there as the
  # optimiser happens to go. Clang and the sanitizers look on.
  $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-restrict;-Wno-stringop-overflow;-Wno-array-bounds>
  $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-maybe-uninitialized>)
if(WENLOLIB_WARNINGS_AS_ERRORS)
  target_compile_options(wenlolib_warnings INTERFACE -Werror)
endif()
