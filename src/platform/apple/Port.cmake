# The macOS port. It needs only what the system has.
enable_language(OBJCXX)
include(${CMAKE_CURRENT_LIST_DIR}/Sources.cmake)

# The system's own expat: its header and what to link are in the SDK. Nothing is searched for, so
# that no other copy on the builder's disk is taken.
add_library(wenlolib_expat INTERFACE)
target_link_libraries(wenlolib_expat INTERFACE -lexpat)

add_library(wenlolib_port OBJECT
  ${apple_posix_sources} ${apple_sources} ${apple_foundation_sources})
# Some of what records need is deprecated on newer systems. The port asks before it calls.
target_compile_options(wenlolib_port PRIVATE -Wno-deprecated-declarations
  $<$<COMPILE_LANGUAGE:OBJCXX>:-std=gnu++20>)
target_link_libraries(wenlolib_port PUBLIC wenlolib_core
  "-framework CoreFoundation" "-framework Foundation"
  "-weak_framework CoreServices" "-weak_framework Security")
