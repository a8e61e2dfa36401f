# SPDX-License-Identifier: MIT
# Types of what the package offers; tests/python/test_stubs.py holds them against it. Of arrays the comments tell the shape.
import asyncio
import contextlib
import dataclasses
import os
from collections.abc import Callable, Iterator, Sequence
from typing import Any, BinaryIO, Generic, Literal, NamedTuple, TypeVar, overload

import numpy
from numpy.typing import ArrayLike, NDArray

_Get = TypeVar("_Get")
_Set = TypeVar("_Set")
_Path = str | os.PathLike[str]
_Color = tuple[float, float, float]
_Matrix = tuple[float, float, float, float, float, float]
_BoxKind = Literal["fill", "stroke", "visual"]
_Space = Literal["element", "parent", "document", "view"]
_Rule = Literal["nonzero", "evenodd"]

CLOSE: int
CUBIC: int
LINE: int
MOVE: int
__version__: str

class Length:
    def __init__(self, value: float, unit: str = "") -> None: ...
    @property
    def value(self) -> float: ...
    @property
    def unit(self) -> str: ...
    def __float__(self) -> float: ...

class Paint:
    @property
    def kind(self) -> Literal["none", "color", "url", "currentColor", "context-fill", "context-stroke"]: ...
    @property
    def color(self) -> _Color: ...
    @property
    def alpha(self) -> float: ...
    @property
    def reference(self) -> str: ...

class Box(NamedTuple):
    x: float
    y: float
    width: float
    height: float

class Place(NamedTuple):
    x: float
    y: float
    dx: float
    dy: float
    length: float
    distance: float

class Hit(NamedTuple):
    element: Element
    part: Literal["fill", "stroke", "text", "box"]
    uses: tuple[Element, ...]

class Repair(NamedTuple):
    line: int
    column: int
    tag: str
    id: str
    attribute: str
    before: str
    after: str

@dataclasses.dataclass(frozen=True)
class Finding:
    level: Literal["warning", "critical"]
    line: int
    column: int
    tag: str
    id: str
    attribute: str
    message: str

@dataclasses.dataclass(frozen=True)
class Report:
    outcome: Literal["empty", "loaded", "loaded with findings", "refused", "no svg element"]
    findings: tuple[Finding, ...]
    finding_count: int

class RefusedError(ValueError):
    report: Report
    line: int
    column: int
    def __init__(self, name: str, report: Report) -> None: ...

class PictureWarning(UserWarning): ...

class Document:
    def __init__(self, complete: bool, tolerant: bool, keep_source: bool, style_sheet: str, is_icon: bool = False) -> None: ...
    @classmethod
    def open(cls, source: _Path | bytes | bytearray | BinaryIO, *, complete: bool = True, tolerant: bool = True,
             style_sheet: str | None = None, base: _Path | None = None, keep_source: bool = True) -> Document: ...
    @classmethod
    def new(cls, width: float | str | Length, height: float | str | Length) -> Document: ...
    def create(self, kind: str, **attributes: Any) -> Element: ...
    def transaction(self) -> contextlib.AbstractContextManager[Document]: ...
    def undo(self) -> bool: ...
    def redo(self) -> bool: ...
    def save(self, path: _Path | BinaryIO | None = None, *, rewrite: bool = False, indentation: int = 2,
             precision: int = -1) -> None: ...
    def to_bytes(self, *, rewrite: bool = False, indentation: int = 2, precision: int = -1) -> bytes: ...
    def repair(self) -> list[Repair]: ...
    def rename(self, element: Element, id: str) -> None: ...
    def ids(self, prefix: str = "") -> list[str]: ...
    def select(self, selectors: str) -> list[Element]: ...
    # uint8, rows x columns x (red, green, blue, alpha)
    def render(self, *, width: float | None = None, height: float | None = None,
               scale: float | None = None, background: _Color | None = None, current_color: _Color | None = None,
               deadline: float | None = None, memory_limit: float | None = None) -> NDArray[numpy.uint8]: ...
    def to_png(self, path: _Path | BinaryIO | None = None, *, width: float | None = None, height: float | None = None,
               scale: float | None = None, background: _Color | None = None, current_color: _Color | None = None,
               deadline: float | None = None, memory_limit: float | None = None) -> bytes | None: ...
    def to_pdf(self, path: _Path | BinaryIO | None = None, *, width: float | None = None, height: float | None = None,
               scale: float | None = None, background: _Color | None = None, current_color: _Color | None = None,
               deadline: float | None = None, memory_limit: float | None = None) -> bytes | None: ...
    # float64, a row (x, y, width, height) for each element
    def boxes(self, kind: _BoxKind = "fill", space: _Space = "view") -> NDArray[numpy.float64]: ...
    def hit(self, x: float, y: float, *, tolerance: float = 0.0, ignore_pointer_events: bool = False) -> Hit | None: ...
    def hit_all(self, x: float, y: float, *, tolerance: float = 0.0, ignore_pointer_events: bool = False) -> list[Hit]: ...
    def hit_rect(self, x: float, y: float, width: float, height: float, *, inside: bool = False) -> list[Hit]: ...
    def normalize(self, *, strokes: Literal["kept", "outlined"] = "kept", flatten: float = 0.0,
                  stroke_tolerance: float = 0.01, grid: float = 0.0, precision: float = 0.0,
                  clips: Literal["ignored", "applied", "kept"] = "ignored") -> NormalizedPaths: ...
    def normalized(self, *, strokes: Literal["kept", "outlined"] = "kept", flatten: float = 0.0,
                   stroke_tolerance: float = 0.01, grid: float = 0.0, precision: float = 0.0,
                   clips: Literal["ignored", "applied", "kept"] = "applied") -> Document: ...
    @property
    def report(self) -> Report: ...
    @property
    def root(self) -> Element: ...
    @property
    def url(self) -> str: ...
    @property
    def view_size(self) -> tuple[float, float]: ...
    def __getitem__(self, id: str) -> Element: ...
    def __contains__(self, id: str) -> bool: ...
    def __iter__(self) -> Iterator[Element]: ...

