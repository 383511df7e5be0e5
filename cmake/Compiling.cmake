# How every target of this project is compiled: wenlolib_warnings for all, wenlolib_hardening for
# what is shipped.
add_library(wenlolib_warnings INTERFACE)
target_compile_options(wenlolib_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(WENLOLIB_WARNINGS_AS_ERRORS)
  target_compile_options(wenlolib_warnings INTERFACE -Werror)
endif()
# Keep the builder's paths out of the binaries: two builds of one commit are the same.
target_compile_options(wenlolib_warnings INTERFACE
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=build)

# Hardening as in Debian packages. The fuzzers' sanitizers check more; macOS compilers harden in
# their own way.
add_library(wenlolib_hardening INTERFACE)
if(NOT APPLE AND NOT WENLOLIB_BUILD_FUZZERS)
  set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
  target_compile_options(wenlolib_hardening INTERFACE
    -fstack-protector-strong -Wformat -Werror=format-security
    $<${optimised}:-U_FORTIFY_SOURCE$<SEMICOLON>-D_FORTIFY_SOURCE=2>)
  target_link_options(wenlolib_hardening INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endif()
