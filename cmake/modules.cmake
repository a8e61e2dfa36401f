# SPDX-License-Identifier: MIT
# orvan_add_module(NAME ID SOURCES…): a loadable module that exports `g_orvan` and nothing else, built as ID.so. Used here
# and, through the package, by modules of others. Here it is built into lib/orvan; others get it in their build folder.
function(orvan_add_module name id)
	add_library(${name} MODULE ${ARGN})
	set_target_properties(${name} PROPERTIES
		PREFIX "" OUTPUT_NAME ${id} SUFFIX .so
		CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
	if(ORVAN_MODULE_DIRECTORY)
		set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${ORVAN_MODULE_DIRECTORY})
	endif()
	target_link_libraries(${name} PRIVATE orvan::host_api)
	if(TARGET orvan_options)
		target_link_libraries(${name} PRIVATE orvan_options)
	endif()
	# The version script keeps template statics of the standard library inside, which would otherwise pin the module in
	# memory; -z defs proves that nothing of the host is linked in or left open. Sanitizers leave their own symbols open.
	set(map ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/module.map)
	target_link_options(${name} PRIVATE LINKER:--version-script=${map} LINKER:-Bsymbolic)
	if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
		target_link_options(${name} PRIVATE LINKER:-z,defs)
	endif()
	set_property(TARGET ${name} PROPERTY LINK_DEPENDS ${map})
endfunction()
