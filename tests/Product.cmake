# What is shipped: the plug-in, the installed package, the documentation's examples.
set(product_tests ${CMAKE_CURRENT_SOURCE_DIR}/product)

add_test(NAME verifier COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/verifier/verify_document_test.py)
add_test(NAME docs.document_format
  COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/docs/document_format_test.py)
add_test(NAME docs.rows
  COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/docs/rows_test.py $<TARGET_FILE:wenlolib>)
if(TARGET wenlolib_python)
  add_test(NAME python.package
    COMMAND ${WENLOLIB_PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/python/package_test.py
      ${PROJECT_BINARY_DIR}/python $<TARGET_FILE:wenlolib>)
  add_test(NAME docs.dask
    COMMAND ${WENLOLIB_PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/docs/dask_test.py
      ${PROJECT_BINARY_DIR}/python $<TARGET_FILE:wenlolib>)
  set_tests_properties(python.package docs.dask PROPERTIES TIMEOUT 900)
endif()
foreach(database IN ITEMS duckdb postgresql)
  add_test(NAME docs.${database}
    COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/docs/${database}_test.py $<TARGET_FILE:wenlolib>)
  set_tests_properties(docs.${database} PROPERTIES TIMEOUT 900)
endforeach()
add_test(NAME docs.pages
  COMMAND ${PYTHON} ${CMAKE_CURRENT_SOURCE_DIR}/docs/pages_test.py ${PROJECT_BINARY_DIR})
set_tests_properties(docs.pages PROPERTIES TIMEOUT 1500)

include(product/Hosts.cmake)

add_test(NAME product.plugin_host
  COMMAND ${PYTHON} ${product_tests}/plugin_host_test.py
    $<TARGET_FILE:plugin_host> $<TARGET_FILE:WENLOLIB>)
add_executable(shortage_host product/shortage_host.c)
target_link_libraries(shortage_host PRIVATE wenlolib_warnings ${CMAKE_DL_LIBS})
# Its malloc replaces the C library's in everything that it loads.
set_target_properties(shortage_host PROPERTIES ENABLE_EXPORTS ON)
add_test(NAME product.shortage
  COMMAND ${PYTHON} ${product_tests}/shortage_test.py
    $<TARGET_FILE:shortage_host> $<TARGET_FILE:WENLOLIB>)
add_test(NAME product.own_bundle
  COMMAND ${PYTHON} ${product_tests}/own_bundle_test.py
    $<TARGET_FILE:plugin_host> $<TARGET_FILE:WENLOLIB>)
add_test(NAME product.plugin_hygiene
  COMMAND ${product_tests}/run_plugin_hygiene.sh
    $<TARGET_FILE:plugin_hygiene> $<TARGET_FILE:WENLOLIB>)
add_test(NAME product.install_and_consume
  COMMAND ${product_tests}/install_and_consume.sh ${PROJECT_BINARY_DIR}
    ${CMAKE_CURRENT_BINARY_DIR})
foreach(source IN ITEMS sources repository)
  add_test(NAME product.embedded_${source}
    COMMAND ${product_tests}/embed.sh ${source} ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_BINARY_DIR})
  set_tests_properties(product.embedded_${source} PROPERTIES SKIP_RETURN_CODE 77)
endforeach()
add_test(NAME product.check_hardening
  COMMAND ${product_tests}/check_hardening.sh $<TARGET_FILE:WENLOLIB>
    $<$<TARGET_EXISTS:wenlolib>:$<TARGET_FILE:wenlolib>>
    $<$<TARGET_EXISTS:WENLOLIB_objc>:$<TARGET_FILE:WENLOLIB_objc>>
    $<$<TARGET_EXISTS:wenlolib_receiver_shared>:$<TARGET_FILE:wenlolib_receiver_shared>>)
add_test(NAME product.check_exports
  COMMAND ${product_tests}/check_exports.sh $<TARGET_FILE:WENLOLIB>
    ${PROJECT_SOURCE_DIR}/product/exports.txt)
if(TARGET wenlolib_receiver_shared)
  add_test(NAME product.check_exports_receiver
    COMMAND ${product_tests}/check_exports.sh $<TARGET_FILE:wenlolib_receiver_shared>
      ${PROJECT_SOURCE_DIR}/product/receiver-exports.txt)
  add_test(NAME product.check_bindings_receiver
    COMMAND ${product_tests}/check_bindings.sh $<TARGET_FILE:wenlolib_receiver_shared>
      libarchive.so.13 libstdc++.so.6 libm.so.6 libgcc_s.so.1 libc.so.6 ld-linux-x86-64.so.2)
endif()
add_test(NAME product.check_bindings
  COMMAND ${product_tests}/check_bindings.sh $<TARGET_FILE:WENLOLIB>
    libstdc++.so.6 libm.so.6 libgcc_s.so.1 libc.so.6 ld-linux-x86-64.so.2)
add_test(NAME product.headers_alone
  COMMAND ${product_tests}/headers_alone.sh ${CMAKE_C_COMPILER} ${CMAKE_CXX_COMPILER}
    ${PROJECT_SOURCE_DIR}/include plugin.h codec.h version.h receiver_c.h)
set_tests_properties(product.plugin_hygiene PROPERTIES TIMEOUT 900 RUN_SERIAL ON)

foreach(kind IN ITEMS shared static static_exporting)
  add_test(NAME product.range_error_${kind} COMMAND range_error_${kind})
endforeach()
add_test(NAME product.plugin_copies
  COMMAND ${PYTHON} ${product_tests}/plugin_copies_test.py $<TARGET_FILE:plugin_copies>
    $<TARGET_FILE:plugin_copies_linked> $<TARGET_FILE:WENLOLIB>)
add_test(NAME product.environment
  COMMAND ${PYTHON} ${product_tests}/environment_test.py
    $<TARGET_FILE:plugin_host> $<TARGET_FILE:WENLOLIB>)
foreach(host IN ITEMS host_own_inside host_own_library host_brought_inside host_brought_library)
  add_test(NAME product.loading_${host}
    COMMAND ${PYTHON} ${product_tests}/foreign_functions_test.py
      $<TARGET_FILE:WENLOLIB> $<TARGET_FILE:loading_${host}>)
  add_test(NAME product.linked_${host}
    COMMAND ${PYTHON} ${product_tests}/foreign_functions_test.py $<TARGET_FILE:linked_${host}>)
endforeach()
