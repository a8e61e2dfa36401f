# SPDX-License-Identifier: MIT
# The API reference of the headers: the target `reference` builds it into reference/, and a test sees that it builds
# without a warning. With Sphinx there is a target `site` as well: all documentation, into site/.
find_program(DOXYGEN doxygen)
if(NOT DOXYGEN)
	message(STATUS "doxygen is missing: there is no target for the API reference")
	return()
endif()
set(reference_command ${CMAKE_COMMAND} -E env ORVAN_VERSION=${PROJECT_VERSION} ORVAN_OUTPUT=${PROJECT_BINARY_DIR}/reference
	${DOXYGEN} ${PROJECT_SOURCE_DIR}/Doxyfile)
add_custom_target(reference COMMAND ${reference_command} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} VERBATIM
	COMMENT "Building the API reference in ${PROJECT_BINARY_DIR}/reference")
if(ORVAN_BUILD_TESTS AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
	add_test(NAME reference COMMAND ${reference_command} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
endif()

find_program(SPHINX sphinx-build)
if(SPHINX AND TARGET orvan_svg_python)
	add_custom_target(site COMMAND ${PROJECT_SOURCE_DIR}/scripts/make-site ${PROJECT_BINARY_DIR} VERBATIM
		COMMENT "Building the documentation in ${PROJECT_BINARY_DIR}/site")
	add_dependencies(site orvan_svg_python)
endif()