class Icon(Document):
    on_reload: Callable[[Icon, bool], object] | None
    def __init__(self, **options: Any) -> None: ...
    @property
    def state(self) -> int | None: ...
    @state.setter
    def state(self, number: int) -> None: ...
    @property
    def live_reload(self) -> bool: ...
    @live_reload.setter
    def live_reload(self, is_enabled: bool) -> None: ...
    def show(self, layer: str, shown: bool = True) -> None: ...
    def toggle(self, layer: str) -> None: ...

def dispatch_changes() -> int: ...
def follow_changes(loop: asyncio.AbstractEventLoop | None = None) -> Callable[[], None]: ...

class Outline:
    def __init__(self, codes: ArrayLike, points: ArrayLike) -> None: ...
    # uint8, one for each command
    @property
    def codes(self) -> NDArray[numpy.uint8]: ...
    # float64, a row (x, y) for each point
    @property
    def points(self) -> NDArray[numpy.float64]: ...
    @property
    def length(self) -> float: ...
    def area(self, rule: _Rule = "nonzero") -> float: ...
    def bounds(self, transform: Sequence[float] = (1, 0, 0, 1, 0, 0)) -> Box | None: ...
    def combined(self, other: Outline, operation: Literal["unite", "intersect", "subtract", "exclude"], *,
                 rule: _Rule = "nonzero", other_rule: _Rule = "nonzero", tolerance: float = 0.0) -> Outline: ...
    def point_at(self, length: float) -> Place: ...
    def nearest(self, x: float, y: float) -> Place: ...
    def contains(self, x: float, y: float, rule: _Rule = "nonzero") -> bool: ...
    def transformed(self, transform: Sequence[float]) -> Outline: ...
    def flattened(self, tolerance: float) -> Outline: ...
    def stroked(self, width: float, *, cap: Literal["butt", "round", "square"] = "butt",
                join: Literal["miter", "round", "bevel"] = "miter", miter_limit: float = 4.0,
                tolerance: float = 0.01) -> Outline: ...

