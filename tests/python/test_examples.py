# SPDX-License-Identifier: MIT
"""The scripts in examples/python, each run as a user would."""

import doctest
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

import numpy

from support import TestCase

EXAMPLES = pathlib.Path(__file__).resolve().parents[2] / "examples/python"
HEAD = '<svg xmlns="http://www.w3.org/2000/svg" width="20" height="10">'
HOUSE = f'{HEAD}<style>.roof {{ fill: #C00 }}</style><!-- a --><path class="roof" d="M0 5h8L4 0z"/><rect y="5" width="8" height="5" fill="rgb(0,0,255)"/></svg>\n'
# The same, larger, elsewhere and otherwise written.
OTHER = f'{HEAD}<g transform="translate(1 -2) scale(1.2)"><path d="M.5 10V5l4-5 4 5v5zM.5 5h8"/></g></svg>'


class Examples(TestCase):
    def setUp(self):
        self.place = tempfile.TemporaryDirectory()
        self.addCleanup(self.place.cleanup)
        self.folder = pathlib.Path(self.place.name)
        (self.folder / "icons").mkdir()
        self.write("icons/house.svg", HOUSE)

    def write(self, name, text):
        (self.folder / name).write_text(text)

    def run_script(self, name, *arguments):
        result = subprocess.run([sys.executable, EXAMPLES / f"{name}.py", *arguments], cwd=self.folder, text=True,
                                capture_output=True)
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout

    def test_recolours_a_theme(self):
        self.write("icons/odd.svg", "<svg")
        output = self.run_script("recolour_theme", "icons", "out", "#0000ff=teal", "#cc0000=#123456")
        self.assertTrue(output.endswith("1 files changed\n"), output)
        text = (self.folder / "out/house.svg").read_text()
        self.assertIn("<!-- a -->", text)
        self.assertIn('height="5" fill="teal"/></svg>\n', text)
        self.assertIn("#123456", text)
        self.assertEqual((self.folder / "icons/house.svg").read_text(), HOUSE)
        self.assertFalse((self.folder / "out/odd.svg").exists())

    def test_makes_a_data_set_of_paths(self):
        self.write("icons/same.svg", HOUSE.replace("<!-- a -->", "<!-- b -->"))
        self.write("icons/empty.svg", HEAD + "</svg>")
        self.assertEqual(self.run_script("path_dataset", "set.npz", "icons"), "1 pictures, 9 commands\n")
        made = numpy.load(self.folder / "set.npz")
        self.assertEqual((made["offsets"].tolist(), made["names"].tolist()), ([0, 9], ["icons/house.svg"]))
        # The 20 by 10 picture fills 255 by 127.5; the paths begin as high, the roof first.
        self.assertEqual(made["rows"][:4].tolist(), [[0, -1, -1, -1, -1, 0, 64], [1, -1, -1, -1, -1, 102, 64],
                                                     [1, -1, -1, -1, -1, 51, 0], [1, -1, -1, -1, -1, 0, 64]])

    def test_plots(self):
        lines = '<path d="M17 1h2z"/><path d="M9 8H4"/>'
        self.write("lines.svg", f'{HEAD}<g fill="none" stroke="red">{lines}</g></svg>')
        output = self.run_script("plot", "lines.svg", "out.hpgl", "20")
        # From the corner below to the nearer line, from its nearer end; y goes up.
        self.assertEqual((self.folder / "out.hpgl").read_text(), "IN;SP1;\nPU160,80;PD360,80;\n"
                         "PU680,360;PD760,360,680,360;\nPU0,0;SP0;\n")
        self.assertEqual(output, "2 lines; above the paper 15 mm instead of 30\n")

    def test_finds_icons_that_look_alike(self):
        self.write("icons/other.svg", OTHER)
        self.write("icons/ring.svg", HEAD + '<circle cx="10" cy="5" r="4"/></svg>')
        pairs = self.run_script("find_alike", "icons").splitlines()
        self.assertEqual([pair.split()[1:] for pair in pairs], [["icons/house.svg", "icons/other.svg"]])

    def test_the_readme_says_what_happens(self):
        project = EXAMPLES.parents[1]
        (self.folder / "examples").symlink_to(project / "examples")
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(self.folder)
        text = (project / "README.md").read_text()
        session = doctest.DocTestParser().get_doctest(text, {}, "README.md", None, 0)
        self.assertGreater(len(session.examples), 4)
        self.assertEqual(doctest.DocTestRunner().run(session).failed, 0)
        before, after = (pathlib.Path(name).read_text().splitlines() for name in ("examples/lamp.svg", "teal.svg"))
        differences = [after for before, after in zip(before, after, strict=True) if before != after]
        self.assertEqual([line.split()[-1] for line in differences], ['fill="teal"/>'] * 4)


if __name__ == "__main__":
    unittest.main()
