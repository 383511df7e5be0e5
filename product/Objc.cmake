# The Objective-C plug-in for Linux: the same library with classes for hosts on GNUstep. Its tree is
# Apple's, with links at the root because that is where GNUstep's NSBundle looks.
set(objc_bundle ${PROJECT_BINARY_DIR}/objc/WENLOLIB.bundle)
set(objc_version_script ${CMAKE_CURRENT_BINARY_DIR}/objc-exports.map)
file(STRINGS objc-exports.txt objc_names REGEX "^[^#]")
list(JOIN objc_names [[";
    "]] objc_names)
file(CONFIGURE OUTPUT ${objc_version_script} @ONLY CONTENT
"{\n  global:\n    \"@objc_names@\";\n  local: *;\n};\n")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS objc-exports.txt)

add_library(WENLOLIB_objc SHARED)
target_link_libraries(WENLOLIB_objc PRIVATE
  wenlolib_core wenlolib_formats wenlolib_port wenlolib_cabi wenlolib_objc)
set_target_properties(WENLOLIB_objc PROPERTIES
  PREFIX "" SUFFIX "" OUTPUT_NAME WENLOLIB NO_SONAME ON
  LIBRARY_OUTPUT_DIRECTORY ${objc_bundle}/Contents/Linux
  LINK_DEPENDS ${objc_version_script})
# The runtime cannot unload classes: once loaded, this product stays loaded.
target_link_options(WENLOLIB_objc PRIVATE
  -Wl,--version-script=${objc_version_script} -Wl,-Bsymbolic -Wl,-z,defs -Wl,-z,nodelete -Wl,--as-needed)

configure_file(Info.plist.in ${objc_bundle}/Contents/Info.plist @ONLY)
file(MAKE_DIRECTORY ${objc_bundle}/Contents/Resources)
file(CREATE_LINK Contents/Info.plist ${objc_bundle}/Info.plist SYMBOLIC)
file(CREATE_LINK Contents/Resources ${objc_bundle}/Resources SYMBOLIC)
file(CREATE_LINK Contents/Linux/WENLOLIB ${objc_bundle}/WENLOLIB SYMBOLIC)