class NormalizedPaths:
    # n paths; the arrays share the paths' memory
    @property
    def commands(self) -> NDArray[numpy.uint8]: ...
    @property
    def points(self) -> NDArray[numpy.float64]: ...  # rows (x, y)
    @property
    def command_offsets(self) -> NDArray[numpy.int64]: ...  # n + 1
    @property
    def point_offsets(self) -> NDArray[numpy.int64]: ...  # n + 1
    @property
    def fill_kinds(self) -> NDArray[numpy.uint8]: ...  # n
    @property
    def stroke_kinds(self) -> NDArray[numpy.uint8]: ...  # n
    @property
    def fills(self) -> NDArray[numpy.float64]: ...  # n x 3
    @property
    def strokes(self) -> NDArray[numpy.float64]: ...  # n x 3
    @property
    def fill_opacities(self) -> NDArray[numpy.float64]: ...  # n
    @property
    def stroke_opacities(self) -> NDArray[numpy.float64]: ...  # n
    @property
    def stroke_widths(self) -> NDArray[numpy.float64]: ...  # n
    @property
    def fill_rules(self) -> NDArray[numpy.int32]: ...  # n
    @property
    def stroke_caps(self) -> NDArray[numpy.int32]: ...  # n
    @property
    def stroke_joins(self) -> NDArray[numpy.int32]: ...  # n
    @property
    def stroke_miter_limits(self) -> NDArray[numpy.float64]: ...  # n
    @property
    def elements(self) -> list[Element]: ...
    @property
    def size(self) -> tuple[float, float]: ...
    @property
    def unclipped_count(self) -> int: ...
    def columns(self) -> dict[str, NDArray[Any]]: ...
    def __len__(self) -> int: ...

# An attribute: None when the element does not say it, and removed by None. Any takes text, as SVG writes it.
class _Attribute(Generic[_Get, _Set]):
    def __get__(self, element: Any, owner: Any = None) -> _Get | None: ...
    def __set__(self, element: Any, value: _Set | str | None) -> None: ...
    def __delete__(self, element: Any) -> None: ...

_TextAttribute = _Attribute[str, str]
_NumberAttribute = _Attribute[float, float]
_NumbersAttribute = _Attribute[Sequence[float], Sequence[float]]
_LengthAttribute = _Attribute[Length, float | Length]
_LengthsAttribute = _Attribute[list[Length], Sequence[float | Length]]
_PositionAttribute = _Attribute[Length | list[Length], float | Length | Sequence[float | Length]]
_PaintAttribute = _Attribute[Paint, _Color | Paint]

class Element:
    def __init__(self, element: Element) -> None: ...
    @property
    def kind(self) -> str: ...
    id: str
    @property
    def transform(self) -> _Matrix: ...
    @transform.setter
    def transform(self, value: Sequence[float] | str) -> None: ...
    text: str
    @property
    def world_transform(self) -> _Matrix: ...
    @property
    def attributes(self) -> dict[str, Any]: ...
    @property
    def href(self) -> str: ...
    @property
    def parent(self) -> Element | None: ...
    @property
    def children(self) -> list[Element]: ...
    @property
    def tag(self) -> str: ...
    @property
    def index(self) -> int: ...
    def get(self, name: str) -> Any: ...
    def get_text(self, name: str) -> str | None: ...
    def set_text(self, name: str, text: str) -> None: ...
    def remove_attribute(self, name: str) -> None: ...
    def remove(self) -> None: ...
    def insert_before(self, child: Element, next: Element | None) -> None: ...
    def append(self, child: Element) -> None: ...
    def replace_with(self, replacement: Element) -> None: ...
    def clone(self) -> Element: ...
    def bbox(self, kind: _BoxKind = "fill", space: _Space = "view") -> Box | None: ...
    def transform_to(self, space: _Space = "view") -> _Matrix: ...
    def outline(self, space: _Space = "element") -> Outline: ...
    def __iter__(self) -> Iterator[Element]: ...
    def __len__(self) -> int: ...
    @overload
    def __getitem__(self, place: int) -> Element: ...
    @overload
    def __getitem__(self, place: slice) -> list[Element]: ...
    alignment_baseline: _TextAttribute
    baseline_shift: _TextAttribute
    clip_path: _TextAttribute
    clip_rule: _TextAttribute
    color: _PaintAttribute
    color_interpolation: _TextAttribute
    color_interpolation_filters: _TextAttribute
    direction: _TextAttribute
    display: _TextAttribute
    dominant_baseline: _TextAttribute
    fill: _PaintAttribute
    fill_opacity: _NumberAttribute
    fill_rule: _TextAttribute
    filter: _TextAttribute
    flood_color: _PaintAttribute
    flood_opacity: _NumberAttribute
    font_family: _TextAttribute
    font_kerning: _TextAttribute
    font_size: _LengthAttribute
    font_size_adjust: _NumberAttribute
    font_stretch: _TextAttribute
    font_style: _TextAttribute
    font_variant: _TextAttribute
    font_weight: _TextAttribute
    image_rendering: _TextAttribute
    isolation: _TextAttribute
    letter_spacing: _LengthAttribute
    lighting_color: _PaintAttribute
    marker_end: _TextAttribute
    marker_mid: _TextAttribute
    marker_start: _TextAttribute
    mask: _TextAttribute
    mask_composite: _TextAttribute
    mask_mode: _TextAttribute
    mix_blend_mode: _TextAttribute
    opacity: _NumberAttribute
    overflow: _TextAttribute
    paint_order: _TextAttribute
    pointer_events: _TextAttribute
    requiredExtensions: _TextAttribute
    requiredFeatures: _TextAttribute
    shape_rendering: _TextAttribute
    stroke: _PaintAttribute
    stroke_dasharray: _LengthsAttribute
    stroke_dashoffset: _LengthAttribute
    stroke_linecap: _TextAttribute
    stroke_linejoin: _TextAttribute
    stroke_miterlimit: _NumberAttribute
    stroke_opacity: _NumberAttribute
    stroke_width: _LengthAttribute
    systemLanguage: _TextAttribute
    text_anchor: _TextAttribute
    text_decoration: _TextAttribute
    text_decoration_style: _TextAttribute
    text_decoration_thickness: _LengthAttribute
    text_orientation: _TextAttribute
    text_rendering: _TextAttribute
    text_transform: _TextAttribute
    text_underline_offset: _LengthAttribute
    transform_box: _TextAttribute
    transform_origin: _NumbersAttribute
    unicode_bidi: _TextAttribute
    vector_effect: _TextAttribute
    visibility: _TextAttribute
    white_space: _TextAttribute
    word_spacing: _LengthAttribute
    writing_mode: _TextAttribute
    xml_lang: _TextAttribute

