# What every target is compiled with in a build for fuzzers: coverage to guide them, and sanitizers
# that end the run at the first finding.
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  message(FATAL_ERROR "WENLOLIB_BUILD_FUZZERS needs clang")
endif()
# The check of virtual tables opens a pipe, and so raises a false alarm in a test that has no
# descriptors left.
add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize=vptr
  -fno-sanitize-recover=all -fno-omit-frame-pointer)
add_compile_definitions(_GLIBCXX_ASSERTIONS)
add_link_options(-fsanitize=address,undefined)
# Every program records the lines that it runs in a profile, for scripts/coverage.
add_compile_options(-fcoverage-mapping
  -fprofile-instr-generate=${PROJECT_BINARY_DIR}/profiles/%m.profraw)
add_link_options(-fprofile-instr-generate=${PROJECT_BINARY_DIR}/profiles/%m.profraw)
