# Crowds, interruptions, small stacks and closed streams; and the hosts of the ordinary tests.
include(${PROJECT_SOURCE_DIR}/tests/product/Hosts.cmake)

foreach(program IN ITEMS crowd stack streams)
  add_executable(torture_${program} ${CMAKE_CURRENT_LIST_DIR}/${program}.c)
  target_include_directories(torture_${program} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(torture_${program} PRIVATE plugin_library ${CMAKE_DL_LIBS} -pthread)
endforeach()
add_executable(torture_interrupted ${CMAKE_CURRENT_LIST_DIR}/interrupted.cpp)
link_with_library(torture_interrupted)

add_custom_target(torture_crowds DEPENDS host_programs wenlolib
  torture_crowd torture_stack torture_streams torture_interrupted)
add_dependencies(torture torture_crowds)