# What elements of several kinds have in common. Type checkers know these; the package makes no classes of them.
class _Placed(Element):
    x: _LengthAttribute
    y: _LengthAttribute
    width: _LengthAttribute
    height: _LengthAttribute
class _Fitted(Element):
    viewBox: _NumbersAttribute
    preserveAspectRatio: _TextAttribute
class _Shape(Element):
    @property
    def length(self) -> float: ...
    def point_at(self, length: float) -> Place: ...
class _Gradient(Element):
    gradientUnits: _TextAttribute
    spreadMethod: _TextAttribute
    gradientTransform: _NumbersAttribute
class _PlacedText(Element):
    x: _PositionAttribute
    y: _PositionAttribute
    dx: _LengthsAttribute
    dy: _LengthsAttribute
    rotate: _NumbersAttribute
    textLength: _LengthAttribute
    lengthAdjust: _TextAttribute
class _Primitive(_Placed):
    in_: _TextAttribute
    in2: _TextAttribute
    result: _TextAttribute
class _Lighting(_Primitive):
    surfaceScale: _NumberAttribute
    specularConstant: _NumberAttribute
    specularExponent: _NumberAttribute
    diffuseConstant: _NumberAttribute
    kernelUnitLength: _NumbersAttribute
class _TransferFunction(Element):
    type: _TextAttribute
    tableValues: _NumbersAttribute
    slope: _NumberAttribute
    intercept: _NumberAttribute
    amplitude: _NumberAttribute
    exponent: _NumberAttribute
    offset: _NumberAttribute

class Anchor(Element):
    target: _TextAttribute
class Circle(_Shape):
    cx: _LengthAttribute
    cy: _LengthAttribute
    r: _LengthAttribute
    rx: _LengthAttribute
    ry: _LengthAttribute
class ClipPath(Element):
    clipPathUnits: _TextAttribute
class Defs(Element): ...
class Description(Element): ...
class FeBlend(_Primitive):
    mode: _TextAttribute
class FeColorMatrix(_Primitive):
    type: _TextAttribute
    values: _NumbersAttribute
class FeComponentTransfer(_Primitive): ...
class FeComposite(_Primitive):
    operator: _TextAttribute
    k1: _NumberAttribute
    k2: _NumberAttribute
    k3: _NumberAttribute
    k4: _NumberAttribute
class FeConvolveMatrix(_Primitive):
    order: _NumbersAttribute
    kernelMatrix: _NumbersAttribute
    divisor: _NumberAttribute
    bias: _NumberAttribute
    targetX: _NumberAttribute
    targetY: _NumberAttribute
    edgeMode: _TextAttribute
    kernelUnitLength: _NumbersAttribute
    preserveAlpha: _TextAttribute
class FeDiffuseLighting(_Lighting): ...
class FeDisplacementMap(_Primitive):
    scale: _NumberAttribute
    xChannelSelector: _TextAttribute
    yChannelSelector: _TextAttribute
