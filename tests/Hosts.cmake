# Hosts in which the library meets another C++ library, names like its own, libraries of its kind and
# itself.

# A linked host loads the shared object by its soname and finds it beside its own link to it.
set(linked_library ${CMAKE_CURRENT_BINARY_DIR}/linked)
file(MAKE_DIRECTORY ${linked_library})
file(CREATE_LINK ${PROJECT_BINARY_DIR}/WENLOLIB.bundle/Contents/Linux/WENLOLIB
  ${linked_library}/libWENLOLIB.so.${PROJECT_VERSION_MAJOR} SYMBOLIC)

# link_with_library(HOST)
function(link_with_library host)
  target_include_directories(${host} PRIVATE ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${host} PRIVATE wenlolib_warnings
    -Wl,--no-as-needed $<TARGET_FILE:WENLOLIB>)
  set_target_properties(${host} PROPERTIES BUILD_RPATH ${linked_library})
  add_dependencies(${host} WENLOLIB)
endfunction()

# The one exception, across C++ libraries of the host's own.
foreach(kind IN ITEMS shared static static_exporting)
  set(host range_error_${kind})
  add_executable(${host} product/range_error_host.cpp)
  link_with_library(${host})
  if(kind MATCHES static)
    target_link_options(${host} PRIVATE -static-libstdc++ -static-libgcc)
  endif()
  if(kind MATCHES exporting)
    set_target_properties(${host} PROPERTIES ENABLE_EXPORTS ON)
  endif()
  add_test(NAME product.${host} COMMAND ${host})
endforeach()

# Two copies of the library in one process.
foreach(host IN ITEMS plugin_copies plugin_copies_linked)
  add_executable(${host} product/plugin_copies.c)
  target_link_libraries(${host} PRIVATE plugin_library ${CMAKE_DL_LIBS})
endforeach()
link_with_library(plugin_copies_linked)
add_test(NAME product.plugin_copies
  COMMAND ${PYTHON} ${product_tests}/plugin_copies_test.py $<TARGET_FILE:plugin_copies>
    $<TARGET_FILE:plugin_copies_linked> $<TARGET_FILE:WENLOLIB>)

add_test(NAME product.environment
  COMMAND ${PYTHON} ${product_tests}/environment_test.py
    $<TARGET_FILE:plugin_host> $<TARGET_FILE:WENLOLIB>)

# The names of the library's own functions, each as FOREIGN(name). A linked host calls two of them.
set(left_out_loading "-")
set(left_out_linked "N8wenlolib.*(writeAppInfoWith|writePrinterLogInfoWith)")
foreach(kind IN ITEMS loading linked)
  set(own_names_${kind} ${CMAKE_CURRENT_BINARY_DIR}/own_names_${kind}.inc)
  string(CONCAT list_names "nm -D --defined-only '$<TARGET_FILE:WENLOLIB>' | "
    "sed -e 's/.* //' -e 's/.*/FOREIGN(&)/' | grep -vE -e '${left_out_${kind}}' > "
    "'${own_names_${kind}}'")
  add_custom_command(OUTPUT ${own_names_${kind}} DEPENDS WENLOLIB VERBATIM
    COMMAND sh -c ${list_names})
endforeach()

# foreign_functions(TARGET KIND NAMES): has the target define functions of these names
function(foreign_functions target kind names)
  set(file ${product_tests}/brought_names.inc)
  if(names STREQUAL "own")
    set(file ${own_names_${kind}})
  endif()
  target_sources(${target} PRIVATE product/foreign_functions.c ${file})
  target_compile_definitions(${target} PRIVATE FOREIGN_NAMES="${file}")
  target_compile_options(${target} PRIVATE -fno-builtin)
endfunction()

# Hosts that load the library or are linked with it, and that have functions called like its own or
# like those of the libraries it brings, themselves or in a library of theirs.
foreach(kind IN ITEMS loading linked)
  foreach(names IN ITEMS own brought)
    set(library ${kind}_host_functions_${names})
    add_library(${library} SHARED)
    foreign_functions(${library} ${kind} ${names})
    foreach(place IN ITEMS inside library)
      set(host ${kind}_host_${names}_${place})
      if(kind STREQUAL "linked")
        add_executable(${host} product/linked_host.cpp)
        set(argument "")
      else()
        add_executable(${host} product/plugin_host.c)
        target_link_libraries(${host} PRIVATE plugin_library ${CMAKE_DL_LIBS})
        set(argument $<TARGET_FILE:WENLOLIB>)
      endif()
      if(place STREQUAL "library")
        target_link_libraries(${host} PRIVATE -Wl,--no-as-needed ${library})
      else()
        foreign_functions(${host} ${kind} ${names})
      endif()
      if(kind STREQUAL "linked")
        link_with_library(${host})  # after the library with the same names
      endif()
      if(NOT "${kind} ${names}" STREQUAL "linked own")  # the linker exports what both have
        set_target_properties(${host} PROPERTIES ENABLE_EXPORTS ON)
      endif()
      add_test(NAME product.${host}
        COMMAND ${PYTHON} ${product_tests}/foreign_functions_test.py ${argument}
          $<TARGET_FILE:${host}>)
    endforeach()
  endforeach()
endforeach()
