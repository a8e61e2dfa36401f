# SPDX-License-Identifier: MIT
# What `cmake --install` puts where. The modules stand where the program looks for them. The program, further modules and
# the Python package say so in their own folders. Without a component, a file belongs to the program.
include(CMakePackageConfigHelpers)

install(TARGETS orvan_svg LIBRARY DESTINATION ${ORVAN_INSTALLED_MODULES})
install(FILES README.md LICENSE THIRD-PARTY.md CHANGELOG.md DESTINATION share/doc/orvan-svg)

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)
install(TARGETS orvan_host orvan_host_api orvan_svg_api orvan_svg_render_api EXPORT orvan-svg-targets
	ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY host/include/ DESTINATION include)
install(DIRECTORY include/ renderer/include/ DESTINATION include/orvan-svg FILES_MATCHING PATTERN *.h)

# How others find it: as a CMake package and with pkg-config, wherever the prefix is moved to.
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/orvan-svg)
install(EXPORT orvan-svg-targets NAMESPACE orvan:: DESTINATION ${package_folder})
configure_package_config_file(cmake/orvan-svg-config.cmake.in ${PROJECT_BINARY_DIR}/orvan-svg-config.cmake
	INSTALL_DESTINATION ${package_folder} PATH_VARS ORVAN_INSTALLED_MODULES)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/orvan-svg-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/orvan-svg-config.cmake ${PROJECT_BINARY_DIR}/orvan-svg-config-version.cmake
	cmake/modules.cmake cmake/module.map DESTINATION ${package_folder})

file(RELATIVE_PATH ORVAN_PREFIX_FROM_PKGCONFIG /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/orvan-svg.pc.in ${PROJECT_BINARY_DIR}/orvan-svg.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orvan-svg.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(DIRECTORY docs examples DESTINATION share/doc/orvan-svg PATTERN docs/site EXCLUDE)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME program)

# All that is installed, without the tests.
add_custom_target(installed)
foreach(target orvan_host orvan_svg orvan_svg_cairo orvan_svg_geometry orvan_svg_program orvan_svg_python)
	if(TARGET ${target})
		add_dependencies(installed ${target})
	endif()
endforeach()
