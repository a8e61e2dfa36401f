# SPDX-License-Identifier: MIT
# %% [markdown]
# Plots a picture: plot.py PICTURE.svg OUT.hpgl [SIDE], SIDE in millimetres (180 when not given). The pen draws the outlines
# of everything that is painted, and goes to the nearest line next, which saves most of the way above the paper.
# For G-code, and without an order of the lines, `orvan-svg normalize -o OUT.gcode` does it.
# %%
import sys

import numpy

import orvan_svg

UNITS = 40  # Of HPGL, in a millimetre.
side = float(sys.argv[3]) if len(sys.argv) > 3 else 180
paths = orvan_svg.Document.open(sys.argv[1], keep_source=False).normalize(flatten=0.05, grid=side)
MOVE, CLOSE = orvan_svg.MOVE, orvan_svg.CLOSE

# %% Straight lines only: one array of points for each time that the pen goes down.
lines, point = [], 0
for command in paths.commands:
    if command == MOVE:
        lines.append([])
    if command == CLOSE:
        lines[-1].append(lines[-1][0])
    else:
        lines[-1].append(paths.points[point])
        point += 1
# y goes up on paper.
lines = [numpy.array(line) * (1, -1) + (0, paths.size[1]) for line in lines if len(line) > 1]


# %% From where the pen is, the line whose nearer end is nearest.
def measure_way(lines):
    ends = numpy.array([(0, 0), *(line[end] for line in lines for end in (0, -1))][:-1])
    return numpy.hypot(*(ends[1::2] - ends[0::2]).T).sum()


place, left, ordered = numpy.zeros(2), list(lines), []
while left:
    distances = numpy.array([[numpy.hypot(*(line[end] - place)) for end in (0, -1)] for line in left])
    index, end = numpy.unravel_index(distances.argmin(), distances.shape)
    line = left.pop(index)
    ordered.append(line[::-1] if end else line)
    place = ordered[-1][-1]

# %% HPGL counts in whole units.
with open(sys.argv[2], "w", encoding="ascii") as file:
    file.write("IN;SP1;\n")
    for line in ordered:
        first, *others = [f"{x},{y}" for x, y in numpy.round(line * UNITS).astype(int)]
        file.write(f"PU{first};PD{','.join(others)};\n")
    file.write("PU0,0;SP0;\n")
print(f"{len(ordered)} lines; above the paper {measure_way(ordered):.0f} mm instead of {measure_way(lines):.0f}")
