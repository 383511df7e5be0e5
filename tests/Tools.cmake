# The receiver and the command.
file(GLOB receiver_tests CONFIGURE_DEPENDS receiver/*Test.cpp tools/*/*Test.cpp)
test_binary(tool_tests tools ${receiver_tests})
target_link_libraries(tool_tests PRIVATE test_support wenlolib_tools)

foreach(script IN ITEMS receiving recording examining documentation mutate)
  add_test(NAME tools.${script}
    COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/tools/${script}_test.py $<TARGET_FILE:wenlolib>)
endforeach()

add_executable(verdicts receiver/verdicts.cpp)
target_link_libraries(verdicts PRIVATE wenlolib_receiver)
add_test(NAME tools.corpus_agreement
  COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/receiver/corpus_agreement.py
    $<TARGET_FILE:verdicts>)
