# SPDX-License-Identifier: MIT
"""Asking a picture that nobody draws: where elements lie, what is at a point, how long an outline is, and everything as
plain paths.

All numbers are user units as 64-bit floats; y goes down.
"""

from . import _core
from ._documents import Document
from ._core import NormalizedPaths, Outline
from ._elements import add_arrays


def bbox(self, kind="fill", space="view"):
    """The Box around the element and all below it, tight around its curves; None when there is nothing.

    `kind` says what it is around: "fill", the outlines whatever they are painted with, as getBBox of browsers;
    "stroke", the outlines with their strokes; "visual", what can be seen. `space` says which coordinates are meant:
    "element", those in which the element's attributes are; "parent", those of the element around it; "document", those
    of the root's content; "view", pixels at scale 1 from the picture's upper left corner. Raises KeyError for an element
    that is not in its document's tree.
    """
    return _core._bbox(self, kind, space)


def transform_to(self, space="view"):
    """The transform from the element's own coordinates to others (see `bbox`): a, b, c, d, e, f. Raises KeyError for an
    element that is not in its document's tree, and for one that nothing is drawn for."""
    return _core._transform_to(self, space)


def outline(self, space="element"):
    """The Outline of a shape, or of a text's letters; of other elements all outlines at and below them. It stands by
    itself: later edits do not change it. Raises KeyError as `transform_to`."""
    return _core._outline(self, space)


def view_size(self):
    """Width and height of the picture, in pixels at scale 1."""
    return _core._view_size(self)


def boxes(self, kind="fill", space="view"):
    """The boxes of all elements at once: a NumPy array of float64 with a row (x, y, width, height) for each element of
    `list(document)`, in that order; not numbers where there is none. `kind` and `space` as for `Element.bbox`."""
    return _core._boxes(self, kind, space)


def hit(self, x, y, *, tolerance=0.0, ignore_pointer_events=False):
    """The topmost Hit at a point of the picture; None when nothing is there.

    `tolerance` is how many pixels off things may lie. `ignore_pointer_events` finds what is visible and painted, whatever
    its "pointer-events" say. The first call makes an index; each takes microseconds then.
    """
    found = _core._hits(self, x, y, tolerance, False, ignore_pointer_events)
    return found[0] if found else None


def hit_all(self, x, y, *, tolerance=0.0, ignore_pointer_events=False):
    """A list of everything at a point of the picture, the topmost Hit first. Options as for `hit`."""
    return _core._hits(self, x, y, tolerance, True, ignore_pointer_events)


def hit_rect(self, x, y, width, height, *, inside=False):
    """A list of what a rectangle of the picture meets, by the boxes of what is painted, the topmost Hit first; with
    `inside` only of what lies inside as a whole."""
    return _core._hits_in(self, (x, y, width, height), inside)


def normalize(self, *, strokes="kept", flatten=0.0, stroke_tolerance=0.01, grid=0.0, precision=0.0, clips="ignored"):
    """Everything that is painted and visible as plain paths, in painting order: NormalizedPaths, whose columns are NumPy
    arrays.

    `strokes` is "kept", or "outlined" to have each stroke as a path of its own that is filled, within `stroke_tolerance`.
    `flatten` greater than 0 makes straight lines of curves, no farther off than this. `grid` greater than 0 fits the
    picture into a square of this side, with its proportions kept. `precision` greater than 0 rounds coordinates to
    multiples of it, after all else. All of these are in units of the result. `clips` is "ignored" or "applied": then paths
    end where clip paths and viewports cut them off, and strokes that are cut off are outlined. Raises ValueError for what
    makes no sense.
    """
    options = _core.NormalizeOptions(strokes, flatten, stroke_tolerance, grid, precision, clips)
    return _core._normalize(self, options)


def normalized(self, *, strokes="kept", flatten=0.0, stroke_tolerance=0.01, grid=0.0, precision=0.0, clips="applied"):
    """Everything that is painted and visible as a new Document of plain paths that looks like the picture: beside paths it
    has gradients, patterns, images, masks, and groups where a group has an opacity, a clip path, a mask, a filter or is
    blended. It stands by itself.

    Options as for `normalize`; with `clips` "kept" it has clip paths of plain paths. What is filtered keeps its
    coordinates, in a group with a transform. Raises ValueError for what makes no
    sense.
    """
    options = _core.NormalizeOptions(strokes, flatten, stroke_tolerance, grid, precision, clips)
    document = Document(complete=True, tolerant=True, keep_source=True, style_sheet="")
    _core._normalized(self, options, document)
    return document


def columns(self):
    """All columns by their names, as for `numpy.savez(path, **paths.columns())`."""
    return {name: getattr(self, name) for name in COLUMNS}


def _length(self):
    """The length of the shape's outline, in its own coordinates."""
    return outline(self).length


def point_at(self, length):
    """The Place at a length from the start of the shape's outline, in its own coordinates."""
    return outline(self).point_at(length)


#: The names of the columns of NormalizedPaths.
COLUMNS = tuple(name for name, member in vars(NormalizedPaths).items()
                if isinstance(member, property) and name not in ("elements", "size", "unclipped_count"))

for _method in (bbox, transform_to, outline):
    setattr(_core.Element, _method.__name__, _method)
for _method in (boxes, hit, hit_all, hit_rect, normalize, normalized):
    setattr(_core.Document, _method.__name__, _method)
_core.Document.view_size = property(view_size)
NormalizedPaths.columns = columns
add_arrays(Outline)


def extend_shapes(classes):
    """Gives the classes of shapes what only shapes have."""
    for name in ("Path", "Rect", "Circle", "Line"):
        classes[name].length = property(_length, doc=_length.__doc__)
        classes[name].point_at = point_at
