# The sources of the macOS port, for the product and for the tests that drive it on stub services.
set(platform_folder ${CMAKE_CURRENT_LIST_DIR}/..)
set(apple_posix_sources AtomicFile PosixFiles PosixPropertyLists Random
  SystemCalls WholeFile)
list(TRANSFORM apple_posix_sources PREPEND ${platform_folder}/posix/)
list(TRANSFORM apple_posix_sources APPEND .cpp)
file(GLOB apple_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/*.cpp)
file(GLOB apple_foundation_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/*.mm)
