# SPDX-License-Identifier: MIT
"""Icons from Python: states, layers, and reloads inside of an asyncio loop."""

import asyncio
import gc
import pathlib
import tempfile
import unittest
import warnings

import orvan_svg
from support import TestCase

LAYERS = ("State:EnabledActivatedHighlight", "State:EnabledActivatedNoHighlight", "State:EnabledDeactivatedHighlight",
          "State:EnabledDeactivatedNoHighlight", "badge")


def icon_text(fill):
    return "<svg>" + "".join(f'<g id="{layer}" fill="{fill}"/>' for layer in LAYERS) + "</svg>"


class Icons(TestCase):
    def shown(self, icon):
        return [layer for layer in LAYERS if icon[layer].display != "none"]

    def test_states_and_layers(self):
        icon = orvan_svg.Icon.open(icon_text("red").encode())
        self.assertIsNone(icon.state)
        self.assertEqual(self.shown(icon), list(LAYERS))
        icon.state = 2
        self.assertEqual((icon.state, self.shown(icon)), (2, [LAYERS[2], "badge"]))
        icon.show("badge", False)
        self.assertEqual(self.shown(icon), [LAYERS[2]])
        icon.toggle("badge")
        self.assertEqual(self.shown(icon), [LAYERS[2], "badge"])
        with self.assertRaises(KeyError):
            icon.show("nobody")
        with warnings.catch_warnings(record=True) as caught:
            warnings.simplefilter("always")
            orvan_svg.Icon.open(b"<svg/>").state = 1
        self.assertEqual(len(caught), 1)

    def test_reloads_inside_of_a_loop(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder, "icon.svg")
            path.write_text(icon_text("red"))
            icon = orvan_svg.Icon.open(path)
            icon.state = 1
            self.assertFalse(icon.live_reload)
            icon.live_reload = True
            self.assertTrue(icon.live_reload)

            async def change(text):
                reloaded = asyncio.get_running_loop().create_future()
                icon.on_reload = lambda *arguments: reloaded.done() or reloaded.set_result(arguments)
                stop = orvan_svg.follow_changes()
                path.write_text(text)
                try:
                    return await asyncio.wait_for(reloaded, 20)
                finally:
                    stop()
                    self.assertFalse(asyncio.get_running_loop().remove_reader(orvan_svg._icons._core._changes_descriptor()))

            self.assertEqual(asyncio.run(change(icon_text("lime"))), (icon, True))
            self.assertEqual(icon["badge"].fill.color, (0, 1, 0))
            self.assertEqual(self.shown(icon), [LAYERS[1], "badge"])
            self.assertEqual(asyncio.run(change("<svg><g></svg>")), (icon, False))
            self.assertEqual(icon["badge"].fill.color, (0, 1, 0))
            # By hand, which says how many there were.
            path.write_text(icon_text("red"))
            changed = 0
            while changed == 0:
                changed = orvan_svg.dispatch_changes()
            self.assertEqual((changed, icon["badge"].fill.color), (1, (1, 0, 0)))
            icon.live_reload = False
            path.write_text(icon_text("blue"))
            self.assertEqual(orvan_svg.dispatch_changes(), 0)
            del icon
            gc.collect()
            self.assertEqual(orvan_svg.dispatch_changes(), 0)


if __name__ == "__main__":
    unittest.main()
