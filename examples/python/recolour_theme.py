# SPDX-License-Identifier: MIT
# %% [markdown]
# Gives a folder of icons other colours: recolour_theme.py ICONS OUT "#ffb53d=#4da3ff" "#c26a00=#0b4f9e" …
# Whatever says a colour, in whatever way of writing it, is found; the rest of each file stays byte for byte.
# %%
import pathlib
import sys

import orvan_svg

icons, out = map(pathlib.Path, sys.argv[1:3])
NAMES = ("fill", "stroke", "stop_color", "flood_color", "lighting_color", "color")


# %% Colours are three numbers from 0 to 1; to compare them, as bytes.
def to_bytes(color):
    return tuple(round(255 * channel) for channel in color)


def from_text(text):
    return to_bytes(int(text[place:place + 2], 16) / 255 for place in (1, 3, 5))


exchange = {from_text(old): new for old, _, new in (pair.partition("=") for pair in sys.argv[3:])}

# %% An edit is made where a value is one of those that were named, and nowhere else.
changed = 0
for file in sorted(icons.rglob("*.svg")):
    try:
        document = orvan_svg.Document.open(file)
    except orvan_svg.RefusedError as error:
        print(error, file=sys.stderr)
        continue
    edits = 0
    for element in document:
        for name in NAMES:
            value = getattr(element, name, None)
            color = getattr(value, "color", value) if getattr(value, "kind", "color") == "color" else None
            if isinstance(color, tuple) and to_bytes(color) in exchange:
                setattr(element, name, exchange[to_bytes(color)])
                edits += 1
    target = out / file.relative_to(icons)
    target.parent.mkdir(parents=True, exist_ok=True)
    document.save(target)
    changed += bool(edits)
    print(f"{target}: {edits} colours")
print(f"{changed} files changed")
