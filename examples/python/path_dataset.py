# SPDX-License-Identifier: MIT
# %% [markdown]
# Makes a data set of normalised paths, as models that learn to draw icons want it: path_dataset.py OUT.npz ICONS…
# Every picture becomes a sequence of commands (move, line, cubic; a close is a line back) with six whole numbers each, the
# points on a grid of 256, the paths in reading order; what comes twice, and what is too long, is left out.
# %%
import pathlib
import sys

import numpy

import orvan_svg
from orvan_svg import CLOSE, CUBIC, LINE, MOVE

GRID, LONGEST = 255, 512
COUNTS = {MOVE: 1, LINE: 1, CUBIC: 3, CLOSE: 0}


# %% One picture: a row (command, x1, y1, x2, y2, x, y) for each command, the points that a command has not being -1.
def make_rows(paths):
    parts = []
    for place in range(len(paths)):
        points = iter(paths.points[paths.point_offsets[place]:paths.point_offsets[place + 1]])
        start = None
        for command in paths.commands[paths.command_offsets[place]:paths.command_offsets[place + 1]]:
            taken = [next(points) for _ in range(COUNTS[command])]
            if command == MOVE:
                start, part = taken[0], []
                parts.append(part)
            if command == CLOSE:
                command, taken = LINE, [start]
            part.append([command, *[-1] * (6 - 2 * len(taken)), *numpy.round(taken).astype(int).ravel()])
    # Subpaths from top to bottom and from left to right, by where they begin.
    return [row for part in sorted(parts, key=lambda part: (part[0][6], part[0][5])) for row in part]


# %% All pictures that are there, once each.
names, pictures = [], {}
for file in sorted(file for folder in sys.argv[2:] for file in pathlib.Path(folder).rglob("*.svg")):
    try:
        paths = orvan_svg.Document.open(file, keep_source=False).normalize(grid=GRID)
    except orvan_svg.RefusedError:
        continue
    rows = numpy.array(make_rows(paths), dtype=numpy.int16).reshape(-1, 7)
    if 0 < len(rows) <= LONGEST and rows.tobytes() not in pictures:
        pictures[rows.tobytes()] = rows
        names.append(str(file))

# %% One array for all, and where each picture begins in it.
sequences = list(pictures.values())
offsets = numpy.cumsum([0, *map(len, sequences)])
numpy.savez_compressed(sys.argv[1], rows=numpy.concatenate(sequences), offsets=offsets, names=names)
print(f"{len(names)} pictures, {offsets[-1]} commands")
