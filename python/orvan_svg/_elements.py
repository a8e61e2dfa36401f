# SPDX-License-Identifier: MIT
"""The classes of elements: one for each kind, with the attributes that it has as properties."""

import keyword

from . import _core
from ._core import Element

#: Codes of path commands in `Path.codes`: they take 1, 1, 3 and 0 of the points.
MOVE, LINE, CUBIC, CLOSE = range(4)

_POSITION = ("x", "y")
_SIZE = ("width", "height")
_VIEW_BOX = ("viewBox", "preserveAspectRatio")
_GRADIENT = ("gradientUnits", "spreadMethod", "gradientTransform")
_PRIMITIVE = _POSITION + _SIZE + ("in", "in2", "result")
_TEXT = ("x", "y", "dx", "dy", "rotate", "textLength", "lengthAdjust")
_LIGHT = ("surfaceScale", "specularConstant", "specularExponent", "diffuseConstant", "kernelUnitLength")
_FUNCTION = ("type", "tableValues", "slope", "intercept", "amplitude", "exponent", "offset")

# Kind, name of the class, attributes that only some elements have.
_KINDS = {
    "svg": ("Svg", _POSITION + _SIZE + _VIEW_BOX + ("background-color",)),
    "g": ("Group", ()),
    "use": ("Use", _POSITION + _SIZE),
    "defs": ("Defs", ()),
    "symbol": ("Symbol", _POSITION + _SIZE + _VIEW_BOX),
    "linearGradient": ("LinearGradient", ("x1", "y1", "x2", "y2") + _GRADIENT),
    "radialGradient": ("RadialGradient", ("cx", "cy", "r", "fx", "fy", "fr") + _GRADIENT),
    "stop": ("Stop", ("offset", "stop-color", "stop-opacity")),
    "path": ("Path", ("pathLength",)),
    "rect": ("Rect", _POSITION + _SIZE + ("rx", "ry")),
    "circle": ("Circle", ("cx", "cy", "r", "rx", "ry")),
    "line": ("Line", ("x1", "y1", "x2", "y2")),
    "text": ("Text", _TEXT),
    "mask": ("Mask", _POSITION + _SIZE + ("maskUnits", "maskContentUnits", "mask-type")),
    "clipPath": ("ClipPath", ("clipPathUnits",)),
    "pattern": ("Pattern", _POSITION + _SIZE + _VIEW_BOX + ("patternUnits", "patternContentUnits", "patternTransform")),
    "marker": ("Marker", _VIEW_BOX + ("markerUnits", "markerWidth", "markerHeight", "refX", "refY", "orient")),
    "image": ("Image", _POSITION + _SIZE + ("preserveAspectRatio",)),
    "switch": ("Switch", ()),
    "a": ("Anchor", ("target",)),
    "tspan": ("TSpan", _TEXT),
    "textPath": ("TextPath", ("startOffset", "textLength", "lengthAdjust", "side", "path")),
    "filter": ("Filter", _POSITION + _SIZE + ("filterUnits", "primitiveUnits")),
    "feBlend": ("FeBlend", _PRIMITIVE + ("mode",)),
    "feColorMatrix": ("FeColorMatrix", _PRIMITIVE + ("type", "values")),
    "feComponentTransfer": ("FeComponentTransfer", _PRIMITIVE),
    "feComposite": ("FeComposite", _PRIMITIVE + ("operator", "k1", "k2", "k3", "k4")),
    "feConvolveMatrix": ("FeConvolveMatrix", _PRIMITIVE + ("order", "kernelMatrix", "divisor", "bias", "targetX",
                                                          "targetY", "edgeMode", "kernelUnitLength", "preserveAlpha")),
    "feDiffuseLighting": ("FeDiffuseLighting", _PRIMITIVE + _LIGHT),
    "feDisplacementMap": ("FeDisplacementMap", _PRIMITIVE + ("scale", "xChannelSelector", "yChannelSelector")),
    "feDropShadow": ("FeDropShadow", _PRIMITIVE + ("dx", "dy", "stdDeviation")),
    "feFlood": ("FeFlood", _PRIMITIVE),
    "feGaussianBlur": ("FeGaussianBlur", _PRIMITIVE + ("stdDeviation", "edgeMode")),
    "feImage": ("FeImage", _PRIMITIVE + ("preserveAspectRatio",)),
    "feMerge": ("FeMerge", _PRIMITIVE),
    "feMorphology": ("FeMorphology", _PRIMITIVE + ("operator", "radius")),
    "feOffset": ("FeOffset", _PRIMITIVE + ("dx", "dy")),
    "feSpecularLighting": ("FeSpecularLighting", _PRIMITIVE + _LIGHT),
    "feTile": ("FeTile", _PRIMITIVE),
    "feTurbulence": ("FeTurbulence", _PRIMITIVE + ("baseFrequency", "numOctaves", "seed", "stitchTiles", "type")),
    "feDistantLight": ("FeDistantLight", ("azimuth", "elevation")),
    "fePointLight": ("FePointLight", ("x", "y", "z")),
    "feSpotLight": ("FeSpotLight", ("x", "y", "z", "pointsAtX", "pointsAtY", "pointsAtZ", "specularExponent",
                                    "limitingConeAngle")),
    "feFuncR": ("FeFuncR", _FUNCTION),
    "feFuncG": ("FeFuncG", _FUNCTION),
    "feFuncB": ("FeFuncB", _FUNCTION),
    "feFuncA": ("FeFuncA", _FUNCTION),
    "feMergeNode": ("FeMergeNode", ("in",)),
    "title": ("Title", ()),
    "desc": ("Description", ()),
    "style": ("Style", ()),
    "metadata": ("Metadata", ()),
    "foreignObject": ("ForeignObject", _POSITION + _SIZE),
    "#text": ("TextRun", ()),
}

