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
