# The module exports QVPI_CreatePlugin and nothing else: neither its own classes nor those of an Expat linked into it.
execute_process(COMMAND ${NM} -D --defined-only --format=posix ${MODULE} OUTPUT_VARIABLE symbols
                COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE " [^\n]*\n" ";" symbols "${symbols}")
list(FILTER symbols EXCLUDE REGEX "^(_init|_fini|__asan_.*|__odr_asan.*|__gcov_.*|llvm_gcov.*|)$")
if(NOT symbols STREQUAL "QVPI_CreatePlugin" AND NOT symbols STREQUAL "QVPI_CreatePlugin;")
    message(FATAL_ERROR "the module exports ${symbols}")
endif()
