# Writes what ctest includes for this level to OUTPUT: where RUN finds the tools it needs, one boot of the machine that
# runs all scenarios of PROGRAM, and for each of them an entry that tells what became of it.
foreach(kind IN ITEMS "" "--boot;0")
  execute_process(COMMAND ${PROGRAM} ${kind} -functions OUTPUT_VARIABLE some COMMAND_ERROR_IS_FATAL ANY)
  string(APPEND names "${some}")
endforeach()
string(REGEX MATCHALL "[A-Za-z0-9_]+" names "${names}")

set(entries "execute_process(COMMAND [[${RUN}]] --check RESULT_VARIABLE status OUTPUT_QUIET ERROR_QUIET)
if(NOT status EQUAL 0)
  return()
endif()
add_test([[vm.boot]] [[${RUN}]] --collect --cuts 3 --build-dir [[${BUILD_DIR}]])
set_tests_properties([[vm.boot]] PROPERTIES LABELS vm TIMEOUT 5400 RUN_SERIAL TRUE FIXTURES_SETUP test-machine)
")
foreach(name IN LISTS names)
  string(APPEND entries
    "add_test([[vm.${name}]] [[${RUN}]] --result [[${name}]])\n"
    "set_tests_properties([[vm.${name}]] PROPERTIES LABELS vm FIXTURES_REQUIRED test-machine)\n")
endforeach()
file(WRITE ${OUTPUT} "${entries}")
