# SPDX-License-Identifier: MIT
# CPack runs this when it has installed the components and not packed them yet. It adds what Debian's policy wants of every
# package: the licence as "copyright", the list of changes, packed manuals, and the exceptions that lintian is told of.
set(source ${CPACK_ORVAN_SOURCE})
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)

function(pack file)
	execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component ${CPACK_COMPONENTS_ALL})
	string(TOUPPER ${component} variable)
	set(package ${CPACK_DEBIAN_${variable}_PACKAGE_NAME})
	set(share ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share)
	set(doc ${share}/doc/${package})
	file(MAKE_DIRECTORY ${doc})
	file(COPY_FILE ${source}/packaging/copyright ${doc}/copyright)
	# Debian's form, with one entry: that of this version. The whole list is the project's own.
	file(WRITE ${doc}/changelog "orvan-svg (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium

  * The changes are listed in /usr/share/doc/orvan-svg/CHANGELOG.md.gz.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
	pack(${doc}/changelog)
	if(EXISTS ${source}/packaging/${package}.lintian-overrides)
		file(MAKE_DIRECTORY ${share}/lintian/overrides)
		file(COPY_FILE ${source}/packaging/${package}.lintian-overrides ${share}/lintian/overrides/${package})
	endif()
endforeach()

set(share ${CPACK_TEMPORARY_DIRECTORY}/program/usr/share)
pack(${share}/man/man1/orvan-svg.1)
pack(${share}/doc/orvan-svg/CHANGELOG.md)
file(REMOVE ${share}/doc/orvan-svg/LICENSE) # It is "copyright" there.
