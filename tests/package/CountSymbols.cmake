# Run with cmake -P; the arguments are those of CMakeLists.txt beside it. What is exported can be broken for hosts.
execute_process(COMMAND ${NM} --dynamic --defined-only ${LIBRARIES} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL " [A-Z] [^\n]+" symbols "${symbols}")
list(LENGTH symbols count)
message(STATUS "${count} symbols are exported")
if(count GREATER 300 OR count EQUAL 0)
  message(FATAL_ERROR "Wanted are at most 300, and some")
endif()
