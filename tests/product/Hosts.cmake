# The hosts of the product's tests: plain ones, and ones in which the library meets another C++
# library, functions with the names of its own or of its built-in libraries, or a copy of itself.
include_guard(GLOBAL)
set(host_sources ${CMAKE_CURRENT_LIST_DIR})
set(host_folder ${PROJECT_BINARY_DIR}/tests/hosts)
add_custom_target(host_programs DEPENDS WENLOLIB)

foreach(part IN ITEMS plugin_library process_state)
  add_library(${part} OBJECT ${host_sources}/${part}.c)
  target_include_directories(${part} PUBLIC ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include ${host_sources})
  target_link_libraries(${part} PUBLIC wenlolib_warnings)
endforeach()

# link_with_library(HOST)
function(link_with_library host)
  target_include_directories(${host} PRIVATE ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${host} PRIVATE wenlolib_warnings -Wl,--no-as-needed WENLOLIB::WENLOLIB)
endfunction()

# add_host(HOST SOURCE)
function(add_host host source)
  add_executable(${host} ${host_sources}/${source})
  set_target_properties(${host} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${host_folder})
  add_dependencies(host_programs ${host})
endfunction()

# add_loading_host(HOST SOURCE)
function(add_loading_host host source)
  add_host(${host} ${source})
  target_link_libraries(${host} PRIVATE plugin_library process_state ${CMAKE_DL_LIBS})
  add_dependencies(${host} WENLOLIB)
endfunction()

foreach(host IN ITEMS plugin_host plugin_hygiene plugin_copies)
  add_loading_host(${host} ${host}.c)
endforeach()
add_loading_host(plugin_copies_linked plugin_copies.c)
link_with_library(plugin_copies_linked)

# Hosts that catch the one exception, with the C++ library that they share with the library, and
# with one of their own.
foreach(kind IN ITEMS shared static static_exporting)
  add_host(range_error_${kind} range_error_host.cpp)
  link_with_library(range_error_${kind})
  if(kind MATCHES static)
    target_link_options(range_error_${kind} PRIVATE -static-libstdc++ -static-libgcc)
  endif()
endforeach()
set_target_properties(range_error_static_exporting PROPERTIES ENABLE_EXPORTS ON)

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
set(brought_names_loading ${host_sources}/brought_names.inc)
set(brought_names_linked ${host_sources}/brought_names.inc)

# foreign_functions(TARGET FILE): has the target define functions of the names in the file
function(foreign_functions target file)
  target_sources(${target} PRIVATE ${host_sources}/foreign_functions.c ${file})
  target_compile_definitions(${target} PRIVATE FOREIGN_NAMES="${file}")
  target_compile_options(${target} PRIVATE -fno-builtin)
endfunction()

# Hosts that load the library or are linked with it, and that have functions called like its own or
# like those of the libraries built into it, in the host itself or in a library of the host's.
foreach(kind IN ITEMS loading linked)
  foreach(names IN ITEMS own brought)
    set(host ${kind}_host_${names})
    set(file ${${names}_names_${kind}})
    add_library(${host}_functions SHARED)
    set_target_properties(${host}_functions PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${host_folder})
    foreign_functions(${host}_functions ${file})
    foreach(place IN ITEMS inside library)
      if(kind STREQUAL "loading")
        add_loading_host(${host}_${place} plugin_host.c)
      else()
        add_host(${host}_${place} linked_host.cpp)
      endif()
    endforeach()
    foreign_functions(${host}_inside ${file})
    target_link_libraries(${host}_library PRIVATE -Wl,--no-as-needed ${host}_functions)
    if(kind STREQUAL "linked")  # after the library with the same names
      link_with_library(${host}_inside)
      link_with_library(${host}_library)
    endif()
    # What a linked host has in common with the library, the linker exports by itself.
    if(NOT host STREQUAL "linked_host_own")
      set_target_properties(${host}_inside ${host}_library PROPERTIES ENABLE_EXPORTS ON)
    endif()
  endforeach()
endforeach()
