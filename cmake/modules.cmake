# SPDX-License-Identifier: MIT
# orvan_add_module(NAME ID SOURCES…): a loadable module, built as lib/orvan/ID.so, that exports `g_orvan` and nothing else.
function(orvan_add_module name id)
	add_library(${name} MODULE ${ARGN})
	set_target_properties(${name} PROPERTIES
		PREFIX "" OUTPUT_NAME ${id} SUFFIX .so
		LIBRARY_OUTPUT_DIRECTORY ${ORVAN_MODULE_DIRECTORY})
	target_link_libraries(${name} PRIVATE orvan_options orvan::host_api)
	# The version script keeps template statics of the standard library inside, which would otherwise pin the module in
	# memory; -z defs proves that nothing of the host is linked in or left open. Sanitizers leave their own symbols open.
	target_link_options(${name} PRIVATE
		LINKER:--version-script=${PROJECT_SOURCE_DIR}/cmake/module.map LINKER:-Bsymbolic)
	if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
		target_link_options(${name} PRIVATE LINKER:-z,defs)
	endif()
	set_property(TARGET ${name} PROPERTY LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/module.map)
endfunction()
