# The receiver and the command.
sources(receiver_tests receiver/*Test.cpp reading/*Test.cpp tools/*/*Test.cpp)
test_binary(tool_tests tools ${receiver_tests} ${PROJECT_SOURCE_DIR}/src/cabi/receiver.cpp)
target_link_libraries(tool_tests PRIVATE test_support wenlolib_tools)
set_source_files_properties(receiver/SoundTest.cpp PROPERTIES
  COMPILE_DEFINITIONS WENLOLIB_EXAMPLES="${PROJECT_SOURCE_DIR}/examples")

foreach(script IN ITEMS receiving rows recording examining plugin usage own_records report documentation
    mutate)
  add_test(NAME tools.${script}
    COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/tools/${script}_test.py $<TARGET_FILE:wenlolib>)
endforeach()

add_executable(verdicts receiver/verdicts.cpp)
target_link_libraries(verdicts PRIVATE wenlolib_receiver)
add_test(NAME tools.corpus_agreement
  COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/receiver/corpus_agreement.py
    $<TARGET_FILE:verdicts>)

add_executable(rows_in_c reading/rows_in_c.c)
target_link_libraries(rows_in_c PRIVATE wenlolib_receiver_shared wenlolib_warnings)
add_test(NAME tools.rows_in_c
  COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/reading/rows_in_c_test.py $<TARGET_FILE:rows_in_c>
    $<TARGET_FILE:wenlolib>)

# What several threads do at once, by itself: for the thread sanitizer.
set(threaded_tools src/reading/Archive src/reading/DocumentFiles src/reading/InputFile
  tools/documents/DocumentCount tools/documents/Jobs tools/documents/PathList tools/terminal/Format
  tools/terminal/Interrupt tools/terminal/Output tools/terminal/VisibleText)
list(TRANSFORM threaded_tools PREPEND ${PROJECT_SOURCE_DIR}/)
list(TRANSFORM threaded_tools APPEND .cpp)
add_executable(thread_tests EXCLUDE_FROM_ALL ${threaded_tools}
  endtoend/ConcurrencyTest.cpp endtoend/KeptDocuments.cpp endtoend/World.cpp endtoend/Writers.cpp
  reading/DocumentFilesTest.cpp reading/DocumentJobsTest.cpp
  tools/documents/DocumentCountTest.cpp)
target_include_directories(thread_tests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}
  ${PROJECT_SOURCE_DIR}/tools)
target_link_libraries(thread_tests PRIVATE GTest::gtest_main test_support wenlolib_static
  fmt::fmt-header-only PkgConfig::UTF8PROC PkgConfig::ARCHIVE)
