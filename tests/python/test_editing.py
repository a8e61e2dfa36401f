# SPDX-License-Identifier: MIT
"""Editing from Python: attributes, structure, transactions, saving."""

import gc
import io
import pathlib
import random
import tempfile
import unittest

import orvan_svg
from orvan_svg import Length
from support import TestCase

TEXT = """<?xml version="1.0"?>
<!-- A comment that stays. -->
<svg xmlns="http://www.w3.org/2000/svg">
  <g class="icons">
    <rect id="r"  width='4' height="2" style="fill: red; opacity: .5"/>
    <path id="p" d="M0 0h5"/>
  </g>
  <use id="u" href="#r"/>
</svg>
"""


class Editing(TestCase):
    def setUp(self):
        self.document = orvan_svg.Document.open(TEXT.encode())
        self.rect = self.document["r"]

    def saved(self):
        return self.document.to_bytes().decode()

    def test_sets_attributes_and_saves_just_these(self):
        self.assertEqual(self.saved(), TEXT)
        self.rect.width = 7
        self.rect.fill = "lime"
        self.assertEqual(self.saved(), TEXT.replace("width='4'", "width='7'").replace("fill: red", "fill: lime"))
        for value, expected in (((1, 0, 0), (1, 0, 0)), ("rgb(0 255 0)", (0, 1, 0))):
            self.rect.fill = value
            self.assertEqual(self.rect.fill.color, expected)
        self.rect.stroke_dasharray = [1, Length(2, "mm")]
        self.assertEqual(self.rect.stroke_dasharray, [Length(1), Length(2, "mm")])
        self.rect.fill_rule = "evenodd"
        self.assertEqual(self.rect.fill_rule, "evenodd")
        self.rect.opacity = None
        del self.rect.fill
        self.assertEqual((self.rect.opacity, self.rect.fill), (None, None))
        for name, value in (("width", "wide"), ("fill", "reddish")):
            with self.assertRaises(ValueError):
                setattr(self.rect, name, value)
        self.rect.transform = (1, 0, 0, 1, 5, 6)
        again = orvan_svg.Document.open(self.saved().encode())
        self.assertEqual(again["r"].transform, (1, 0, 0, 1, 5, 6))
        self.assertEqual(again["r"].attributes, self.rect.attributes)
        path = self.document["p"]
        path.d = "M1 1l2 0z"
        self.assertEqual((path.d, path.points.tolist()), ("M1 1L3 1Z", [[1, 1], [3, 1]]))
        with self.assertRaises(ValueError):
            path.d = "M1 1X"
        path.set_arrays([orvan_svg.MOVE, orvan_svg.CUBIC], [[0, 1], [2, 3], [4, 5], [6, 7]])
        self.assertEqual(path.d, "M0 1C2 3 4 5 6 7")
        for arrays in (([orvan_svg.MOVE], []), ([7], [[0, 0]]), ([orvan_svg.CLOSE], [[0, 0]])):
            with self.assertRaises(ValueError, msg=arrays):
                path.set_arrays(*arrays)
        path.transform = "translate(1 2)"
        self.assertEqual((path.transform, path.d), ((1, 0, 0, 1, 1, 2), "M0 1C2 3 4 5 6 7"))
        for odd, error in (("turn(5)", ValueError), ((1, 2), TypeError), (5, TypeError)):
            with self.assertRaises(error, msg=odd):
                path.transform = odd

    def test_changes_the_structure(self):
        group = self.rect.parent
        circle = self.document.create("circle", r=3, fill="blue")
        group.insert_before(circle, self.document["p"])
        self.assertEqual([child.kind for child in group], ["rect", "circle", "path"])
        self.assertEqual((circle.index, circle.parent), (1, group))
        self.document["p"].remove()
        self.assertNotIn("p", self.document)
        self.document.rename(self.rect, "wall")
        self.assertEqual((self.document["wall"], self.document["u"].href), (self.rect, "wall"))
        copy = self.rect.clone()
        group.append(copy)
        self.assertEqual((len(group), copy.width), (3, self.rect.width))
        again = orvan_svg.Document.open(self.saved().encode())
        self.assertEqual([element.kind for element in again], [element.kind for element in self.document])
        with self.assertRaises(ValueError):
            orvan_svg.Document.open(TEXT.encode()).root.append(circle)
        with self.assertRaises((ValueError, RuntimeError)):
            self.document.root.remove()
        with self.assertRaises(ValueError):
            self.document.create("square")
        with self.assertRaises(AttributeError):
            self.document.create("circle", width=5)

    def test_selects(self):
        self.assertEqual(self.document.select("g.icons > *"), [self.rect, self.document["p"]])
        self.assertEqual(self.document.select("#nobody"), [])
        with self.assertRaises(ValueError):
            self.document.select("g >")

    def test_takes_back_what_fails(self):
        with self.assertRaises(ZeroDivisionError):
            with self.document.transaction():
                self.rect.width = 9
                self.document["p"].remove()
                1 / 0  # pylint: disable=pointless-statement
        self.assertEqual(self.saved(), TEXT)
        with self.document.transaction():
            self.rect.width = 9
        self.assertTrue(self.document.undo())
        self.assertEqual(self.saved(), TEXT)
        self.assertTrue(self.document.redo())
        self.assertEqual(self.rect.width, Length(9))
        self.assertFalse(self.document.redo())

    def test_saves_files_and_makes_new_ones(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder, "a b.svg")
            path.write_text(TEXT)
            document = orvan_svg.Document.open(path)
            document["r"].height = 5
            document.save()
            self.assertEqual(path.read_text(), TEXT.replace('height="2"', 'height="5"'))
            new = orvan_svg.Document.new(10, 20)
            new.root.append(new.create("rect", width=10, height=20, fill="red"))
            new.save(path)
            self.assertEqual(orvan_svg.Document.open(path).render()[0, 0].tolist(), [255, 0, 0, 255])
            with self.assertRaises(OSError):
                new.save("/nowhere/at/all.svg")
            with self.assertRaises(ValueError):
                new.save()
            file = io.BytesIO()
            new.save(file, rewrite=True, indentation=0)
            self.assertEqual(file.getvalue(), new.to_bytes(rewrite=True, indentation=0))
            self.assertNotEqual(file.getvalue(), new.to_bytes(rewrite=True))

    def test_survives_any_order_of_use(self):
        chance = random.Random(7)
        documents, elements = [], []
        for _ in range(2000):
            action = chance.randrange(7)
            try:
                if action == 0 or not documents:
                    documents.append(orvan_svg.Document.open(TEXT.encode()))
                elif action == 1:
                    elements.extend(chance.choice(documents))
                elif action == 2 and elements:
                    chance.choice(elements).append(chance.choice(elements))
                elif action == 3 and elements:
                    chance.choice(elements).remove()
                elif action == 4 and elements:
                    chance.choice(elements).fill = chance.choice(["red", None, "url(#r)", (0, 1, 0)])
                elif action == 5:
                    del documents[chance.randrange(len(documents))]
                else:
                    chance.choice(documents).to_bytes()
            except (ValueError, RuntimeError):
                pass  # Refused, which is what this is about: nothing else may happen.
            if len(elements) > 100:
                chance.shuffle(elements)
                del elements[:50]
        gc.collect()
        self.assertTrue(all(element.kind for element in elements))


if __name__ == "__main__":
    unittest.main()
