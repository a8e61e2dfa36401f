# SPDX-License-Identifier: MIT
"""The package as its users see it: loading, elements, errors, pictures, threads."""

import concurrent.futures
import gc
import io
import os
import pathlib
import pickle
import tempfile
import unittest
import warnings

import numpy

import orvan_svg
from support import TestCase

RICH = b"""<svg xmlns="http://www.w3.org/2000/svg" width="40" height="20">
<style>.hot { fill: lime }</style>
<g id="layer" transform="translate(10 5) scale(2)"><circle id="c" class="hot" cx="1" cy="50%" r="2mm"/></g>
<path id="p" d="M0 0L10 0C1 2 3 4 5 6Z" stroke="url(#paint)" stroke-dasharray="1 2"/>
<text id="t" font-size="12">one <tspan id="s">two</tspan></text>
<rect id="r" width="40" height="20" fill="#f00" opacity="0.5"/>
</svg>"""


class Documents(TestCase):
    def test_opens_paths_bytes_and_files(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder, "a b.svg")
            path.write_bytes(RICH)
            with open(path, "rb") as file:
                for source in (path, str(path), RICH, bytearray(RICH), io.BytesIO(RICH), file):
                    self.assertEqual(orvan_svg.Document.open(source)["c"].kind, "circle")
            self.assertEqual(orvan_svg.Document.open(path).url, path.resolve().as_uri())
            with self.assertRaises(FileNotFoundError) as caught:
                orvan_svg.Document.open(path.with_name("not here.svg"))
            self.assertEqual(caught.exception.filename, str(path.with_name("not here.svg")))
            with self.assertRaises(OSError):
                orvan_svg.Document.open(folder)
            for odd in (5, None, io.StringIO("<svg/>")):
                with self.assertRaises(TypeError):
                    orvan_svg.Document.open(odd)
            self.assertEqual([repr(orvan_svg.Document.open(source)) for source in (path, RICH)],
                             [f"<Document {path.resolve().as_uri()}>", "<Document>"])
            self.assertEqual(orvan_svg.Document.open(RICH, base=path).url, path.resolve().as_uri())

    def test_tells_what_became_of_a_load(self):
        faulty = b'<svg>\n <g id="g" fill="1"/></svg>'
        report = orvan_svg.Document.open(faulty).report
        self.assertEqual((report.outcome, report.finding_count), ("loaded with findings", 1))
        finding = report.findings[0]
        self.assertEqual((finding.level, finding.line, finding.column, finding.tag, finding.id, finding.attribute),
                         ("warning", 2, 18, "g", "g", "fill"))
        for options in ({"tolerant": False}, {"tolerant": False, "complete": False}):
            with self.assertRaises(orvan_svg.RefusedError) as refused:
                orvan_svg.Document.open(faulty, **options)
            self.assertEqual((refused.exception.line, refused.exception.column), (2, 18))
            self.assertTrue(str(refused.exception).startswith("<bytes>:2:18: "), refused.exception)
        for broken in (b"", b"<g/>", b"<svg><g></svg>"):
            with self.assertRaises(orvan_svg.RefusedError):
                orvan_svg.Document.open(broken)
        self.assertEqual(orvan_svg.Document.open(RICH).report.outcome, "loaded")

    def test_elements_are_of_their_kinds_with_typed_values(self):
        document = orvan_svg.Document.open(RICH, style_sheet="#r { stroke: currentColor }")
        circle = document["c"]
        self.assertIs(type(circle), orvan_svg.Circle)
        self.assertEqual((circle.cx, circle.cy, circle.r),
                         (orvan_svg.Length(1), orvan_svg.Length(50, "%"), orvan_svg.Length(2, "mm")))
        self.assertEqual((circle.fill.kind, circle.fill.color, circle.fill.alpha), ("color", (0.0, 1.0, 0.0), 1.0))
        self.assertIsNone(circle.stroke)
        self.assertFalse(hasattr(circle, "width"))
        paints = [circle.fill, orvan_svg.Document.open(RICH)["c"].fill, document["r"].fill, document["p"].stroke, document["r"].stroke]
        self.assertEqual([paint == paints[0] for paint in paints], [True, True, False, False, False])
        self.assertEqual(len(set(paints)), 4)
        for value in (*paints, circle.r):
            self.assertEqual(pickle.loads(pickle.dumps(value)), value)
        self.assertEqual(document["p"].stroke.reference, "paint")
        self.assertEqual(document["p"].stroke_dasharray, [orvan_svg.Length(1), orvan_svg.Length(2)])
        self.assertEqual(document["r"].opacity, 0.5)
        self.assertEqual(document["r"].stroke.kind, "currentColor")
        self.assertEqual(document["layer"].transform, (2, 0, 0, 2, 10, 5))
        self.assertEqual(circle.world_transform, (2, 0, 0, 2, 10, 5))
        self.assertEqual((document["t"].text, document["s"].text), ("one two", "two"))
        self.assertEqual(set(document["r"].attributes), {"width", "height", "fill", "opacity", "stroke"})
        # What the tree keeps beside an attribute is a part of it.
        text = orvan_svg.Document.open(
            b'<svg><text id="t" x="1 2" y="3" font-weight="900" clip-path="circle(5px)"/></svg>')["t"]
        self.assertEqual(set(text.attributes), {"x", "y", "font-weight", "clip-path"})
        self.assertEqual((text.x, text.y), ([orvan_svg.Length(1), orvan_svg.Length(2)], orvan_svg.Length(3)))
        self.assertEqual((text.font_weight, text.clip_path[:10]), ("900", "circle(5px"))
        self.assertFalse(hasattr(text, "x_list"))
        with self.assertRaises(KeyError):
            document["nobody"]
        with self.assertRaises(KeyError):
            circle.get("no-attribute")

    def test_walks_the_tree(self):
        document = orvan_svg.Document.open(RICH)
        self.assertEqual([element.kind for element in document],
                         ["svg", "style", "g", "circle", "path", "text", "#text", "tspan", "#text", "rect"])
        layer = document["layer"]
        self.assertEqual([layer.parent, *layer], [document.root, document["c"]])
        root = document.root
        self.assertEqual([root[0], root[-1], *root[1:3]], [root.children[i] for i in (0, len(root) - 1, 1, 2)])
        with self.assertRaises(IndexError):
            root[len(root)]
        self.assertEqual(len({layer, document["layer"], document["c"]}), 2)
        self.assertIsNone(document.root.parent)
        self.assertTrue("c" in document and "nobody" not in document)
        self.assertEqual(sorted(document.ids()), ["c", "layer", "p", "r", "s", "t"])
        self.assertEqual(document.ids("la"), ["layer"])
        deep = orvan_svg.Document.open(b"<svg>" + b"<g>" * 400 + b"</g>" * 400 + b"</svg>")
        self.assertEqual(sum(1 for _ in deep), 401)

    def test_elements_keep_what_they_need(self):
        circle = orvan_svg.Document.open(RICH)["c"]
        gc.collect()
        self.assertEqual(circle.parent.parent.kind, "svg")
        children = list(orvan_svg.Document.open(RICH).root)
        gc.collect()
        self.assertEqual(children[-1].parent.kind, "svg")

    def test_paths_are_arrays(self):
        path = orvan_svg.Document.open(RICH)["p"]
        numpy.testing.assert_array_equal(
            path.codes, [orvan_svg.MOVE, orvan_svg.LINE, orvan_svg.CUBIC, orvan_svg.CLOSE])
        numpy.testing.assert_array_equal(path.points, [[0, 0], [10, 0], [1, 2], [3, 4], [5, 6]])
        empty = orvan_svg.Document.open(b'<svg><path id="p"/></svg>')["p"]
        self.assertEqual((empty.codes.shape, empty.points.shape), ((0,), (0, 2)))

    def test_draws(self):
        document = orvan_svg.Document.open(
            b'<svg xmlns="http://www.w3.org/2000/svg" width="4" height="2">'
            b'<rect width="2" height="2" fill="#f80"/><rect x="2" width="1" height="2" fill="#00f" opacity="0.5"/></svg>')
        pixels = document.render()
        self.assertEqual((pixels.shape, pixels.dtype), ((2, 4, 4), numpy.uint8))
        self.assertEqual(pixels[1, :, :].tolist()[0], [255, 136, 0, 255])
        self.assertEqual(pixels[0, 2].tolist()[:3], [0, 0, 255])
        self.assertIn(pixels[0, 2, 3], (127, 128))
        self.assertEqual(pixels[0, 3].tolist(), [0, 0, 0, 0])
        self.assertEqual(document.render(width=8, background=(1, 1, 1))[3, 7].tolist(), [255, 255, 255, 255])
        self.assertEqual(document.to_png()[:8], b"\x89PNG\r\n\x1a\n")
        self.assertEqual(document._repr_png_(), document.to_png())
        self.assertEqual(orvan_svg.Document.open(document._repr_svg_().encode()).render().tobytes(), pixels.tobytes())
        file, descriptors = io.BytesIO(), os.listdir("/proc/self/fd")
        document.to_png(file, height=9, deadline=5)
        self.assertEqual(file.getvalue(), document.to_png(width=18))
        self.assertEqual(os.listdir("/proc/self/fd"), descriptors)
        self.assertEqual(document.to_pdf(scale=2)[:5], b"%PDF-")
        with self.assertRaises(ValueError):
            document.render(width=-1)
        with self.assertRaises(TypeError):
            document.render(widht=1)
        with self.assertRaises(OSError):
            document.to_png("/nowhere/at/all.png")
        circular = orvan_svg.Document.open(b'<svg><g id="a"><use href="#a"/></g></svg>')
        with warnings.catch_warnings(record=True) as caught:
            warnings.simplefilter("always")
            circular.render()
        self.assertEqual([warning.category for warning in caught], [orvan_svg.PictureWarning])

    def test_threads_share_documents_and_go_their_own_ways(self):
        shared = orvan_svg.Document.open(RICH)
        whole = shared.render().tobytes()

        def work(number):
            if number % 2:
                return shared.render().tobytes() == whole and shared["c"].parent.id == "layer"
            own = orvan_svg.Document.open(RICH)
            return own.render().tobytes() == whole and [e.kind for e in own] == [e.kind for e in shared]

        with concurrent.futures.ThreadPoolExecutor(6) as pool:
            self.assertTrue(all(pool.map(work, range(60))))


if __name__ == "__main__":
    unittest.main()
