# SPDX-License-Identifier: MIT
"""How Sphinx makes the site; scripts/make-site calls it."""

import os
import sys

sys.path.insert(0, os.environ["ORVAN_PYTHON"])

project = "orvan-svg"
author = copyright = "the orvan-svg authors"
version = release = os.environ["ORVAN_VERSION"]
extensions = ["myst_parser", "sphinx.ext.autodoc"]
myst_heading_anchors = 4
nitpick_ignore_regex = [("py:.*", ".*")]
html_title = f"orvan-svg {version}"
html_theme = "alabaster"
html_theme_options = {"page_width": "1100px", "sidebar_width": "260px", "fixed_sidebar": True, "show_powered_by": False}
html_sidebars = {"**": ["about.html", "searchbox.html", "navigation.html"]}
html_extra_path = [os.environ["ORVAN_REFERENCES"]]
html_copy_source = False
autodoc_member_order = "bysource"
autodoc_typehints = "description"


def mark_code(app, what, name, thing, options, lines):
    """What is indented in a docstring is code, which reStructuredText wants to be told."""
    marked = []
    for line in lines:
        if line.startswith("  ") and marked[-1:] == [""] and not (marked[-2:-1] or [""])[0].startswith(("  ", "::")):
            marked += ["::", ""]
        marked.append(line)
    lines[:] = marked


def setup(app):
    app.connect("autodoc-process-docstring", mark_code)
