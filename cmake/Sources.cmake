# sources(RESULT PATTERN... [EXCEPT NAME...]): the files that fit the patterns. This is the one rule
# for what is compiled: a source is built with the others in its folder. Only exceptions are named.
function(sources result)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "EXCEPT")
  file(GLOB found CONFIGURE_DEPENDS ${arg_UNPARSED_ARGUMENTS})
  foreach(name IN LISTS arg_EXCEPT)
    list(FILTER found EXCLUDE REGEX "/${name}$")
  endforeach()
  set(${result} ${found} PARENT_SCOPE)
endfunction()
