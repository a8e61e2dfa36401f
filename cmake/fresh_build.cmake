# SPDX-License-Identifier: MIT
# ORVAN_FRESH_BUILD makes builds from nothing quick, as the sanitizers' are: what most units of a target include is read
# once a target, which is otherwise most of the time that a unit takes. It is off in the release preset, because a change to
# any of these headers compiles the target again, a forgotten include is not noticed, and g++ 12 warns of its own strings.
if(NOT ORVAN_FRESH_BUILD)
	return()
endif()

# orvan_precompile(HEADERS… TARGETS TARGET…): for those of the targets that there are.
function(orvan_precompile)
	cmake_parse_arguments(PARSE_ARGV 0 arg "" "" "TARGETS")
	foreach(target ${arg_TARGETS})
		if(TARGET ${target})
			target_precompile_headers(${target} PRIVATE ${arg_UNPARSED_ARGUMENTS})
		endif()
	endforeach()
endfunction()

set(standard <algorithm> <array> <atomic> <bit> <charconv> <cmath> <cstddef> <cstdint> <cstdio> <cstdlib> <cstring>
	<functional> <iterator> <limits> <memory> <new> <numbers> <optional> <span> <string> <string_view> <tuple> <type_traits>
	<utility> <vector>)
file(GLOB host_headers RELATIVE ${PROJECT_SOURCE_DIR}/host/include ${PROJECT_SOURCE_DIR}/host/include/orvan/*.h)
list(TRANSFORM host_headers REPLACE "(.+)" "<\\1>")
file(GLOB svg_headers RELATIVE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/include/*.h)
list(TRANSFORM svg_headers REPLACE "(.+)" "<\\1>")

orvan_precompile(${standard} TARGETS orvan_svg_grammar orvan_svg_css orvan_images orvan_filters)
orvan_precompile(${standard} ${host_headers} TARGETS orvan_host)
orvan_precompile(${standard} <memory_resource> ${host_headers} ${svg_headers} TARGETS orvan_svg orvan_fuzz_document)
orvan_precompile(${standard} ${host_headers} ${svg_headers} <pango/pango.h> <hb.h> TARGETS orvan_drawing orvan_svg_geometry)
orvan_precompile(${standard} ${host_headers} ${svg_headers} <pango/pangocairo.h> TARGETS orvan_svg_cairo)
orvan_precompile(${standard} <filesystem> <map> ${host_headers} ${svg_headers} TARGETS orvan_svg_program)
orvan_precompile(${standard} ${host_headers} ${svg_headers} <pybind11/numpy.h> <pybind11/stl.h> TARGETS orvan_svg_python)

# What only joins one interface to another takes a sanitizer's optimiser longest, and the tests hardly notice.
foreach(target orvan_svg_program orvan_svg_python)
	if(TARGET ${target})
		target_compile_options(${target} PRIVATE -O0)
	endif()
endforeach()
set_source_files_properties(interface_registration.cpp svg_elements_impl.cpp TARGET_DIRECTORY orvan_svg
	PROPERTIES COMPILE_OPTIONS -O0 SKIP_PRECOMPILE_HEADERS ON)

orvan_precompile(${standard} <gtest/gtest.h> TARGETS orvan_svg_grammar_test css_tests pixel_tests)
orvan_precompile(${standard} <gtest/gtest.h> <thread> ${host_headers} TARGETS host_tests)
orvan_precompile(${standard} <gtest/gtest.h> <thread> ${host_headers} ${svg_headers} TARGETS renderer_tests geometry_tests icon_tests)
orvan_precompile(${standard} <gtest/gtest.h> <nlohmann/json.hpp> <thread> ${host_headers} ${svg_headers} TARGETS module_tests)
orvan_precompile(${standard} <gtest/gtest.h> <nlohmann/json.hpp> <filesystem> <fstream> TARGETS orvan_program_test)
