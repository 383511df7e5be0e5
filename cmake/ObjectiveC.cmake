# Objective-C with Foundation: Apple's own on a Mac, GNUstep on GCC's runtime elsewhere. The target
# wenlolib_foundation exists if both a compiler and a Foundation are found.
if(NOT WENLOLIB_BUILD_OBJC OR NOT WENLOLIB_BUILD_PRODUCTS)
  return()
endif()

if(APPLE)
  find_program(CMAKE_OBJC_COMPILER NAMES clang gcc)
  find_library(WENLOLIB_FOUNDATION Foundation)
  set(foundation_flags -std=gnu11 -fobjc-exceptions)
else()
  find_program(CMAKE_OBJC_COMPILER NAMES gcc gcc-12)
  find_library(WENLOLIB_FOUNDATION gnustep-base)
  find_path(WENLOLIB_FOUNDATION_HEADERS Foundation/Foundation.h PATH_SUFFIXES GNUstep)
  # With -Wpedantic, GCC wants every class to have instance variables of its own.
  set(foundation_flags -std=gnu11 -Wno-pedantic -fobjc-exceptions -fexceptions
    -fconstant-string-class=NSConstantString
    -DGNUSTEP -DGNUSTEP_BASE_LIBRARY=1 -DGNU_RUNTIME=1 -D_NATIVE_OBJC_EXCEPTIONS
    -isystem ${WENLOLIB_FOUNDATION_HEADERS})
endif()

# A GCC without Objective-C is found too, so try it.
set(objc_probe ${CMAKE_CURRENT_BINARY_DIR}/foundation_probe.m)
file(WRITE ${objc_probe} "#import <Foundation/Foundation.h>\n")
set(objc_found 1)
if(CMAKE_OBJC_COMPILER AND WENLOLIB_FOUNDATION)
  execute_process(COMMAND ${CMAKE_OBJC_COMPILER} ${foundation_flags} -fsyntax-only ${objc_probe}
    WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
    RESULT_VARIABLE objc_found OUTPUT_QUIET ERROR_QUIET)
endif()
if(NOT objc_found EQUAL 0)
  message(STATUS "No Objective-C compiler with Foundation (gobjc, libgnustep-base-dev): "
    "the Objective-C classes are left out")
  return()
endif()

enable_language(OBJC)
add_library(wenlolib_foundation INTERFACE)
target_compile_options(wenlolib_foundation INTERFACE
  "$<$<COMPILE_LANGUAGE:OBJC>:${foundation_flags}>")
target_link_libraries(wenlolib_foundation INTERFACE
  ${WENLOLIB_FOUNDATION} $<$<NOT:$<PLATFORM_ID:Darwin>>:objc>)
