# SPDX-License-Identifier: MIT
"""SVG files as trees of typed elements, and as pictures.

    import orvan_svg

    document = orvan_svg.Document.open("drawing.svg")
    for element in document:
        if element.kind == "circle":
            print(element.id, element.r, element.fill)
    pixels = document.render(width=256)          # NumPy array, rows × columns × red, green, blue, alpha
    document.to_png("drawing.png", scale=2)
    print(document.hit(12, 30), document["door"].bbox())
    paths = document.normalize(grid=256)         # everything that is painted, as columns of plain paths

Everything is safe to use from several threads: a document is used by one at a time, the others wait, and the
interpreter's lock is released while files are loaded and pictures drawn, so that threads with documents of their own
run side by side.
"""

from ._documents import Document, Finding, PictureWarning, RefusedError, Repair, Report
from ._elements import CLOSE, CUBIC, Element, LINE, MOVE, classes as _classes
from ._geometry import NormalizedPaths, Outline, extend_shapes as _extend_shapes
from ._icons import Icon, dispatch_changes, follow_changes
from ._core import Box, Hit, Length, Paint, Place, __version__

__all__ = ["Box", "CLOSE", "CUBIC", "Document", "Element", "Finding", "Hit", "Icon", "LINE", "Length", "MOVE",
           "NormalizedPaths", "Outline", "Paint", "PictureWarning", "Place", "RefusedError", "Repair", "Report",
           "dispatch_changes", "follow_changes", *sorted(_classes)]
_extend_shapes(_classes)
globals().update(_classes)
for _class in (Document, Finding, Icon, NormalizedPaths, Outline, PictureWarning, RefusedError, Repair, Report):
    _class.__module__ = __name__  # Messages, help() and pickles name classes as their users do.
