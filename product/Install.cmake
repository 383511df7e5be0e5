# What is installed, by component:
#   runtime      the plug-in, and the shared library under the name that linked hosts load
#   development  headers, the name that hosts link with, the receiver's archive, the CMake package, the
#                pkg-config files, the documentation, the manual page of the interface
#   tools        the command, with its manual pages and completions
#   objc         the plug-in with Objective-C classes, and its headers
#   receiver     the shared library that reads documents
#   python       the Python package
# The shared library's names are links to the file in the bundle itself, so that the library finds
# its own version there. Any prefix will do.
include(CMakePackageConfigHelpers)
set(installed_bundle ${CMAKE_INSTALL_LIBDIR}/WENLOLIB.bundle)
set(installed_objc_bundle ${CMAKE_INSTALL_LIBDIR}/wenlolib-objc/WENLOLIB.bundle)

# --- runtime ---

install(TARGETS WENLOLIB LIBRARY
  DESTINATION ${installed_bundle}/Contents/Linux COMPONENT runtime)
install(FILES ${bundle}/Contents/Info.plist
  DESTINATION ${installed_bundle}/Contents COMPONENT runtime)
file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/links)
file(CREATE_LINK WENLOLIB.bundle/Contents/Linux/WENLOLIB
  ${CMAKE_CURRENT_BINARY_DIR}/links/${soname} SYMBOLIC)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/links/${soname}
  DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime)

# --- development ---

file(CREATE_LINK ${soname} ${CMAKE_CURRENT_BINARY_DIR}/links/libWENLOLIB.so SYMBOLIC)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/links/libWENLOLIB.so
  DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/wenlolib
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development PATTERN objc EXCLUDE)

configure_package_config_file(WENLOLIBConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/WENLOLIBConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/WENLOLIB
  PATH_VARS CMAKE_INSTALL_INCLUDEDIR CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/WENLOLIBConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/WENLOLIBConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/WENLOLIBConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/WENLOLIB COMPONENT development)

# A pkg-config file finds the prefix from its own place, so an installed tree may be moved.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
  BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE prefix_from_pkgconfig)
function(install_pkg_config package component)
  configure_file(${package}.pc.in ${CMAKE_CURRENT_BINARY_DIR}/${package}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${package}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${component})
endfunction()
install_pkg_config(wenlolib development)

if(TARGET wenlolib_receiver_alone)
  install(TARGETS wenlolib_receiver_alone ARCHIVE
    DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
  install_pkg_config(wenlolib-receiver development)
endif()
if(TARGET wenlolib_receiver_shared)
  install(TARGETS wenlolib_receiver_shared LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    COMPONENT receiver NAMELINK_COMPONENT development)
  install_pkg_config(wenlolib-receiver-shared development)
endif()

file(GLOB pages ${PROJECT_SOURCE_DIR}/*.md)
install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development FILES_MATCHING PATTERN *.md)
install(FILES ${PROJECT_SOURCE_DIR}/tools/man/wenlolib.3
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development PATTERN CMakeLists.txt EXCLUDE)

# --- tools ---

if(TARGET wenlolib)
  set(tools ${PROJECT_SOURCE_DIR}/tools)
  install(TARGETS wenlolib RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
  foreach(section IN ITEMS 1 5)
    install(FILES ${tools}/man/wenlolib.${section}
      DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section} COMPONENT tools)
  endforeach()
  install(FILES ${tools}/schema/wenlolib-1.json ${tools}/schema/rows-1.json
    ${tools}/schema/rows-1.sql
    DESTINATION ${CMAKE_INSTALL_DATADIR}/wenlolib COMPONENT tools)
  install(FILES ${tools}/completion/wenlolib.bash RENAME wenlolib
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
  install(FILES ${tools}/completion/_wenlolib
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT tools)
  install(FILES ${tools}/completion/wenlolib.fish
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT tools)
endif()

# --- objc ---

# Beside the other plug-in, which keeps the plain name.
if(TARGET WENLOLIB_objc)
  install(TARGETS WENLOLIB_objc LIBRARY
    DESTINATION ${installed_objc_bundle}/Contents/Linux COMPONENT objc)
  install(FILES ${objc_bundle}/Contents/Info.plist
    DESTINATION ${installed_objc_bundle}/Contents COMPONENT objc)
  install(DIRECTORY ${objc_bundle}/Contents/Resources
    DESTINATION ${installed_objc_bundle}/Contents COMPONENT objc)
  install(FILES ${objc_bundle}/Info.plist ${objc_bundle}/Resources ${objc_bundle}/WENLOLIB
    DESTINATION ${installed_objc_bundle} COMPONENT objc)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/wenlolib/objc
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/wenlolib COMPONENT objc)
  install_pkg_config(wenlolib-objc objc)
endif()

if(PROJECT_IS_TOP_LEVEL)
  add_custom_target(uninstall
    COMMAND ${CMAKE_COMMAND} -P ${PROJECT_SOURCE_DIR}/product/Uninstall.cmake
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR} VERBATIM)
endif()
