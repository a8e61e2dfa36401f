# SPDX-License-Identifier: MIT
"""What a batch works through: files in folders, lists, globs and archives, as one numbered list that is the same every
time."""

import glob
import os
import tarfile
import zipfile

SUFFIXES = (".svg", ".svgz")
ARCHIVES = (".tar", ".zip", ".tar.gz", ".tgz", ".tar.xz")

# An input is (name, path, member): the member of an archive (in a tar the place and size of its bytes, "OFFSET:SIZE",
# unless the tar is compressed), or "" for a file.


def require(sources):
    """Raises FileNotFoundError for a source that is none, before anything is read."""
    for source in map(str, sources):
        path = source.removeprefix("@")
        if not os.path.exists(path) and not (path == source and glob.glob(path, recursive=True)):
            raise FileNotFoundError(f"There is no {path}.")


def list_inputs(sources):
    """All inputs of the sources, in their order; within a folder and a glob by name, within an archive as they stand.

    A source is a folder, an SVG file, a glob, an archive, or "@FILE" for a list with one of these a line. Raises
    FileNotFoundError for what is none."""
    for source in sources:
        yield from _list_source(str(source))


def _list_source(source):
    if source.startswith("@"):
        with open(source[1:], encoding="utf-8", errors="surrogateescape") as lines:
            for line in lines:
                if line.strip():
                    yield from _list_source(line.rstrip("\n"))
    elif os.path.isdir(source):
        for folder, folders, names in os.walk(source):
            folders.sort()
            for name in sorted(names):
                path = os.path.join(folder, name)
                if name.endswith(SUFFIXES):
                    yield path, path, ""
                elif name.endswith(ARCHIVES):
                    yield from _list_archive(path)
    elif os.path.isfile(source):
        if source.endswith(ARCHIVES):
            yield from _list_archive(source)
        else:
            yield source, source, ""
    elif any(mark in source for mark in "*?["):
        found = sorted(glob.glob(source, recursive=True))
        if not found:
            raise FileNotFoundError(f"Nothing is called {source}.")
        for path in found:
            yield from _list_source(path)
    else:
        raise FileNotFoundError(f"There is no {source}.")


def _list_archive(path):
    if path.endswith(".zip"):
        with zipfile.ZipFile(path) as archive:
            for member in archive.namelist():
                if member.endswith(SUFFIXES):
                    yield f"{path}/{member}", path, member
        return
    is_plain = path.endswith(".tar")
    with tarfile.open(path, "r:" if is_plain else "r:*") as archive:
        for member in archive:
            if member.isfile() and member.name.endswith(SUFFIXES):
                place = f"{member.offset_data}:{member.size}" if is_plain else member.name
                yield f"{path}/{member.name}", path, place
            archive.members.clear()  # Otherwise a list of all members grows with the archive.


class Reader:
    """Reads inputs, one archive open at a time."""

    def __init__(self):
        self._path, self._archive = None, None

    def read(self, path, member):
        """The bytes of an input. Raises OSError, or what archives that are broken raise."""
        if not member:
            with open(path, "rb") as file:
                return file.read()
        if path != self._path:
            self.close()
            self._path, self._archive = path, self._open(path)
        if path.endswith(".zip"):
            return self._archive.read(member)
        if not path.endswith(".tar"):
            return self._archive.extractfile(member).read()
        offset, size = map(int, member.split(":"))
        self._archive.seek(offset)
        return self._archive.read(size)

    @staticmethod
    def _open(path):
        if path.endswith(".zip"):
            return zipfile.ZipFile(path)
        return open(path, "rb") if path.endswith(".tar") else tarfile.open(path)

    def close(self):
        if self._archive is not None:
            self._archive.close()
        self._path, self._archive = None, None
