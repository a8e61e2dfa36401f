# SPDX-License-Identifier: MIT
"""Documents: files that were loaded, what there is to say about them, and their pictures."""

import contextlib
import dataclasses
import os
import typing
import urllib.parse
import warnings

from . import _modules  # noqa: F401 - opens the modules
from . import _core, _elements


class RefusedError(ValueError):
    """A file whose content cannot be used. `report` has the reason with its place; `line` and `column` are from 1, or 0
    where they are not known."""

    def __init__(self, name, report):
        reason = next((finding for finding in report.findings if finding.level == "critical"), None)
        self.report = report
        self.line = reason.line if reason else 0
        self.column = reason.column if reason else 0
        place = f":{self.line}:{self.column}" if self.line else ""
        super().__init__(f"{name}{place}: {reason.message if reason else report.outcome}")


class PictureWarning(UserWarning):
    """Something was left out of a picture."""


@dataclasses.dataclass(frozen=True)
class Finding:
    """One thing that an import has to say about a file."""

    level: str  #: "warning": something was left out; "critical": the file was refused for it.
    line: int  #: From 1; 0 where it is not known.
    column: int  #: In bytes, from 1; 0 where it is not known.
    tag: str  #: The element's tag; "" where the finding is about none.
    id: str
    attribute: str  #: The attribute or property; "" where the finding is about none.
    message: str


@dataclasses.dataclass(frozen=True)
class Report:
    """What became of a load."""

    outcome: str  #: "empty", "loaded", "loaded with findings", "refused" or "no svg element".
    findings: tuple  #: The first 100.
    finding_count: int  #: How many there were in all.


class Repair(typing.NamedTuple):
    """A value that `Document.repair` has replaced."""

    line: int  #: Of the value in the text as it was loaded, from 1.
    column: int
    tag: str
    id: str
    attribute: str
    before: str
    after: str  #: "" where the attribute or declaration was taken out: a browser reads nothing there.


