# SPDX-License-Identifier: MIT
# %% [markdown]
# Finds icons that look alike, whatever they are called and however they are written: find_alike.py ICONS… prints the pairs,
# the most alike first, with their distance: 0 for the same shape in any size and place.
# %%
import pathlib
import sys

import numpy

import orvan_svg

CELLS, FARTHEST = 12, 0.15


# %% A picture's signature: how much of its outlines lies in each cell of a grid over the box around all of them, softened
# by what is beside, and the proportions of that box.
def make_signature(document):
    paths = document.normalize(flatten=0.1, grid=100)
    points, begins, offset = paths.points, [], 0
    for command in paths.commands:
        if command == orvan_svg.MOVE:
            begins.append(offset)
        offset += command != orvan_svg.CLOSE
    if not len(points):
        return None
    low, high = points.min(axis=0), points.max(axis=0)
    extent = max(*(high - low), 1e-9)
    # Places along the lines, one for each hundredth of the box.
    places = []
    for begin, end in zip(begins, [*begins[1:], len(points)]):
        for first, second in zip(points[begin:end], numpy.roll(points[begin:end], -1, axis=0)):
            count = int(numpy.hypot(*(second - first)) / extent * 100) + 1
            places.append(first + (second - first) * numpy.arange(count)[:, None] / count)
    places = (numpy.concatenate(places) - (low + high) / 2) / extent + 0.5
    cells = numpy.histogram2d(*places.T, bins=CELLS, range=((0, 1), (0, 1)))[0]
    soft = sum(numpy.roll(numpy.pad(cells, 1), (x, y), (0, 1)) * (2 - abs(x)) * (2 - abs(y))
               for x in (-1, 0, 1) for y in (-1, 0, 1))
    return numpy.append(soft.ravel() / numpy.linalg.norm(soft), (high - low) / extent)


# %% All icons that draw something.
names, signatures = [], []
for file in sorted(file for folder in sys.argv[1:] for file in pathlib.Path(folder).rglob("*.svg")):
    try:
        signature = make_signature(orvan_svg.Document.open(file, keep_source=False))
    except orvan_svg.RefusedError:
        continue
    if signature is not None:
        names.append(file)
        signatures.append(signature)

# %% Every icon beside those after it.
pairs = []
for place in range(len(names) - 1):
    distances = numpy.linalg.norm(numpy.array(signatures[place + 1:]) - signatures[place], axis=1)
    pairs += [(distances[other], names[place], names[place + 1 + other]) for other in (distances < FARTHEST).nonzero()[0]]
for distance, first, second in sorted(pairs):
    print(f"{distance:.3f}  {first}  {second}")
