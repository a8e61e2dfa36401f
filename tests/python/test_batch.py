# SPDX-License-Identifier: MIT
"""Batches: every input has one row, the same bytes come from any number of workers, and nothing is lost or done twice."""

import json
import os
import pathlib
import signal
import tarfile
import tempfile
import threading
import time
import unittest
import zipfile

import distributed
import numpy

from orvan_svg import batch
from support import TestCase

PATH = '<svg xmlns="http://www.w3.org/2000/svg" width="8" height="8"><path fill="#f00" d="M%d 0L8 8"/></svg>'


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
        batch.run(sources or [self.art], output, chunk_size=8, **options)
        files = {str(path.relative_to(output)): path.read_bytes() for path in sorted(output.rglob("*")) if path.is_file()}
        rows = [json.loads(line) for path, content in files.items() if path.endswith(".jsonl")
                for line in content.decode().splitlines()]
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
            self.assertEqual(columns["path_input"].tolist(), done)
            self.assertEqual(columns["path_commands"].tolist(), [2] * len(done))
            self.assertEqual(columns["points"].shape, (2 * len(done), 2))
            self.assertEqual(columns["path_fill"][0].tolist(), [1, 0, 0, 1])
        self.assertFalse([name for name in files if ".part" in name])

    def test_gives_the_same_on_a_cluster(self):
        with distributed.LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None) as cluster:
            there = self.run_batch("there", scheduler=cluster.scheduler_address)
        self.assertEqual(there, self.run_batch("here", jobs=1))

    def test_reads_archives_lists_and_globs(self):
        with tarfile.open(self.folder / "a.tar", "w") as archive:
            archive.add(self.art, "in tar")
        with tarfile.open(self.folder / "b.tar.gz", "w:gz") as archive:
            archive.add(self.art / "00.svg", "packed.svg")
        with zipfile.ZipFile(self.folder / "c.zip", "w") as archive:
            archive.write(self.art / "03.svg", "zipped.svg")
        (self.folder / "list").write_text(f"{self.folder}/c.zip\n\n{self.art}/0[06].svg\n")
        _, rows = self.run_batch("out", [f"{self.folder}/a.tar", f"{self.folder}/b.tar.gz", f"@{self.folder}/list"])
        self.assertEqual([os.path.basename(row["input"]) for row in rows[30:]],
                         ["packed.svg", "zipped.svg", "00.svg", "06.svg"])
        hashes = {os.path.basename(row["input"]): row["sha256"] for row in rows[:30]}
        self.assertEqual([row["sha256"] for row in rows[30:]],
                         [hashes[name] for name in ("00.svg", "03.svg", "00.svg", "06.svg")])
        with self.assertRaises(FileNotFoundError):
            self.run_batch("none", [self.art, f"{self.folder}/missing"])
        self.assertFalse((self.folder / "none").exists(), "nothing is begun")

    def test_makes_thumbnails(self):
        files, _ = self.run_batch("out", [self.art / "00.svg", self.art / "03.svg"], operation="thumbnails", size=16)
        with tarfile.open(self.folder / "out/00000000/files.tar") as archive:
            names = archive.getnames()
            self.assertEqual(names, ["0000000000.png", "0000000001.png"])
            self.assertEqual(archive.extractfile(names[0]).read()[:8], b"\x89PNG\r\n\x1a\n")

    def test_goes_on_where_it_was_interrupted(self):
        whole, _ = self.run_batch("out")
        for name in ("00000001", "00000003"):
            for path in (self.folder / "out" / name).iterdir():
                path.unlink()
            (self.folder / "out" / name).rename(self.folder / "out" / (name + ".part"))
        self.assertEqual(batch.run([self.art], self.folder / "out", chunk_size=8), 2)
        self.assertEqual(self.run_batch("out")[0], whole)
        self.assertEqual(batch.run([self.art], self.folder / "out", chunk_size=8), 0)
        with self.assertRaises(ValueError):
            self.run_batch("out", operation="check")

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
