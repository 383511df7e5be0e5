# The shared library that reads documents: in C, in C++ and for Python. Like the archive it takes from
# the lower floors only what it needs, so nothing in it can write a document.
find_package(Threads REQUIRED)
version_script(receiver-exports.txt script)
add_library(wenlolib_receiver_shared SHARED ${WENLOLIB_RECEIVER_SOURCES} ${WENLOLIB_READING_SOURCES}
  ${PROJECT_SOURCE_DIR}/src/cabi/receiver.cpp)
target_compile_definitions(wenlolib_receiver_shared PUBLIC WENLOLIB_RECEIVER_SHARED)
target_link_libraries(wenlolib_receiver_shared
  PRIVATE wenlolib_sources wenlolib_expat wenlolib_mbedtls PkgConfig::ARCHIVE Threads::Threads)
target_link_options(wenlolib_receiver_shared PRIVATE
  -Wl,--version-script=${script} -Wl,-Bsymbolic-functions -Wl,-z,defs -Wl,--as-needed)
set_target_properties(wenlolib_receiver_shared PROPERTIES
  OUTPUT_NAME wenlolib-receiver VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
  LINK_DEPENDS ${script})

# What other projects link, the same as after installation.
add_library(WENLOLIB::receiver_shared ALIAS wenlolib_receiver_shared)
target_include_directories(wenlolib_receiver_shared INTERFACE ${PROJECT_SOURCE_DIR}/include)
