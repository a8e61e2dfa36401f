# SPDX-License-Identifier: MIT
# The API reference: the target `reference` builds it into reference/, and a test sees that it builds without a warning.
find_program(DOXYGEN doxygen)
if(NOT DOXYGEN)
	message(STATUS "doxygen is missing: there is no target for the API reference")
	return()
endif()
set(reference_command ${CMAKE_COMMAND} -E env ORVAN_VERSION=${PROJECT_VERSION} ORVAN_OUTPUT=${PROJECT_BINARY_DIR}/reference
	${DOXYGEN} ${PROJECT_SOURCE_DIR}/Doxyfile)
add_custom_target(reference COMMAND ${reference_command} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} VERBATIM
	COMMENT "Building the API reference in ${PROJECT_BINARY_DIR}/reference")
if(ORVAN_BUILD_TESTS)
	add_test(NAME reference COMMAND ${reference_command} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
endif()
