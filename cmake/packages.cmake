# SPDX-License-Identifier: MIT
# Debian packages of what `cmake --install` installs, one for each component, made by `cpack --config
# build/release/CPackConfig.cmake`; and the wheel, made by scripts/make-wheel. scripts/check-packages makes and checks them.
set(ORVAN_PACKAGE_MAINTAINER "the orvan-svg authors <authors@orvan-svg.invalid>" CACHE STRING
	"Whom the packages name; whoever publishes them sets a name and an address")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orvan-svg)
set(CPACK_PACKAGE_CONTACT ${ORVAN_PACKAGE_MAINTAINER})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
	OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What Debian wants beside what is installed, and what it does not want.
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/finish.cmake)
set(CPACK_ORVAN_SOURCE ${PROJECT_SOURCE_DIR})

set(same_version "(= ${PROJECT_VERSION})")
set(CPACK_COMPONENTS_ALL program development)

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME orvan-svg)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "libarchive13 (>= 3.6)") # Batches load it when they need it.
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION "program and modules that load, edit and draw SVG files
The program looks at SVG files as trees of typed elements, draws them, edits
them without touching what was not meant, measures them, and tells which files
are refused, where and why.

With it come the modules that do the work: they are loaded by this program and
by others.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME liborvan-svg-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "orvan-svg ${same_version}")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "headers and host library of the orvan-svg modules
For host programs that load the SVG module and its companions, for renderers,
and for modules of other kinds: the headers, the library that hosts link, what
CMake and pkg-config need, examples, and the documentation for developers.")

if(TARGET orvan_svg_python)
	list(APPEND CPACK_COMPONENTS_ALL python)
	execute_process(COMMAND ${PYTHON_EXECUTABLE} -c
		"from sys import version_info as v; print(f'{v[0]}.{v[1]}), python3 (<< {v[0]}.{v[1] + 1}', end='')"
		OUTPUT_VARIABLE python_versions COMMAND_ERROR_IS_FATAL ANY)
	set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-orvan-svg)
	set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
	set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
		"orvan-svg ${same_version}, python3 (>= ${python_versions}), python3-numpy, libarchive13 (>= 3.6)")
	set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS python3-distributed)
	set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
		"${PROJECT_SOURCE_DIR}/packaging/postinst;${PROJECT_SOURCE_DIR}/packaging/prerm")
	set(CPACK_DEBIAN_PYTHON_DESCRIPTION "SVG files as trees of typed elements, for Python
Documents, elements of their kinds with typed attributes, editing, selectors,
saving, pictures as NumPy arrays, icons that reload inside of asyncio loops,
and batches that work through millions of files.")
endif()
include(CPack)
