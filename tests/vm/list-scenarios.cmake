# Writes one ctest entry for each scenario of PROGRAM to OUTPUT; REPORTER tells a scenario's result.
execute_process(COMMAND ${PROGRAM} -functions OUTPUT_VARIABLE names COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[A-Za-z0-9_]+" names "${names}")
set(entries "")
foreach(name IN LISTS names)
  string(APPEND entries
    "add_test([[vm.${name}]] [[${REPORTER}]] --result [[${name}]])\n"
    "set_tests_properties([[vm.${name}]] PROPERTIES LABELS vm FIXTURES_REQUIRED test-machine)\n")
endforeach()
file(WRITE ${OUTPUT} "${entries}")