class Document(_core.Document):
    """An SVG document: `document["id"]` finds an element, iterating gives all of them in document order."""

    _is_icon = False

    @classmethod
    def open(cls, source, *, complete=True, tolerant=True, style_sheet=None, base=None, keep_source=True):
        """Loads a document.

        `source` is a path, bytes (`text.encode()`), or an open binary file. `complete` reads all that a browser would, style sheets
        included; without it only a plain and strict part of SVG is read. `tolerant` leaves out a value that is not
        valid instead of refusing the file, and reports it. `style_sheet` is CSS of the caller's own, which comes after
        that of the file. `base` is the path that relative references of bytes are resolved against. `keep_source`
        remembers the text, so that `save` changes nothing in it but what was edited; it takes time and memory.

        Raises RefusedError for content that cannot be used, FileNotFoundError and other OSErrors for files that cannot
        be read, MemoryError. Other threads go on meanwhile.
        """
        document = cls(complete=complete, tolerant=tolerant, keep_source=keep_source, style_sheet=style_sheet or "",
                       is_icon=cls._is_icon)
        if isinstance(source, (str, os.PathLike)):
            name = os.fspath(source)
            document._load_path(os.path.abspath(name))
        else:
            if hasattr(source, "read"):
                name, source = getattr(source, "name", "<file>"), source.read()
            else:
                name = "<bytes>"
            # Not bytes(source), which makes zeros of a number.
            document._load_bytes(bytes(memoryview(source)), os.path.abspath(base) if base else "")
        report = document.report
        if report.outcome not in ("loaded", "loaded with findings"):
            raise RefusedError(name, report)
        return document

    def __repr__(self):
        return f"<{type(self).__name__} {self.url}>" if self.url else f"<{type(self).__name__}>"

    @classmethod
    def new(cls, width, height):
        """An empty document of a size: its root is an svg element."""
        document = cls(complete=True, tolerant=True, keep_source=False, style_sheet="")
        root = document.create("svg")
        document._set_root(root)
        root.width, root.height = width, height
        return document

    def create(self, kind, **attributes):
        """A new element of a kind ("rect", "g" …), in no tree yet, with attributes by their Python names:
        `document.root.append(document.create("circle", r=5, fill="red"))`."""
        if kind not in _elements.CLASS_IDS:
            raise ValueError(f"There is no kind of element {kind}.")
        element = self._create(_elements.CLASS_IDS[kind])
        for name, value in attributes.items():
            if not hasattr(type(element), name):
                raise AttributeError(f"An element of kind {kind} has no attribute {name}.")
            setattr(element, name, value)
        return element

    @contextlib.contextmanager
    def transaction(self):
        """Groups edits: `with document.transaction(): …`. They become one step for `undo`; an exception takes them back."""
        self._change("begin")
        try:
            yield self
        except BaseException:
            self._change("rollback")
            raise
        self._change("commit")

    def undo(self):
        """Takes back the last step; the history begins with the first transaction. False when there is none."""
        return self._change("undo")

    def redo(self):
        """Makes the step again that was last taken back. False when there is none."""
        return self._change("redo")

    def save(self, path=None, *, rewrite=False, indentation=2, precision=-1):
        """Saves the document to a path or an open binary file: what was not edited stays byte for byte, unless `rewrite` has it written whole, with
        `indentation` blanks a level and `precision` digits behind the decimal point (-1 for all that are needed).

        Without a path, it is saved where it was loaded from. The old file stays until the new one is complete. Raises
        ValueError, and changes no file, for what could not be loaded again.
        """
        options = _core.SaveOptions(rewrite, indentation, precision)
        if hasattr(path, "write"):
            path.write(self._save_bytes(options))
            return
        if path is None:
            if not self.url.startswith("file:"):
                raise ValueError("The document was not loaded from a file: save needs a path.")
            path = urllib.parse.unquote(urllib.parse.urlsplit(self.url).path)
        self._save(os.path.abspath(os.fspath(path)), options)

    def to_bytes(self, *, rewrite=False, indentation=2, precision=-1):
        """What `save` would write."""
        return self._save_bytes(_core.SaveOptions(rewrite, indentation, precision))

    def repair(self):
        """Rewrites the values that a plain and strict reader refuses, each to what a browser reads there; everything else
        stays. For a document that was opened with `keep_source`, before any edit: it is loaded again afterwards, so
        elements have to be asked for anew. The result is a list of Repair. Raises RuntimeError otherwise."""
        return [Repair(*values) for values in self._repair()]

    @property
    def report(self):
        """What became of the load, with a place for each finding."""
        values = self._report()
        findings = tuple(Finding(**finding) for finding in values["findings"])
        return Report(values["outcome"], findings, values["finding_count"])

    def render(self, *, width=None, height=None, scale=None, background=None, current_color=None, deadline=None,
               memory_limit=None):
        """The picture as a NumPy array of uint8: rows × columns × (red, green, blue, alpha), alpha not multiplied in.

        `width` and `height` are in pixels: one alone keeps the proportions, none gives the document's own size. `scale` is
        a factor on both (1). `background` and `current_color` are red, green and blue, each 0 to 1; without a background
        the picture is transparent. `deadline` is in seconds (10), `memory_limit` in bytes (512 MiB): what takes longer
        or needs more is left out, with a PictureWarning. Raises ValueError for sizes that make no picture.
        """
        pixels, said = _core._render(self, **_given(width, height, scale, background, current_color, deadline, memory_limit))
        _warn(said, 3)
        return pixels

    def to_png(self, path=None, *, width=None, height=None, scale=None, background=None, current_color=None, deadline=None,
               memory_limit=None):
        """Writes the picture as a PNG to `path`, a name or an open binary file, or returns it as bytes without one. Options
        as for `render`."""
        return self._write(path, False, _given(width, height, scale, background, current_color, deadline, memory_limit))

    def to_pdf(self, path=None, *, width=None, height=None, scale=None, background=None, current_color=None, deadline=None,
               memory_limit=None):
        """Writes a PDF of one page to `path`, a name or an open binary file, or returns it as bytes without one. Options as
        for `render`; sizes are in units of 1/96 inch."""
        return self._write(path, True, _given(width, height, scale, background, current_color, deadline, memory_limit))

    def _write(self, path, is_page, options):
        if path is not None and not hasattr(path, "write"):
            _warn(_core._write_picture(self, os.path.abspath(os.fspath(path)), is_page, **options), 4)
            return None
        content, said = picture_of(self, is_page, **options)
        _warn(said, 4)
        if path is None:
            return content
        path.write(content)
        return None

    def _repr_svg_(self):
        """The document in a notebook."""
        return self.to_bytes(rewrite=True).decode()

    def _repr_png_(self):
        """The picture in a notebook."""
        return self.to_png()


def _given(*values):
    """The options of pictures that were given."""
    names = ("width", "height", "scale", "background", "current_color", "deadline", "memory_limit")
    return {name: value for name, value in zip(names, values, strict=True) if value is not None}


def picture_of(document, is_page, **options):
    """The bytes of a picture's file, and what is said about it. The renderer writes files: this one is in memory."""
    file = os.memfd_create("picture")
    try:
        said = _core._write_picture(document, f"/proc/self/fd/{file}", is_page, **options)
        with open(file, "rb", closefd=False) as content:
            return content.read(), said
    finally:
        os.close(file)


def _warn(said, level):
    for text in said:
        warnings.warn(text, PictureWarning, stacklevel=level)
