# SPDX-License-Identifier: MIT
# Installs the build into a fresh prefix, builds the client and the installed examples against what is there and nothing
# else, and runs them and the installed program. Arguments: BUILD, SOURCE, WORK (folders), GENERATOR, COMPILER, FLAGS.
function(run)
	cmake_parse_arguments(PARSE_ARGV 0 run "" "EXPECT" "COMMAND")
	execute_process(COMMAND ${run_COMMAND} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
	if(NOT status EQUAL 0 OR (DEFINED run_EXPECT AND NOT output STREQUAL run_EXPECT))
		list(JOIN run_COMMAND " " command)
		message(FATAL_ERROR "${command}\nended with ${status}:\n${output}")
	endif()
	set(output "${output}" PARENT_SCOPE)
endfunction()

set(layers "state 0: #fff7cc\nstate 1: #fff1b0\nstate 2: #9aa5b1\nstate 3: #808b97\n")
file(REMOVE_RECURSE ${WORK})
run(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/first)
# What is installed must not depend on where it was installed.
file(RENAME ${WORK}/first ${WORK}/prefix)

# With CMake.
set(options -G ${GENERATOR} -DCMAKE_PREFIX_PATH=${WORK}/prefix -DCMAKE_CXX_COMPILER=${COMPILER}
	"-DCMAKE_CXX_FLAGS=${FLAGS} -Wall -Wextra -Werror")
run(COMMAND ${CMAKE_COMMAND} -S ${SOURCE}/tests/install -B ${WORK}/client ${options})
run(COMMAND ${CMAKE_COMMAND} --build ${WORK}/client)
run(COMMAND ${WORK}/client/lamp_states ${SOURCE}/examples/lamp.svg EXPECT "${layers}")

# With pkg-config. What it names are lists of arguments.
set(ENV{PKG_CONFIG_PATH} ${WORK}/prefix/${LIBDIR}/pkgconfig)
run(COMMAND pkg-config --cflags --libs orvan-svg)
separate_arguments(flags UNIX_COMMAND "${FLAGS} ${output}")
foreach(name svg cairo)
	run(COMMAND pkg-config --variable=${name}_module orvan-svg)
	string(STRIP "${output}" ${name}_module)
endforeach()
run(COMMAND ${COMPILER} -std=c++20 -DORVAN_SVG_MODULE="${svg_module}" ${SOURCE}/tests/install/client.cpp ${flags}
	-o ${WORK}/client/by_hand)
run(COMMAND ${WORK}/client/by_hand ${SOURCE}/examples/lamp.svg EXPECT "${layers}")

# The examples, as they are installed.
set(examples ${WORK}/prefix/share/doc/orvan-svg/examples)
run(COMMAND ${CMAKE_COMMAND} -S ${examples} -B ${WORK}/examples ${options})
run(COMMAND ${CMAKE_COMMAND} --build ${WORK}/examples)
file(WRITE ${WORK}/shapes.svg [[<svg xmlns="http://www.w3.org/2000/svg"><g fill="#0f0" transform="translate(2 3)"><rect
	id="r" x="1" y="2" width="3" height="4"/><path id="p" fill="red" transform="scale(.5)" d="M1 2C3 4 5 6 7 8Z"/></g></svg>]])
run(COMMAND ${WORK}/examples/walk_tree ${WORK}/shapes.svg
	EXPECT "r at 2 3, filled 0 1 0\np at 2 3, 3 commands, filled 1 0 0\n")
file(WRITE ${WORK}/edited.svg "<svg xmlns='http://www.w3.org/2000/svg'>\n  <!-- a -->\n  <g fill='red'/>\n</svg>\n")
run(COMMAND ${WORK}/examples/edit_and_save ${WORK}/edited.svg g teal "#eee" EXPECT "2 changes, 1 to undo\n")
# The last color cannot be read, so that nothing is done.
execute_process(COMMAND ${WORK}/examples/edit_and_save ${WORK}/edited.svg g blue nocolor
	RESULT_VARIABLE status ERROR_VARIABLE error)
file(READ ${WORK}/edited.svg edited)
set(expected "<svg xmlns='http://www.w3.org/2000/svg'>
  <!-- a -->
  <rect width=\"100%\" height=\"100%\" fill=\"#eee\"/>
  <g fill='teal'/>\n</svg>\n")
if(NOT edited STREQUAL expected OR NOT status EQUAL 1 OR NOT error STREQUAL "'nocolor' is no value of 'fill'.\n")
	message(FATAL_ERROR "The example wrote, and then ended with ${status}: ${error}\n${edited}")
endif()
# Half of a square is cut off. 96 pixels are an inch, and y goes up.
if(EXISTS ${WORK}/examples/plotter)
	file(WRITE ${WORK}/clipped.svg [[<svg xmlns="http://www.w3.org/2000/svg" width="96" height="96"><clipPath id="c"><rect
		width="48" height="96"/></clipPath><rect clip-path="url(#c)" width="96" height="48"/></svg>]])
	run(COMMAND ${WORK}/examples/plotter ${WORK}/clipped.svg EXPECT
		"G21\nG0 X0.00 Y12.70\nG1 X0.00 Y25.40\nG1 X12.70 Y25.40\nG1 X12.70 Y12.70\nG1 X0.00 Y12.70\n")
endif()
run(COMMAND ${WORK}/examples/draw ${WORK}/examples/net.orvan.example.postscript.so ${WORK}/shapes.svg ${WORK}/shapes.eps)
file(READ ${WORK}/shapes.eps picture)
set(expected "%!PS-Adobe-3.0 EPSF-3.0
%%BoundingBox: 0 0 300 300 
0 300 translate 1 -1 scale
1 0 0 1 0 0 6 array astore gsave concat
1 0 0 1 2 3 6 array astore gsave concat
1 0 0 1 0 0 6 array astore gsave concat
1 2 3 4 rectstroke grestore
0.5 0 0 0.5 0 0 6 array astore gsave concat
1 2 moveto
3 4 5 6 7 8 curveto
0 0 pop pop closepath
stroke grestore
grestore
grestore
")
if(NOT picture STREQUAL expected)
	message(FATAL_ERROR "The example drew:\n${picture}")
endif()
# The same host with the renderer that is installed, where one was built.
if(EXISTS ${cairo_module})
	run(COMMAND ${WORK}/examples/draw ${cairo_module} ${WORK}/shapes.svg ${WORK}/shapes.png)
	file(READ ${WORK}/shapes.png signature LIMIT 8 HEX)
	if(NOT signature STREQUAL 89504e470d0a1a0a)
		message(FATAL_ERROR "The renderer wrote no PNG: ${signature}")
	endif()
	# What a window shows of it, where the toolkit is there.
	if(EXISTS ${WORK}/examples/view_qt)
		run(COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen
			${WORK}/examples/view_qt ${WORK}/shapes.svg ${WORK}/window.png)
		file(READ ${WORK}/window.png signature LIMIT 8 HEX)
		if(NOT signature STREQUAL 89504e470d0a1a0a)
			message(FATAL_ERROR "The window's picture is no PNG: ${signature}")
		endif()
	endif()
endif()

# Event loops, each in a loop of its own with a file that changes twice: to something that can be drawn, and to nothing.
foreach(loop glib qt)
	if(NOT EXISTS ${WORK}/examples/watch_${loop})
		continue()
	endif()
	file(COPY_FILE ${WORK}/shapes.svg ${WORK}/watched.svg)
	# A watch that starts within a clock step of the last change cannot tell whether it came before or after.
	run(COMMAND timeout 60 sh -c [[cd "$1" && sleep 0.1 && examples/watch_$0 watched.svg 2 2>errors | while read word
		do
			echo $word
			sleep 0.1
			case $word in
			following) echo '<svg/>' > next.svg && mv next.svg watched.svg;;
			reloaded) echo '<svg' > watched.svg;;
			esac
		done]] ${loop} ${WORK} EXPECT "following\nreloaded\nkept\n")
endforeach()

# The program, and what stands beside it.
file(READ ${WORK}/prefix/share/man/man1/orvan-svg.1 man_page)
if(NOT man_page MATCHES "\n.SS check\n" OR NOT man_page MATCHES "\n.B [^\n]*jobs N [^\n]*\nNumber of threads" OR
	NOT man_page MATCHES "\n.SH EXIT STATUS\n0 when all went well")
	message(FATAL_ERROR "The man page does not say what the program's help says:\n${man_page}")
endif()
run(COMMAND ${WORK}/prefix/bin/orvan-svg ids ${SOURCE}/examples/lamp.svg stand EXPECT "stand\n")
foreach(file LICENSE THIRD-PARTY.md docs/host-checklist.md docs/editing.md docs/writing-a-renderer.md)
	if(NOT EXISTS ${WORK}/prefix/share/doc/orvan-svg/${file})
		message(FATAL_ERROR "${file} is not installed")
	endif()
endforeach()