class FeDistantLight(Element):
    azimuth: _NumberAttribute
    elevation: _NumberAttribute
class FeDropShadow(_Primitive):
    dx: _NumberAttribute
    dy: _NumberAttribute
    stdDeviation: _NumbersAttribute
class FeFlood(_Primitive): ...
class FeFuncA(_TransferFunction): ...
class FeFuncB(_TransferFunction): ...
class FeFuncG(_TransferFunction): ...
class FeFuncR(_TransferFunction): ...
class FeGaussianBlur(_Primitive):
    stdDeviation: _NumbersAttribute
    edgeMode: _TextAttribute
class FeImage(_Primitive):
    preserveAspectRatio: _TextAttribute
class FeMerge(_Primitive): ...
class FeMergeNode(Element):
    in_: _TextAttribute
class FeMorphology(_Primitive):
    operator: _TextAttribute
    radius: _NumbersAttribute
class FeOffset(_Primitive):
    dx: _NumberAttribute
    dy: _NumberAttribute
class FePointLight(Element):
    x: _LengthAttribute
    y: _LengthAttribute
    z: _NumberAttribute
class FeSpecularLighting(_Lighting): ...
class FeSpotLight(Element):
    x: _LengthAttribute
    y: _LengthAttribute
    z: _NumberAttribute
    pointsAtX: _NumberAttribute
    pointsAtY: _NumberAttribute
    pointsAtZ: _NumberAttribute
    specularExponent: _NumberAttribute
    limitingConeAngle: _NumberAttribute
class FeTile(_Primitive): ...
class FeTurbulence(_Primitive):
    baseFrequency: _NumbersAttribute
    numOctaves: _NumberAttribute
    seed: _NumberAttribute
    stitchTiles: _TextAttribute
    type: _TextAttribute
class Filter(_Placed):
    filterUnits: _TextAttribute
    primitiveUnits: _TextAttribute
class ForeignObject(_Placed): ...
class Group(Element): ...
class Image(_Placed):
    preserveAspectRatio: _TextAttribute
class Line(_Shape):
    x1: _LengthAttribute
    y1: _LengthAttribute
    x2: _LengthAttribute
    y2: _LengthAttribute
class LinearGradient(_Gradient):
    x1: _LengthAttribute
    y1: _LengthAttribute
    x2: _LengthAttribute
    y2: _LengthAttribute
class Marker(_Fitted):
    markerUnits: _TextAttribute
    markerWidth: _LengthAttribute
    markerHeight: _LengthAttribute
    refX: _LengthAttribute
    refY: _LengthAttribute
    orient: _TextAttribute
class Mask(_Placed):
    maskUnits: _TextAttribute
    maskContentUnits: _TextAttribute
    mask_type: _TextAttribute
class Metadata(Element): ...
class Path(_Shape):
    d: str
    # uint8, one for each command; float64, a row (x, y) for each point
    @property
    def codes(self) -> NDArray[numpy.uint8]: ...
    @property
    def points(self) -> NDArray[numpy.float64]: ...
    def set_arrays(self, codes: ArrayLike, points: ArrayLike) -> None: ...
    pathLength: _NumberAttribute
class Pattern(_Placed, _Fitted):
    patternUnits: _TextAttribute
    patternContentUnits: _TextAttribute
    patternTransform: _NumbersAttribute
class RadialGradient(_Gradient):
    cx: _LengthAttribute
    cy: _LengthAttribute
    r: _LengthAttribute
    fx: _LengthAttribute
    fy: _LengthAttribute
    fr: _LengthAttribute
class Rect(_Shape, _Placed):
    rx: _LengthAttribute
    ry: _LengthAttribute
class Stop(Element):
    offset: _NumberAttribute
    stop_color: _NumbersAttribute
    stop_opacity: _NumberAttribute
class Style(Element): ...
class Svg(_Placed, _Fitted):
    background_color: _PaintAttribute
class Switch(Element): ...
class Symbol(_Placed, _Fitted): ...
class TSpan(_PlacedText): ...
class Text(_PlacedText): ...
class TextPath(Element):
    startOffset: _LengthAttribute
    textLength: _LengthAttribute
    lengthAdjust: _TextAttribute
    side: _TextAttribute
    path: _TextAttribute
class TextRun(Element): ...
class Title(Element): ...
class Use(_Placed): ...
