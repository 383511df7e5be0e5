# The libraries that are built into the product: static archives, so that a host's copy is never
# called in their place. Their names are hidden by the product's export list.
find_library(WENLOLIB_EXPAT_ARCHIVE libexpat.a REQUIRED)
find_library(WENLOLIB_MBEDCRYPTO_ARCHIVE libmbedcrypto.a REQUIRED)
find_path(WENLOLIB_EXPAT_HEADERS expat.h REQUIRED)
find_path(WENLOLIB_MBEDTLS_HEADERS mbedtls/arc4.h REQUIRED)

# Expat reads environment variables that can make it print into its host, and takes randomness from
# a function of the C library that ends the process if the system has none to give. The copy that is
# built in calls functions of ours for both.
set(silent_expat ${CMAKE_CURRENT_BINARY_DIR}/libexpat_silent.a)
add_custom_command(OUTPUT ${silent_expat}
  COMMAND ${CMAKE_OBJCOPY} --redefine-sym getenv=wenlolib_noEnvironment
    --redefine-sym arc4random_buf=wenlolib_fillWithRandom
    ${WENLOLIB_EXPAT_ARCHIVE} ${silent_expat}
  DEPENDS ${WENLOLIB_EXPAT_ARCHIVE} VERBATIM)
add_custom_target(wenlolib_silent_expat DEPENDS ${silent_expat})

add_library(wenlolib_expat_needs STATIC linux/ExpatNeeds.cpp)
target_link_libraries(wenlolib_expat_needs PRIVATE wenlolib_sources)

add_library(wenlolib_expat INTERFACE)
add_dependencies(wenlolib_expat wenlolib_silent_expat)
target_include_directories(wenlolib_expat SYSTEM INTERFACE ${WENLOLIB_EXPAT_HEADERS})
target_link_libraries(wenlolib_expat INTERFACE ${silent_expat} wenlolib_expat_needs)

add_library(wenlolib_mbedtls INTERFACE)
target_include_directories(wenlolib_mbedtls SYSTEM INTERFACE ${WENLOLIB_MBEDTLS_HEADERS})
target_link_libraries(wenlolib_mbedtls INTERFACE ${WENLOLIB_MBEDCRYPTO_ARCHIVE})

# Which package of the distribution an archive came in: shows after a rebuild whether a fix is in.
# Empty without dpkg-query.
function(package_of name package)
  find_program(WENLOLIB_DPKG_QUERY dpkg-query)
  set(version "")
  if(WENLOLIB_DPKG_QUERY)
    execute_process(COMMAND ${WENLOLIB_DPKG_QUERY} -W -f "\${Package} \${Version}" ${package}
      OUTPUT_VARIABLE version ERROR_QUIET)
  endif()
  set(${name} "${version}" PARENT_SCOPE)
endfunction()
package_of(expat_package libexpat1-dev)
package_of(mbedtls_package libmbedtls-dev)
