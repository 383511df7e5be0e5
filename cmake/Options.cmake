# What is built, all in one place. A project that includes this one gets only the library.
option(WENLOLIB_BUILD_PRODUCTS "Build the plug-in and the shared library (needs a platform port)" ON)
option(WENLOLIB_BUILD_OBJC "Build the Objective-C classes where Foundation is found"
  ${PROJECT_IS_TOP_LEVEL})
option(WENLOLIB_INSTALL "Install what is built" ${PROJECT_IS_TOP_LEVEL})

# What macOS has no packages for.
set(beside_the_library ${PROJECT_IS_TOP_LEVEL})
if(APPLE)
  set(beside_the_library OFF)
endif()
option(WENLOLIB_BUILD_RECEIVER "Build the libraries that read documents" ${beside_the_library})
option(WENLOLIB_BUILD_PYTHON "Build the Python package (needs the receiver)" ${beside_the_library})
option(WENLOLIB_BUILD_COMMAND "Build the command wenlolib (needs the receiver)" ${beside_the_library})
option(WENLOLIB_BUILD_EXAMPLES "Build the example hosts" ${beside_the_library})
option(WENLOLIB_BUILD_TESTS "Build the tests" ${beside_the_library})

option(WENLOLIB_BUILD_BENCHMARKS "Build the benchmarks (needs the command)" OFF)
option(WENLOLIB_BUILD_FUZZERS "Build the fuzzers, and all else instrumented for them (clang)" OFF)
option(WENLOLIB_BUILD_TORTURE "Build the programs of scripts/torture (Linux)" OFF)
option(WENLOLIB_TRACE_POINTS "Print debug trace points to standard error (never in a product)" OFF)
option(WENLOLIB_WARNINGS_AS_ERRORS "Fail the build on a warning (for this project's own checks)" OFF)
