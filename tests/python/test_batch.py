# SPDX-License-Identifier: MIT
"""Batches: every input has one row, the same bytes come from any number of workers, and nothing is lost or done twice."""

import hashlib
import json
import os
import pathlib
import shutil
import signal
import subprocess
import tarfile
import tempfile
import threading
import time
import unittest
import zipfile

import distributed
import numpy

import orvan_svg
from orvan_svg import batch
from support import TestCase

PATH = '<svg xmlns="http://www.w3.org/2000/svg" width="8" height="8"><path fill="#f00" d="M%d 0L8 8"/></svg>'


# The address sanitizer takes more of the address space than any bound leaves.
MEMORY = 0 if "ASAN_OPTIONS" in os.environ else 2 << 30


class Batches(TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.art = self.folder / "art"
        (self.art / "inner").mkdir(parents=True)
        for number in range(30):
            name = f"inner/{number:02}.svg" if number % 3 else f"{number:02}.svg"
            (self.art / name).write_text(PATH % number if number != 7 else "<svg>\n<g></svg>")
        (self.art / "notes.txt").write_text("no drawing")

    def run_batch(self, name, sources=None, **options):
        """Runs and returns the results: every file below the folder, and all rows."""
        output = self.folder / name
        batch.run(sources or [self.art], output, chunk_size=8, **{"memory": MEMORY, **options})
        files = {str(path.relative_to(output)): path.read_bytes() for path in sorted(output.rglob("*")) if path.is_file()}
        rows = [json.loads(line) for path, content in files.items() if path.endswith(".jsonl")
                for line in content.splitlines()]
        return files, rows

    def test_gives_each_input_one_row_with_any_number_of_workers(self):
        results = [self.run_batch(f"jobs{jobs}", jobs=jobs, operation="columns") for jobs in (1, 3)]
        self.assertEqual(results[0], results[1])
        files, rows = results[0]
        self.assertEqual([row["number"] for row in rows], list(range(30)))
        self.assertEqual(len({row["input"] for row in rows}), 30)
        refused = [row for row in rows if row["outcome"] != "done"]
        self.assertEqual([(row["outcome"], os.path.basename(row["input"]), row["line"]) for row in refused],
                         [("refused", "07.svg", 2)])
        with numpy.load(self.folder / "jobs1/00000000/columns.npz") as columns:
            done = [row["number"] for row in rows[:8] if row["outcome"] == "done"]
            self.assertEqual(columns["inputs"].tolist(), done)
            self.assertEqual(columns["picture_inputs"].tolist(), done)
            self.assertEqual(columns["picture_sizes"].tolist(), [[8, 8]] * len(done))
            self.assertEqual(columns["command_offsets"].tolist(), [2 * i for i in range(len(done) + 1)])
            self.assertEqual(columns["points"][0:4].tolist(), [[0, 0], [8, 8], [3, 0], [8, 8]])
            self.assertEqual(columns["fills"][0].tolist(), [1, 0, 0])
            expected = orvan_svg.Document.open(self.art / "00.svg").normalize().columns()
            self.assertEqual(set(columns), {*expected, "inputs", "picture_inputs", "picture_sizes"})
            for name, column in expected.items():
                self.assertEqual((columns[name].dtype, columns[name].shape[1:]), (column.dtype, column.shape[1:]))
        self.assertFalse([name for name in files if ".part" in name])

    def test_gives_the_same_on_a_cluster(self):
        with distributed.LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None) as cluster:
            there = self.run_batch("there", scheduler=cluster.scheduler_address)
        self.assertEqual(there, self.run_batch("here", jobs=1))

    def test_reads_archives_lists_and_globs(self):
        long = "l" * 200 + "/"
        with tarfile.open(self.folder / "a.tar", "w", format=tarfile.PAX_FORMAT) as archive:
            archive.add(self.art, "in tar")
            archive.add(self.art / "00.svg", long + "ü.svg")
        for form in (tarfile.GNU_FORMAT, tarfile.USTAR_FORMAT):
            with tarfile.open(self.folder / f"{form}.tar", "w", format=form) as archive:
                archive.add(self.art / "00.svg", ("l" * 100 + "/" if form == tarfile.USTAR_FORMAT else long) + "a.svg")
        with tarfile.open(self.folder / "b.tar.gz", "w:gz") as archive:
            archive.add(self.art / "00.svg", "packed.svg")
        with zipfile.ZipFile(self.folder / "c.zip", "w") as archive:
            archive.write(self.art / "03.svg", "zipped.svg")
            archive.write(self.art / "06.svg", "ü.svg", zipfile.ZIP_DEFLATED)
            archive.comment = b"PK" * 20
        (self.folder / "list").write_text(f"{self.folder}/c.zip\n\n{self.art}/0[06].svg\n")
        _, rows = self.run_batch("out", [f"{self.folder}/{name}" for name in ("a.tar", "b.tar.gz", "0.tar", "1.tar")] +
                                 [f"@{self.folder}/list"])
        self.assertEqual({row["outcome"] for row in rows if not row["input"].endswith("07.svg")}, {"done"})
        self.assertEqual([row["input"].removeprefix(f"{self.folder}/") for row in rows[30:]],
                         [f"a.tar/{long}ü.svg", "b.tar.gz/packed.svg", "0.tar/" + "l" * 100 + "/a.svg",
                          f"1.tar/{long}a.svg", "c.zip/zipped.svg", "c.zip/ü.svg", "art/00.svg", "art/06.svg"])
        for row in rows[30:]:
            number = {"zipped.svg": "03", "ü.svg": "06", "06.svg": "06"}.get(os.path.basename(row["input"]), "00")
            number = "00" if "a.tar" in row["input"] else number
            self.assertEqual(row["sha256"], hashlib.sha256((self.art / f"{number}.svg").read_bytes()).hexdigest())
        with self.assertRaises(FileNotFoundError):
            self.run_batch("none", [self.art, f"{self.folder}/missing"])
        self.assertFalse((self.folder / "none").exists(), "nothing is begun")
        whole = (self.folder / "0.tar").read_bytes()
        for damaged in (whole[:600], whole[:1024], b"x" + whole[1:], b""):
            (self.folder / "d.tar").write_bytes(damaged)
            with self.assertRaises(RuntimeError):
                self.run_batch("d", [self.folder / "d.tar"])

    def test_makes_thumbnails(self):
        self.run_batch("out", [self.art / "00.svg", self.art / "03.svg"], operation="thumbnails", size=16)
        with tarfile.open(self.folder / "out/00000000/files.tar") as archive:
            names = archive.getnames()
            self.assertEqual(names, ["0000000000.png", "0000000001.png"])
            self.assertEqual(archive.extractfile(names[0]).read()[:8], b"\x89PNG\r\n\x1a\n")

    def test_tells_boxes(self):
        (self.art / "00.svg").write_text('<svg width="9" height="8"><g><rect x="1" width="2" height="3" stroke="red"/></g>'
                                         '<defs/><text>run</text></svg>')
        _, rows = self.run_batch("out", [self.art / "00.svg"], operation="boxes")
        document = orvan_svg.Document.open(self.art / "00.svg")
        with numpy.load(self.folder / "out/00000000/columns.npz") as columns:
            elements = list(document)
            self.assertEqual([elements[number].kind for number in columns["elements"]], ["svg", "g", "rect", "text"])
            for kind in ("fill", "stroke", "visual"):
                numpy.testing.assert_array_equal(columns[kind], document.boxes(kind)[columns["elements"]])
            self.assertEqual(columns["picture_sizes"].tolist(), [[9, 8]])
        self.assertEqual(rows[0]["elements"], 4)

    def test_repairs_what_a_plain_reader_refuses(self):
        text = '<svg xmlns="http://www.w3.org/2000/svg"><rect id="r" width="4" fill="#F00F"/></svg>'
        (self.art / "00.svg").write_text(text)
        _, rows = self.run_batch("out", [self.art / "00.svg", self.art / "03.svg"], operation="repair")
        self.assertEqual([len(row["repairs"]) for row in rows], [1, 0])
        self.assertEqual(rows[0]["repairs"][0][2:6], ["rect", "r", "fill", "#F00F"])
        with tarfile.open(self.folder / "out/00000000/files.tar") as archive:
            self.assertEqual(archive.getnames(), ["0000000000.svg"])
            repaired = archive.extractfile("0000000000.svg").read()
        self.assertEqual(repaired.decode(), text.replace("#F00F", rows[0]["repairs"][0][6]))
        orvan_svg.Document.open(repaired, complete=False, tolerant=False)

    def test_gives_what_the_program_gives(self):
        # Names and texts that JSON and tar have to be careful with, and content of all lengths modulo a block of hashes.
        odd = self.art / os.fsdecode(b"q\"\\\xc3\xbc\xff\t.svg")
        odd.write_text('<svg><g fill="\u2028\\x"/></svg>')
        for number in range(64):
            (self.art / f"c{number}.svg").write_text("<svg>" + " " * number + "</svg>")
        for operation in batch.OPERATIONS:
            files, rows = self.run_batch(operation, operation=operation, memory=0, grid=100, jobs=1)
            output = self.folder / f"{operation}-program"
            run = subprocess.run([os.environ["ORVAN_SVG"], "batch", self.art, "-o", output, "--operation", operation,
                                  "--chunk-size", "8", "--grid", "100"], stdout=subprocess.PIPE, check=False)
            self.assertEqual((run.returncode, run.stdout), (1, b"94 done, 1 not, 0 there already\n"))
            self.assertEqual({name: (output / name).read_bytes() for name in files}, files)
            self.assertEqual(len(list(output.rglob("*"))), len(list((self.folder / operation).rglob("*"))))
        for row in rows:
            self.assertEqual(hashlib.sha256(pathlib.Path(row["input"]).read_bytes()).hexdigest(), row["sha256"])

    def test_goes_on_where_it_was_interrupted(self):
        whole, _ = self.run_batch("out")
        for name in ("00000001", "00000003"):
            for path in (self.folder / "out" / name).iterdir():
                path.unlink()
            (self.folder / "out" / name).rename(self.folder / "out" / (name + ".part-1"))
        self.assertEqual(batch.run([self.art], self.folder / "out", chunk_size=8, memory=MEMORY), 2)
        self.assertEqual(self.run_batch("out")[0], whole)
        self.assertEqual(batch.run([self.art], self.folder / "out", chunk_size=8, memory=MEMORY), 0)
        for options in ({"operation": "check"}, {"deadline": 5.0}, {"operation": "odd"}, {"size": 0}):
            with self.assertRaises(ValueError):
                self.run_batch("out", **options)

    def test_runs_the_chunk_of_a_killed_worker_again(self):
        # The worker waits at a fifo until it is killed; then a drawing stands there.
        stuck = self.art / "inner/98.svg"
        os.mkfifo(stuck)
        workers = []
        original = batch.Worker.__init__
        self.addCleanup(setattr, batch.Worker, "__init__", original)
        batch.Worker.__init__ = lambda self, *arguments: (original(self, *arguments), workers.append(self))[0]

        def kill_one():
            while not workers or workers[0]._get_place() != 20:
                time.sleep(0.01)
            (self.art / "new").write_text(PATH % 98)
            os.rename(self.art / "new", stuck)
            os.kill(workers[0]._process.pid, signal.SIGKILL)

        thread = threading.Thread(target=kill_one)
        thread.start()
        killed, rows = self.run_batch("killed", [self.art / "inner"], jobs=1)
        thread.join()
        self.assertEqual([row["outcome"] for row in rows], ["refused" if number == 4 else "done" for number in range(21)])
        self.assertEqual(killed, self.run_batch("whole", [self.art / "inner"], jobs=2)[0])

    def test_an_input_that_takes_too_long_costs_its_row(self):
        # A fifo without a writer: reading it waits for ever.
        os.mkfifo(self.art / "inner/98.svg")
        os.symlink("nowhere", self.art / "inner/99.svg")
        _, rows = self.run_batch("out", [self.art / "inner"], deadline=5.0)
        self.assertEqual({row["outcome"] for row in rows[:-2] if row["number"] != 4}, {"done"})
        self.assertEqual([(row["number"], row["outcome"]) for row in rows[-2:]], [(20, "failed"), (21, "unreadable")])


if __name__ == "__main__":
    unittest.main()
