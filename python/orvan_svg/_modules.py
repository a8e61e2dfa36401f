# SPDX-License-Identifier: MIT
"""Finds and opens the modules that the package works with; imported before anything else of it is used."""

import os
import pathlib
import sys

from . import _core


def _find_folder():
    """The folder of the modules: what ORVAN_SVG_MODULES names, or beside the package where it was built or installed."""
    named = os.environ.get("ORVAN_SVG_MODULES")
    if named:
        return pathlib.Path(named)
    here = pathlib.Path(__file__).resolve().parent
    libraries = here.parents[2]
    candidates = [here / "modules", here.parent.parent / "lib" / "orvan", libraries / "orvan",
                  libraries / sys.implementation._multiarch / "orvan"]
    for folder in candidates:
        if (folder / "net.orvan.svg.so").exists():
            return folder
    raise ImportError("The modules of orvan-svg are in none of " + ", ".join(map(str, candidates)) +
                      "; ORVAN_SVG_MODULES may name their folder.")


FOLDER = str(_find_folder())
_core.load_modules(FOLDER)
