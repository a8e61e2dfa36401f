# SPDX-License-Identifier: MIT
# Installs the build into a fresh prefix, builds the client against what is there and nothing else, and runs it and the
# installed program. Arguments: BUILD, SOURCE, WORK (folders), GENERATOR, COMPILER, FLAGS.
function(run)
	cmake_parse_arguments(PARSE_ARGV 0 run "" "EXPECT" "COMMAND")
	execute_process(COMMAND ${run_COMMAND} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
	if(NOT status EQUAL 0 OR (DEFINED run_EXPECT AND NOT output STREQUAL run_EXPECT))
		list(JOIN run_COMMAND " " command)
		message(FATAL_ERROR "${command}\nended with ${status}:\n${output}")
	endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
run(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/first)
# What is installed must not depend on where it was installed.
file(RENAME ${WORK}/first ${WORK}/prefix)

run(COMMAND ${CMAKE_COMMAND} -S ${SOURCE}/tests/install -B ${WORK}/build -G ${GENERATOR}
	-DCMAKE_PREFIX_PATH=${WORK}/prefix -DCMAKE_CXX_COMPILER=${COMPILER} "-DCMAKE_CXX_FLAGS=${FLAGS} -Wall -Wextra -Werror")
run(COMMAND ${CMAKE_COMMAND} --build ${WORK}/build)
run(COMMAND ${WORK}/build/lamp_states ${SOURCE}/examples/lamp.svg
	EXPECT "state 0: #fff7cc\nstate 1: #fff1b0\nstate 2: #9aa5b1\nstate 3: #808b97\n")
run(COMMAND ${WORK}/prefix/bin/orvan-svg ids ${SOURCE}/examples/lamp.svg stand EXPECT "stand\n")
