# The plug-in for macOS: C functions and Objective-C classes in Apple's bundle tree.
if(NOT TARGET wenlolib_objc)
  message(FATAL_ERROR "The plug-in for macOS needs the Objective-C classes (WENLOLIB_BUILD_OBJC)")
endif()

# The exported names of classes differ between the two Objective-C runtimes.
file(STRINGS exports.txt exported_names REGEX "^[A-Za-z0-9_]+$")
list(TRANSFORM exported_names PREPEND _)
foreach(class IN ITEMS WENLOLIB CommonTooWenlolib)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    list(APPEND exported_names .objc_class_name_${class})
  else()
    list(APPEND exported_names _OBJC_CLASS_$_${class} _OBJC_METACLASS_$_${class})
  endif()
endforeach()
list(JOIN exported_names "\n" exported_names)
set(exports_list ${CMAKE_CURRENT_BINARY_DIR}/exports.list)
file(CONFIGURE OUTPUT ${exports_list} @ONLY CONTENT "@exported_names@\n")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS exports.txt)

add_library(WENLOLIB MODULE)
target_link_libraries(WENLOLIB PRIVATE wenlolib_core wenlolib_formats wenlolib_port wenlolib_cabi wenlolib_objc)
set_target_properties(WENLOLIB PROPERTIES
  PREFIX "" SUFFIX "" OUTPUT_NAME WENLOLIB LINKER_LANGUAGE CXX
  LIBRARY_OUTPUT_DIRECTORY ${bundle}/Contents/MacOS
  LINK_DEPENDS ${exports_list})
# Bind all imports when the plug-in is loaded: the go-between that starts programs is a forked copy
# of a process with threads, and must not enter the loader.
target_link_options(WENLOLIB PRIVATE
  -Wl,-exported_symbols_list,${exports_list} -Wl,-dead_strip -Wl,-bind_at_load)
configure_file(Info.plist.in ${bundle}/Contents/Info.plist @ONLY)

if(WENLOLIB_INSTALL)
  install(TARGETS WENLOLIB LIBRARY DESTINATION WENLOLIB.bundle/Contents/MacOS)
  install(FILES ${bundle}/Contents/Info.plist DESTINATION WENLOLIB.bundle/Contents)
endif()
