# The macOS port on stub services: its own sources except the definition of the native platform,
# which is the other port's here.
include(${PROJECT_SOURCE_DIR}/src/platform/apple/Sources.cmake)
list(FILTER apple_sources EXCLUDE REGEX "/ApplePlatform\\.cpp$")
sources(apple_stub_bodies apple_stubs/bodies/*.cpp)
sources(apple_tests platform/apple/*Test.cpp EXCEPT FoundationTest.cpp)
test_binary(apple_tests apple ${apple_tests} ${apple_sources} ${apple_stub_bodies}
  ${PROJECT_SOURCE_DIR}/src/plist/Reals.cpp)
target_include_directories(apple_tests PRIVATE apple_stubs/headers apple_stubs/linux)
target_compile_definitions(apple_tests PRIVATE
  F_GETPATH=50 F_FULLFSYNC=51 WENLOLIB_C_REALS)
target_link_libraries(apple_tests PRIVATE test_support wenlolib_static)
# The port looks up some names before it calls them: dlsym must find the stubs, and tests hide them.
set_target_properties(apple_tests PROPERTIES ENABLE_EXPORTS ON CXX_VISIBILITY_PRESET default)
target_link_options(apple_tests PRIVATE -Wl,--wrap=dlsym -Wl,--wrap=fcntl -Wl,--wrap=fcntl64
  -Wl,--wrap=fsync)

add_test(NAME apple.beliefs
  COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/platform/apple/beliefs_test.py)

add_test(NAME apple.bundle_inspection
  COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/platform/apple/bundle_inspection_test.py
    ${PROJECT_SOURCE_DIR}/build/macos/WENLOLIB.bundle)
set_tests_properties(apple.bundle_inspection PROPERTIES SKIP_RETURN_CODE 77)
add_test(NAME apple.macho
  COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/platform/apple/macho_test.py)
add_test(NAME apple.check_mac
  COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/platform/apple/check_mac_test.py)

# The port's Objective-C, on this system's Foundation, if there is one: GNUstep's, built with GCC. A
# GCC without Objective-C++ is found too, so try it.
set(objcxx_found 1)
if(TARGET wenlolib_foundation AND WENLOLIB_FOUNDATION_HEADERS)
  find_program(CMAKE_OBJCXX_COMPILER NAMES g++ g++-12)
  list(TRANSFORM foundation_flags REPLACE "^-std=.*" -std=gnu++20 OUTPUT_VARIABLE objcxx_flags)
  execute_process(
    COMMAND ${CMAKE_OBJCXX_COMPILER} ${objcxx_flags} -x objective-c++ -fsyntax-only ${objc_probe}
    RESULT_VARIABLE objcxx_found OUTPUT_QUIET ERROR_QUIET)
endif()
if(NOT objcxx_found EQUAL 0)
  message(STATUS "No Objective-C++ with Foundation (gobjc++, libgnustep-base-dev): "
    "the tests of the macOS port's Objective-C are left out")
  return()
endif()

enable_language(OBJCXX)
set(objcxx_sources platform/apple/FoundationDoubles.mm ${apple_foundation_sources})
set_source_files_properties(${objcxx_sources} PROPERTIES COMPILE_OPTIONS "${objcxx_flags}")
test_binary(apple_foundation_tests apple_foundation
  platform/apple/FoundationTest.cpp ${objcxx_sources}
  PROPERTIES ENVIRONMENT "HOME=${CMAKE_CURRENT_BINARY_DIR}")
set_property(TARGET apple_foundation_tests PROPERTY PRECOMPILE_HEADERS)
target_link_libraries(apple_foundation_tests PRIVATE wenlolib_static wenlolib_foundation)
