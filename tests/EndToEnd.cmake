# Whole records on the Linux port, and the independent verifier on every document they leave.
set(documents ${CMAKE_CURRENT_BINARY_DIR}/documents)
add_test(NAME endtoend.clear COMMAND ${CMAKE_COMMAND} -E rm -rf ${documents})
set_tests_properties(endtoend.clear PROPERTIES FIXTURES_SETUP documents_folder)

file(GLOB endtoend_tests CONFIGURE_DEPENDS endtoend/*.cpp)
test_binary(endtoend_tests endtoend ${endtoend_tests} PROPERTIES
  FIXTURES_REQUIRED documents_folder FIXTURES_SETUP documents
  ENVIRONMENT WENLOLIB_DOCUMENTS=${documents})
target_link_libraries(endtoend_tests PRIVATE test_support wenlolib_static process_state)

# What several threads do at once, by itself: for the thread sanitizer.
set(threaded_tools documents/DocumentFiles documents/InputFile documents/Jobs
  terminal/Format terminal/Output terminal/VisibleText)
list(TRANSFORM threaded_tools PREPEND ${PROJECT_SOURCE_DIR}/tools/)
list(TRANSFORM threaded_tools APPEND .cpp)
add_executable(thread_tests EXCLUDE_FROM_ALL ${threaded_tools}
  endtoend/ConcurrencyTest.cpp endtoend/KeptDocuments.cpp endtoend/World.cpp endtoend/Writers.cpp
  tools/documents/DocumentFilesTest.cpp tools/documents/DocumentJobsTest.cpp)
target_include_directories(thread_tests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}
  ${PROJECT_SOURCE_DIR}/tools)
target_link_libraries(thread_tests PRIVATE GTest::gtest_main test_support wenlolib_static
  fmt::fmt-header-only PkgConfig::UTF8PROC)

# All tests together leave 1108; where mounts and unprivileged users are not permitted, a few less.
add_test(NAME endtoend.verify_written
  COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/endtoend/verify_written.py ${documents} 1100)
set_tests_properties(endtoend.verify_written PROPERTIES FIXTURES_REQUIRED documents)
