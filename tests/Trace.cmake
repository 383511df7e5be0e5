# The debug trace points. The sources that have any are compiled with the points on and linked
# before the library, which has them off: so the linker takes these, and not the library's own.
set(traced_sources codec/Encryption.cpp record/Document.cpp record/Record.cpp record/RecordFile.cpp)
list(TRANSFORM traced_sources PREPEND ${PROJECT_SOURCE_DIR}/src/)
add_executable(trace_tests trace/TracePointsTest.cpp ${traced_sources})
target_include_directories(trace_tests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_compile_definitions(trace_tests PRIVATE WENLOLIB_TRACE_POINTS)
target_link_libraries(trace_tests PRIVATE GTest::gtest_main test_support wenlolib_static)
gtest_discover_tests(trace_tests TEST_PREFIX trace. DISCOVERY_MODE PRE_TEST
  PROPERTIES TIMEOUT 600)
