# Hosts in a world where one thing at a time goes wrong.
set(product_sources ${PROJECT_SOURCE_DIR}/tests/product)

add_library(torture_world SHARED torture_world.c)
target_compile_options(torture_world PRIVATE -fno-builtin)  # it defines what the builtins replace
set_target_properties(torture_world PROPERTIES C_VISIBILITY_PRESET default)
target_link_libraries(torture_world PRIVATE wenlolib_warnings)

add_library(torture_harness OBJECT harness.c tracer.c ${product_sources}/process_state.c)
target_include_directories(torture_harness PUBLIC
  ${CMAKE_CURRENT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
target_link_libraries(torture_harness PUBLIC torture_world wenlolib_warnings)

add_executable(torture_host torture_host.c ${product_sources}/plugin_library.c)
target_link_libraries(torture_host PRIVATE torture_harness ${CMAKE_DL_LIBS})
add_dependencies(torture_host WENLOLIB)

# Linked as an installed plug-in is, by its usual name, which is a link to the file in the bundle.
add_executable(torture_classes torture_classes.cpp)
target_link_libraries(torture_classes PRIVATE torture_harness WENLOLIB)
add_custom_command(TARGET torture_classes POST_BUILD COMMAND ${CMAKE_COMMAND} -E create_symlink
  $<TARGET_FILE:WENLOLIB> ${CMAKE_CURRENT_BINARY_DIR}/libWENLOLIB.so.${PROJECT_VERSION_MAJOR})
set_target_properties(torture_classes PROPERTIES
  BUILD_RPATH ${CMAKE_CURRENT_BINARY_DIR} BUILD_WITH_INSTALL_RPATH OFF)

add_custom_target(torture DEPENDS torture_host torture_classes)
