# The Objective-C bundle, through a host that loads it and sends messages.
sources(objc_host_sources objc/*.m)
add_executable(objc_host ${objc_host_sources})
target_include_directories(objc_host PRIVATE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
target_link_libraries(objc_host PRIVATE wenlolib_warnings wenlolib_foundation)
add_dependencies(objc_host WENLOLIB_objc)

set(objc_bundle ${PROJECT_BINARY_DIR}/objc/WENLOLIB.bundle)
add_test(NAME objc.host COMMAND objc_host ${objc_bundle})
add_test(NAME objc.check_exports
  COMMAND ${product_tests}/check_exports.sh $<TARGET_FILE:WENLOLIB_objc>
    ${PROJECT_SOURCE_DIR}/product/objc-exports.txt)
add_test(NAME objc.check_bindings
  COMMAND ${product_tests}/check_bindings.sh $<TARGET_FILE:WENLOLIB_objc>
    libgnustep-base.so.1.28 libobjc.so.4 libstdc++.so.6 libm.so.6 libgcc_s.so.1 libc.so.6
    ld-linux-x86-64.so.2)
add_test(NAME objc.example
  COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/objc/example_test.py
    $<TARGET_FILE:example_objc_host> ${objc_bundle} ${PROJECT_SOURCE_DIR}/examples
    $<$<TARGET_EXISTS:wenlolib>:$<TARGET_FILE:wenlolib>>)
set_tests_properties(objc.host objc.example PROPERTIES TIMEOUT 600)
