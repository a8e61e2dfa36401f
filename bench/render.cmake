# SPDX-License-Identifier: MIT
# Drawing a folder of files with the renderer's module and, where it is installed, with librsvg.
if(TARGET orvan_svg_cairo AND librsvg_FOUND)
	add_executable(render_bench render_bench.cpp corpus.cpp)
	target_link_libraries(render_bench PRIVATE
		orvan_options orvan::host orvan::svg_render_api benchmark::benchmark PkgConfig::librsvg)
	target_compile_definitions(render_bench PRIVATE
		ORVAN_SVG_MODULE="$<TARGET_FILE:orvan_svg>" ORVAN_CAIRO_MODULE="$<TARGET_FILE:orvan_svg_cairo>")
	add_dependencies(render_bench orvan_svg orvan_svg_cairo)
endif()
