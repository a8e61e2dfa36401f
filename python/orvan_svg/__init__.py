# SPDX-License-Identifier: MIT
"""SVG files as trees of typed elements, and as pictures.

    import orvan_svg

    document = orvan_svg.Document.open("drawing.svg")
    for element in document:
        if element.kind == "circle":
            print(element.id, element.r, element.fill)
    pixels = document.render(width=256)          # NumPy array, rows × columns × red, green, blue, alpha
    document.to_png("drawing.png", scale=2)

Everything is safe to use from several threads: a document is used by one at a time, the others wait, and the
interpreter's lock is released while files are loaded and pictures drawn, so that threads with documents of their own
run side by side.
"""

from ._documents import Document, Finding, PictureWarning, RefusedError, Report
from ._elements import CLOSE, CUBIC, Element, LINE, MOVE, classes as _classes
from ._icons import Icon, dispatch_changes, follow_changes
from ._core import Length, Paint

__all__ = ["CLOSE", "CUBIC", "Document", "Element", "Finding", "Icon", "LINE", "Length", "MOVE", "Paint", "PictureWarning",
           "RefusedError", "Report", "dispatch_changes", "follow_changes", *sorted(_classes)]
globals().update(_classes)
