# Building for macOS on Linux: see scripts/build-macos, which sets up what is named here.
#   WENLOLIB_MACOS_TOOLCHAIN  the folder of the cross compiler's wrappers
#   WENLOLIB_MACOS_ARCH       x86_64 or arm64
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR ${WENLOLIB_MACOS_ARCH})
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES WENLOLIB_MACOS_TOOLCHAIN WENLOLIB_MACOS_ARCH)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

foreach(language IN ITEMS C OBJC)
  set(CMAKE_${language}_COMPILER ${WENLOLIB_MACOS_TOOLCHAIN}/${WENLOLIB_MACOS_ARCH}-cc)
endforeach()
foreach(language IN ITEMS CXX OBJCXX)
  set(CMAKE_${language}_COMPILER ${WENLOLIB_MACOS_TOOLCHAIN}/${WENLOLIB_MACOS_ARCH}-c++)
endforeach()
foreach(tool IN ITEMS ar ranlib install-name-tool)
  string(TOUPPER ${tool} variable)
  string(REPLACE - _ variable ${variable})
  find_program(CMAKE_${variable} NAMES llvm-${tool}-14)
endforeach()
set(WENLOLIB_FOUNDATION "-framework Foundation" CACHE STRING "")
