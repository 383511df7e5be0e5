# The Linux port, on libraries that can live in a host's process.
include(linux/BuiltIn.cmake)

# The excepted files belong to other targets.
sources(port_sources posix/*.cpp linux/*.cpp EXCEPT ExpatNeeds.cpp ReadingOnly.cpp)
add_library(wenlolib_port OBJECT ${port_sources})
# TLS descriptors are the default on Arm; on Intel they have to be asked for.
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-mtls-dialect=gnu2 WENLOLIB_TLS_DESCRIPTORS)
if(WENLOLIB_TLS_DESCRIPTORS)
  set_source_files_properties(linux/ExceptionStorage.cpp PROPERTIES
    COMPILE_OPTIONS -mtls-dialect=gnu2)
endif()
target_link_libraries(wenlolib_port PUBLIC
  wenlolib_core wenlolib_expat wenlolib_mbedtls ${CMAKE_DL_LIBS})
set_source_files_properties(linux/BuiltIn.cpp PROPERTIES COMPILE_DEFINITIONS
  "WENLOLIB_EXPAT_PACKAGE=\"${expat_package}\";WENLOLIB_MBEDTLS_PACKAGE=\"${mbedtls_package}\"")
