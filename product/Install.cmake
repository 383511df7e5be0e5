# Installed: the bundle, links to its shared object under the library's usual names, headers, a
# CMake package and a pkg-config file. The links make a linked host load the very file that lies in
# the bundle, so that the library finds its own version there. Any prefix will do.
include(CMakePackageConfigHelpers)

set(installed_bundle ${CMAKE_INSTALL_LIBDIR}/WENLOLIB.bundle)
install(TARGETS WENLOLIB LIBRARY DESTINATION ${installed_bundle}/Contents/Linux)
install(FILES ${bundle}/Contents/Info.plist DESTINATION ${installed_bundle}/Contents)

file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/links)
file(CREATE_LINK WENLOLIB.bundle/Contents/Linux/WENLOLIB
  ${CMAKE_CURRENT_BINARY_DIR}/links/${soname} SYMBOLIC)
file(CREATE_LINK ${soname} ${CMAKE_CURRENT_BINARY_DIR}/links/libWENLOLIB.so SYMBOLIC)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/links/${soname}
  ${CMAKE_CURRENT_BINARY_DIR}/links/libWENLOLIB.so DESTINATION ${CMAKE_INSTALL_LIBDIR})

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/wenlolib
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} PATTERN objc EXCLUDE)

install(TARGETS wenlolib_receiver_alone ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})

configure_package_config_file(WENLOLIBConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/WENLOLIBConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/WENLOLIB
  PATH_VARS CMAKE_INSTALL_INCLUDEDIR CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/WENLOLIBConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/WENLOLIBConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/WENLOLIBConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/WENLOLIB)

# The file finds the prefix from where it lies itself, so an installed tree may be moved.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
  BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE prefix_from_pkgconfig)
foreach(package IN ITEMS wenlolib wenlolib-receiver)
  configure_file(${package}.pc.in ${CMAKE_CURRENT_BINARY_DIR}/${package}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${package}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()
