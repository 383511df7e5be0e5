# The Linux port, on real files below temporary folders.
sources(port_tests platform/posix/*.cpp platform/linux/*Test.cpp
  plist/*Test.cpp xml/*Test.cpp)
test_binary(port_tests port ${port_tests})
target_link_libraries(port_tests PRIVATE test_support wenlolib_static)

# Second opinions on property lists, from Python and from plistutil.
add_executable(plist_roundtrip plist/plist_roundtrip.cpp)
target_link_libraries(plist_roundtrip PRIVATE wenlolib_static)
add_test(NAME port.property_lists_second_opinion
  COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/plist/property_lists_second_opinion.py
    $<TARGET_FILE:plist_roundtrip>)