# Kept by the element itself, not under a number.
_NO_VALUES = {"id", "class", "href", "transform", "d", "points", "style"}


def _python_name(name):
    words = name.replace("-", "_").replace(":", "_")
    return words + "_" if keyword.iskeyword(words) else words


def to_text(value):
    """A value as SVG writes it. Three numbers in a tuple are a colour, other sequences lists."""
    if isinstance(value, str):
        return value
    if isinstance(value, (_core.Length, bool)):
        return str(value)
    if isinstance(value, _core.Paint):
        if value.kind == "color":
            return _color_text(value.color, value.alpha)
        return f"url(#{value.reference})" if value.kind == "url" else value.kind
    if isinstance(value, tuple) and len(value) == 3:
        return _color_text(value, 1)
    if hasattr(value, "__iter__"):
        return " ".join(map(to_text, value))
    return repr(float(value)).removesuffix(".0")


def _color_text(color, alpha):
    channels = " ".join(f"{100 * float(channel)!r}%" for channel in color)
    return f"rgb({channels} / {alpha!r})" if alpha != 1 else f"rgb({channels})"


def _property(name):
    def set_value(self, value):
        if value is None:
            self.remove_attribute(name)
        else:
            self.set_text(name, to_text(value))

    def remove(self):
        self.remove_attribute(name)

    return property(lambda self: self.get(name), set_value, remove,
                    f'The attribute "{name}", typed, keywords as text; None when the element does not say it. Takes text, '
                    f"numbers, lengths, paints, colours as (red, green, blue) and lists; None removes it.")


def _make_classes():
    own = {name for _, names in _KINDS.values() for name in names}
    for name in _core.attribute_names:
        if name not in own and name not in _NO_VALUES and not hasattr(Element, _python_name(name)):
            setattr(Element, _python_name(name), _property(name))
    made = {}
    for kind, (name, attributes) in _KINDS.items():
        members = {_python_name(attribute): _property(attribute) for attribute in attributes}
        made[name] = type(name, (Element,), {"__slots__": (), "__module__": "orvan_svg", "__doc__": f"An element of kind \"{kind}\".",
                                            **members})
        _core.element_classes[kind] = made[name]
    return made


classes = _make_classes()


def add_arrays(has_path):
    """Gives a class with `_path` the two arrays that it returns."""
    has_path.codes = property(
        lambda self: self._path()[0],
        doc="The commands, one byte each: MOVE, LINE, CUBIC or CLOSE. A NumPy array of uint8, a copy.")
    has_path.points = property(
        lambda self: self._path()[1],
        doc="The points of all commands one after the other, absolute: one of a move or line, three of a cubic, none of "
            "a close. A NumPy array of float64 with a row for each point, a copy.")


add_arrays(classes["Path"])
classes["Path"].d = property(
    lambda self: self._get_path_data(), lambda self, data: self._set_path_data(data),
    doc="The commands as SVG path data, absolute. Takes any path data; ValueError, with the place, for what is none.")



def _set_arrays(self, codes, points):
    """Gives the path other commands: `codes` as in `codes`, `points` as in `points`, of any type that NumPy makes these of.
    ValueError for codes that there are not, and for points of another number than the codes take."""
    self._set_path(codes, points)


_set_arrays.__name__ = "set_arrays"
classes["Path"].set_arrays = _set_arrays

#: The class ids of the kinds that can be created.
CLASS_IDS = {kind: "net.orvan.image.class.svg" + {"g": "group", "a": "anchor", "#text": "textrun"}.get(kind, kind.lower())
             + "element" for kind in _KINDS}
