# SPDX-License-Identifier: MIT
"""What a batch does with each input, and the files that a shard of the results has."""

import hashlib
import io
import json
import os
import tarfile
import zipfile

import numpy

from . import _documents

# The time that stands in archives, so that the same results are the same bytes.
_TIME = (1980, 1, 1, 0, 0, 0)


class Shard:
    """Gathers the results of one chunk and writes them as a folder that appears whole or not at all."""

    def __init__(self, folder):
        self._folder = folder
        self._rows = []
        self._columns = {}
        self._files = []

    def add_row(self, row):
        self._rows.append(row)

    def add_column(self, name, values):
        """More values of a column; all of one name are put together."""
        self._columns.setdefault(name, []).append(numpy.asarray(values))

    def add_file(self, name, content):
        self._files.append((name, content))

    def write(self):
        part = self._folder + ".part"
        if os.path.isdir(part):
            for name in os.listdir(part):
                os.remove(os.path.join(part, name))
        os.makedirs(part, exist_ok=True)
        with open(os.path.join(part, "rows.jsonl"), "w", encoding="utf-8") as lines:
            for row in self._rows:
                lines.write(json.dumps(row, ensure_ascii=True, sort_keys=True) + "\n")
        if self._columns:
            self._write_columns(os.path.join(part, "columns.npz"))
        if self._files:
            self._write_files(os.path.join(part, "files.tar"))
        for name in os.listdir(part):
            with open(os.path.join(part, name), "rb") as file:
                os.fsync(file.fileno())
        os.rename(part, self._folder)

    def _write_columns(self, path):
        with zipfile.ZipFile(path, "w") as archive:
            for name in sorted(self._columns):
                content = io.BytesIO()
                numpy.lib.format.write_array(content, numpy.concatenate(self._columns[name]), allow_pickle=False)
                archive.writestr(zipfile.ZipInfo(name + ".npy", _TIME), content.getvalue())

    def _write_files(self, path):
        with tarfile.open(path, "w", format=tarfile.PAX_FORMAT) as archive:
            for name, content in self._files:
                member = tarfile.TarInfo(name)
                member.size = len(content)
                archive.addfile(member, io.BytesIO(content))


def begin_row(number, name, content):
    return {"number": number, "input": name, "bytes": len(content), "sha256": hashlib.sha256(content).hexdigest()}


def load(row, content, base, options):
    """Loads an input and says in its row what became of it. The document, or None, and the report as a dictionary."""
    document = _documents.Document(complete=options["complete"], tolerant=options["tolerant"], keep_source=False,
                                   style_sheet=options["style_sheet"])
    document._load_bytes(content, base)
    found = document._report()
    is_loaded = found["outcome"] in ("loaded", "loaded with findings")
    row["outcome"] = "done" if is_loaded else "refused"
    row["finding_count"] = found["finding_count"]
    if is_loaded:
        return document, found
    nothing = {"line": 0, "column": 0, "message": found["outcome"]}
    reason = next((finding for finding in found["findings"] if finding["level"] == "critical"), nothing)
    row.update(line=reason["line"], column=reason["column"], message=reason["message"])
    return None, found


def report(_document, found, row, _shard, _options):
    """Only rows: what became of each input, with all findings."""
    row["findings"] = [[finding[key] for key in ("line", "column", "tag", "id", "attribute", "message")]
                       for finding in found["findings"]]


def check(_document, _found, _row, _shard, _options):
    """Only rows: what became of each input."""


def columns(document, _found, row, shard, _options):
    """The paths as they stand in the tree, in columns: per path the number of its input (`path_input`), its fill
    (`path_fill`, red, green, blue, alpha; not a number where it has none of its own), its transform to the document's
    coordinates (`path_transform`), and how many commands and points it has (`path_commands`, `path_points`); then all
    `codes` and `points` one after the other."""
    for element in document:
        if element.kind != "path":
            continue
        codes, points = element._path()
        fill = element.fill
        has_color = fill is not None and fill.kind == "color"
        shard.add_column("path_input", numpy.array([row["number"]], dtype=numpy.int64))
        shard.add_column("path_fill", numpy.array([[*fill.color, fill.alpha] if has_color else [numpy.nan] * 4]))
        shard.add_column("path_transform", numpy.array([element.world_transform]))
        shard.add_column("path_commands", numpy.array([len(codes)], dtype=numpy.int32))
        shard.add_column("path_points", numpy.array([len(points)], dtype=numpy.int32))
        shard.add_column("codes", codes)
        shard.add_column("points", points)


def thumbnails(document, _found, row, shard, options):
    """A PNG each, in a tar, named by the input's number; what was left out of it stands in the row."""
    content, said = _documents.picture_of(document, False, width=options["size"], height=options["size"],
                                          deadline=options["deadline"])
    row["left_out"] = said
    shard.add_file(f"{row['number']:010}.png", content)


OPERATIONS = {"report": report, "check": check, "columns": columns, "thumbnails": thumbnails}
