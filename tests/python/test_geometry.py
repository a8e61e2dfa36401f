# SPDX-License-Identifier: MIT
"""Asking a picture: boxes, hits, outlines, everything as columns of plain paths."""

import concurrent.futures
import gc
import unittest

import numpy

import orvan_svg
from support import TestCase

TEXT = b"""<svg xmlns="http://www.w3.org/2000/svg" width="40" height="20"><defs><rect id="r" width="4" height="8"/></defs>
<use id="u" href="#r" x="10"/><g id="g" transform="translate(1 2)"><path id="p" d="M0 0h6v8z" fill="none" stroke="#f00"
stroke-width="2" stroke-linejoin="round"/></g><circle id="c" cx="30" cy="10" r="5" fill="#0f0" opacity=".5"/></svg>"""


class Geometry(TestCase):
    def setUp(self):
        self.document = orvan_svg.Document.open(TEXT)

    def test_tells_where_elements_lie(self):
        path, circle = self.document["p"], self.document["c"]
        self.assertEqual(path.bbox(), (1, 2, 6, 8))
        self.assertEqual(path.bbox(space="element"), orvan_svg.Box(0, 0, 6, 8))
        stroked = path.bbox("stroke", "parent")
        self.assertEqual((stroked.y, stroked.width, stroked.height), (-1, 8, 10))
        self.assertEqual(self.document["g"].bbox("visual")[2:], (8, 10))
        self.assertIsNone(orvan_svg.Document.open(b"<svg/>").root.bbox())
        self.assertEqual([path.transform_to(space) for space in ("view", "element")], [(1, 0, 0, 1, 1, 2), (1, 0, 0, 1, 0, 0)])
        self.assertEqual(self.document.view_size, (40, 20))
        boxes = self.document.boxes("stroke")
        for element, row in zip(self.document, boxes, strict=True):
            numpy.testing.assert_array_equal(row, element.bbox("stroke") or [numpy.nan] * 4)
        places = [element.id for element in self.document]
        numpy.testing.assert_array_equal(self.document.boxes(space="element")[places.index("p")], (0, 0, 6, 8))
        circle.cx = 20
        self.assertEqual(circle.bbox(), (15, 5, 10, 10), "after an edit")
        circle.remove()
        with self.assertRaises(KeyError):
            circle.bbox()
        for kind, space in (("odd", "view"), ("fill", "odd")):
            with self.assertRaises(ValueError):
                path.bbox(kind, space)

    def test_tells_what_is_at_a_place(self):
        hit = self.document.hit(11, 1)
        self.assertEqual((hit.element.id, hit.part, [use.id for use in hit.uses]), ("r", "fill", ["u"]))
        self.assertIsNone(self.document.hit(8.5, 6))
        self.assertEqual(self.document.hit(8.5, 6, tolerance=1).part, "stroke")
        self.document["p"].pointer_events = "none"
        self.assertEqual(self.document.hit_all(1, 2), [])
        self.assertEqual([hit.element.id for hit in self.document.hit_all(1, 2, ignore_pointer_events=True)], ["p"])
        self.assertIsNone(self.document.hit(1, 2))
        self.assertEqual(self.document.hit(1, 2, ignore_pointer_events=True).element.id, "p")
        self.document["u"].replace_with(self.document.create("rect", id="o", x=10, width=4, height=8))
        self.document.root.append(self.document.create("rect", id="q", x=10, width=4, height=8))
        self.assertEqual([hit.element.id for hit in self.document.hit_all(11, 1)], ["q", "o"])
        self.document["q"].remove()
        self.document["o"].id = "r"
        for inside, expected in ((False, ["c", "r"]), (True, ["r"])):
            self.assertEqual([hit.element.id for hit in self.document.hit_rect(9.5, 0, 18, 20, inside=inside)], expected)

    def test_measures_outlines(self):
        path = self.document["p"]
        self.assertAlmostEqual(path.length, 24)
        place = path.point_at(10)
        numpy.testing.assert_allclose(place, (6, 4, 0, 1, 10, 0), atol=1e-9)
        self.assertAlmostEqual(self.document["c"].length, 10 * numpy.pi, places=2)
        self.assertFalse(hasattr(self.document["g"], "length"))
        outline = self.document["g"].outline("view")
        numpy.testing.assert_array_equal(outline.points, [[1, 2], [7, 2], [7, 10]])
        path.d = "M0 0"
        self.assertEqual(outline.length, 24, "stands by itself")
        outline = orvan_svg.Outline([0, 1, 1, 3], [[0, 0], [2, 0], [2, 2]])
        self.assertTrue(outline.contains(1.5, 1) and not outline.contains(1, 1.5))
        self.assertEqual(outline.nearest(5, 1)[:2] + outline.nearest(5, 1)[4:], (2, 1, 3, 3))
        self.assertEqual(outline.transformed((0, 1, -1, 0, 0, 0)).bounds(), outline.bounds((0, 1, -1, 0, 0, 0)))
        self.assertEqual(outline.bounds((0, 1, -1, 0, 0, 0)), (-2, 0, 2, 2))
        line = orvan_svg.Outline([0, 1], [[0, 0], [4, 0]])
        for cap, box in (("butt", (0, -1, 4, 2)), ("square", (-1, -1, 6, 2))):
            self.assertEqual(line.stroked(2, cap=cap).bounds(), box)
        curve = orvan_svg.Outline([0, 2], [[0, 0], [0, 4], [4, 4], [4, 0]])
        self.assertEqual(set(curve.flattened(0.1).codes[1:]), {orvan_svg.LINE})
        square = orvan_svg.Outline([0, 1, 1, 1, 3], [[0, 0], [4, 0], [4, 4], [0, 4]])
        for operation, area in (("unite", 28), ("intersect", 4), ("subtract", 12), ("exclude", 24)):
            self.assertAlmostEqual(square.combined(square.transformed((1, 0, 0, 1, 2, 2)), operation).area(), area)
        self.assertAlmostEqual(square.combined(square, "subtract").area(), 0)
        for codes, points in (([4], []), ([0, 1], [[0, 0]]), ([0], [[0, 0], [1, 1]]), ([0], [[0, 0, 0]])):
            with self.assertRaises(ValueError):
                orvan_svg.Outline(codes, points)
        with self.assertRaises(KeyError):
            orvan_svg.Outline([], []).point_at(0)

    def test_gives_everything_as_columns_that_share_memory(self):
        paths = self.document.normalize()
        self.assertEqual([element.id for element in paths.elements], ["r", "p", "c"])
        self.assertEqual((paths.fill_kinds.tolist(), paths.stroke_kinds.tolist()), ([1, 0, 1], [0, 1, 0]))
        self.assertEqual((paths.strokes[1].tolist(), paths.stroke_widths[1], paths.stroke_joins[1]), ([1, 0, 0], 2, 2))
        self.assertEqual(paths.fill_opacities.tolist(), [1, 1, 0.5])
        begin, end = paths.point_offsets[1:3]
        numpy.testing.assert_array_equal(paths.points[begin:end], [[1, 2], [7, 2], [7, 10]])
        self.assertEqual(len(paths), 3)
        columns = paths.columns()
        self.assertEqual(len(columns), 15)
        self.assertEqual(len(columns["commands"]), columns["command_offsets"][-1])
        self.assertTrue(numpy.shares_memory(columns["points"], paths.points))
        kept, expected = paths.points[:4], paths.points[:4].copy()
        del paths, columns, self.document
        gc.collect()
        numpy.testing.assert_array_equal(kept, expected)
        self.assertEqual(len(orvan_svg.Document.open(b"<svg/>").normalize().points), 0)

    def test_normalizes_as_it_is_told(self):
        paths = self.document.normalize(strokes="outlined", flatten=0.5, grid=80, precision=0.25)
        self.assertEqual((paths.size, set(paths.stroke_kinds.tolist())), ((80, 40), {0}))
        self.assertNotIn(orvan_svg.CUBIC, paths.commands)
        numpy.testing.assert_array_equal(paths.points * 4, numpy.round(paths.points * 4))
        for options in ({"strokes": "odd"}, {"flatten": -1}, {"grid": float("nan")}, {"clips": "odd"}):
            with self.assertRaises(ValueError):
                self.document.normalize(**options)
        clipped = orvan_svg.Document.open(b'<svg width="9" height="9"><clipPath id="c"><rect width="3" height="9"/></clipPath>'
                                          b'<g clip-path="url(#c)"><rect width="8" height="8"/></g></svg>')
        self.assertEqual([clipped.normalize(**options).points[:, 0].max() for options in ({}, {"clips": "applied"})], [8, 3])
        result = clipped.normalized(clips="kept")
        del clipped
        self.assertEqual([element.kind for element in result.select("svg *:not(defs)")], ["clipPath", "path", "g", "path"])
        again = orvan_svg.Document.open(result.to_bytes()).normalized(flatten=1, grid=3)
        self.assertEqual((again.view_size, [element.bbox().width for element in again.select("path")]), ((3, 3), [1]))

    def test_answers_threads_side_by_side(self):
        outline = self.document["c"].outline()

        def ask(number):
            document = self.document if number % 2 else orvan_svg.Document.open(TEXT)
            return (document.hit(30, 10).element.id, document["p"].bbox(), len(document.normalize()), outline.length,
                    document.render().shape)

        with concurrent.futures.ThreadPoolExecutor(4) as pool:
            self.assertEqual(len(set(pool.map(ask, range(40)))), 1)


if __name__ == "__main__":
    unittest.main()
