# The sources of the macOS port, for the product and for the tests that drive it on stub services.
# It has a clock of its own.
set(platform_folder ${CMAKE_CURRENT_LIST_DIR}/..)
sources(apple_posix_sources ${platform_folder}/posix/*.cpp EXCEPT PosixTime.cpp)
sources(apple_sources ${CMAKE_CURRENT_LIST_DIR}/*.cpp)
sources(apple_foundation_sources ${CMAKE_CURRENT_LIST_DIR}/*.mm)
