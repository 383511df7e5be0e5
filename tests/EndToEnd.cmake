# Whole records on the Linux port, and the independent verifier on every document they leave.
set(documents ${CMAKE_CURRENT_BINARY_DIR}/documents)
add_test(NAME endtoend.clear COMMAND ${CMAKE_COMMAND} -E rm -rf ${documents})
set_tests_properties(endtoend.clear PROPERTIES FIXTURES_SETUP documents_folder)

sources(endtoend_tests endtoend/*.cpp)
test_binary(endtoend_tests endtoend ${endtoend_tests} PROPERTIES
  FIXTURES_REQUIRED documents_folder FIXTURES_SETUP documents
  ENVIRONMENT WENLOLIB_DOCUMENTS=${documents})
target_link_libraries(endtoend_tests PRIVATE test_support wenlolib_static process_state)

# All tests together leave 1108; if mounts and unprivileged users are not permitted, a few less.
add_test(NAME endtoend.verify_written
  COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/endtoend/verify_written.py ${documents} 1100)
set_tests_properties(endtoend.verify_written PROPERTIES FIXTURES_REQUIRED documents)
