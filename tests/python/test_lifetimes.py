# SPDX-License-Identifier: MIT
"""Random orders of creating, using and letting go: nothing that Python holds may outlive what it needs, and every answer is
the same whatever was dropped before."""

import contextlib
import gc
import random
import unittest

import numpy

import orvan_svg
from support import TestCase

TEXT = b"""<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"><defs><linearGradient id="l"><stop/></linearGradient>
</defs><g id="g"><path id="p" d="M0 0h4v4z" fill="url(#l)"/><use id="u" href="#p" x="2"/></g><text id="t">a<tspan>b</tspan>
</text></svg>"""
IDS = ("l", "g", "p", "u", "t")


class Lifetimes(TestCase):
    def drive(self, seed, steps):
        """One random run. What it holds is a list of pairs: a thing, and a function that uses it and knows the answer."""
        choose = random.Random(seed)
        held = []

        def pick(kind):
            there = [thing for thing, _ in held if isinstance(thing, kind)]
            return choose.choice(there) if there else None

        def hold(thing, use):
            held.append((thing, use))

        def open_document():
            kind = choose.choice([orvan_svg.Document, orvan_svg.Icon])
            hold(kind.open(TEXT, keep_source=choose.random() < 0.5), lambda document: self.assertEqual(document.root.kind, "svg"))

        def hold_element(element):
            kind, tag = element.kind, element.id
            hold(element, lambda element: self.assertEqual((element.kind, element.id), (kind, tag)))

        def take_element():
            if document := pick(orvan_svg.Document):
                hold_element(choose.choice(list(document)))

        def walk():
            if element := pick(orvan_svg.Element):
                for other in [element.parent, *element.children]:
                    if other is not None and choose.random() < 0.5:
                        hold_element(other)

        def make_element():
            if document := pick(orvan_svg.Document):
                hold_element(document.create(choose.choice(["rect", "g", "text", "linearGradient"])))

        def edit():
            element, other = pick(orvan_svg.Element), pick(orvan_svg.Element)
            try:
                choose.choice([lambda: element.append(other), lambda: element.remove(), lambda: hold_element(element.clone()),
                               lambda: element.replace_with(other), lambda: setattr(element, "fill", "red"),
                               lambda: setattr(element, "text", "x")])()
            except (AttributeError, ValueError, RuntimeError, KeyError, TypeError):
                pass  # No element, or one where this makes no sense: of another document, inside of itself …

        def take_back():
            if document := pick(orvan_svg.Document):
                with document.transaction():
                    document.root.opacity = choose.random()
                choose.choice([document.undo, document.redo])()

        def take_arrays():
            if document := pick(orvan_svg.Document):
                paths = document.normalize()
                hold(paths, lambda paths: self.assertEqual(len(paths.elements), len(paths)))
                column = choose.choice(list(paths.columns().values()))
                expected = column.copy()
                hold(column, lambda column: numpy.testing.assert_array_equal(column, expected))

        def take_outline():
            element = pick(orvan_svg.Element)
            try:
                outline = element.outline()
            except (AttributeError, KeyError):
                return
            length = outline.length
            hold(outline, lambda outline: self.assertEqual(outline.length, length))

        def take_iterator():
            if document := pick(orvan_svg.Document):
                iterator = iter(document)
                hold(iterator, lambda iterator: next(iterator, None))

        def ask():
            if document := pick(orvan_svg.Document):
                hit = document.hit(1, 1)
                if hit is not None:
                    hold_element(hit.element)
                document.boxes()
                with contextlib.suppress(ValueError):  # A tree that no file has, a rectangle in a gradient …
                    document.to_bytes(rewrite=True)

        def drop():
            for _ in range(min(len(held), choose.randint(1, 6))):
                del held[choose.randrange(len(held))]
            if choose.random() < 0.05:
                gc.collect()

        def use():
            for thing, use_it in choose.sample(held, min(len(held), 4)):
                use_it(thing)

        steps_there = [open_document, take_element, walk, make_element, edit, edit, take_back, take_arrays, take_outline,
                       take_iterator, ask, drop, drop, use, use]
        for _ in range(steps):
            choose.choice(steps_there)()
        return len(held)

    def test_any_order_will_do(self):
        held = 0
        for seed in range(25):
            with self.subTest(seed=seed):
                held += self.drive(seed, 120)
                gc.collect()
        self.assertGreater(held, 0)


if __name__ == "__main__":
    unittest.main()
