# The libraries that are built into the product: static archives, so that no copy of a host's is
# ever called in their place. Their names are hidden by the product's export list.
find_library(WENLOLIB_EXPAT_ARCHIVE libexpat.a REQUIRED)
find_library(WENLOLIB_MBEDCRYPTO_ARCHIVE libmbedcrypto.a REQUIRED)
find_path(WENLOLIB_EXPAT_HEADERS expat.h REQUIRED)
find_path(WENLOLIB_MBEDTLS_HEADERS mbedtls/arc4.h REQUIRED)

# Expat asks the environment for variables by which it prints into its host. In the copy that is
# built in that question goes to a function that knows of none.
set(silent_expat ${CMAKE_CURRENT_BINARY_DIR}/libexpat_silent.a)
add_custom_command(OUTPUT ${silent_expat}
  COMMAND ${CMAKE_OBJCOPY} --redefine-sym getenv=wenlolib_noEnvironment
    ${WENLOLIB_EXPAT_ARCHIVE} ${silent_expat}
  DEPENDS ${WENLOLIB_EXPAT_ARCHIVE} VERBATIM)
add_custom_target(wenlolib_silent_expat DEPENDS ${silent_expat})

add_library(wenlolib_built_in INTERFACE)
add_dependencies(wenlolib_built_in wenlolib_silent_expat)
target_include_directories(wenlolib_built_in SYSTEM INTERFACE
  ${WENLOLIB_EXPAT_HEADERS} ${WENLOLIB_MBEDTLS_HEADERS})
target_link_libraries(wenlolib_built_in INTERFACE ${silent_expat} ${WENLOLIB_MBEDCRYPTO_ARCHIVE})

# Which package of the distribution an archive came in: whoever rebuilds after a flaw was mended
# there can see whether the mend is in. Empty where another packager is at work.
function(package_behind name package)
  find_program(WENLOLIB_DPKG_QUERY dpkg-query)
  set(version "")
  if(WENLOLIB_DPKG_QUERY)
    execute_process(COMMAND ${WENLOLIB_DPKG_QUERY} -W -f "\${Package} \${Version}" ${package}
      OUTPUT_VARIABLE version ERROR_QUIET)
  endif()
  set(${name} "${version}" PARENT_SCOPE)
endfunction()
package_behind(expat_package libexpat1-dev)
package_behind(mbedtls_package libmbedtls-dev)
