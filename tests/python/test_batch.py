# SPDX-License-Identifier: MIT
"""Batches: every input has one row, the same bytes come from any number of workers, and nothing is lost or done twice."""

import contextlib
import gzip
import hashlib
import inspect
import io
import json
import lzma
import os
import pathlib
import shutil
import signal
import subprocess
import tarfile
import tempfile
import threading
import time
import types
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
# What the interpreter needs of the sanitizer the program has in it.
PROGRAM = ["env", "-u", "LD_PRELOAD", os.environ["ORVAN_SVG"], "batch"]


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
        (self.art / "again").symlink_to("inner")  # A link to a folder is not followed.

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
        self.assertFalse([row for row in rows if "left_out" in row], "what is said of one is not said of the next")
        with numpy.load(self.folder / "jobs1/00000000/columns.npz") as columns:
            done = [row["number"] for row in rows[:8] if row["outcome"] == "done"]
            self.assertEqual(columns["inputs"].tolist(), done)
            self.assertEqual(columns["picture_inputs"].tolist(), done)
            self.assertEqual(columns["picture_sizes"].tolist(), [[8, 8]] * len(done))
            self.assertEqual(columns["command_offsets"].tolist(), [2 * i for i in range(len(done) + 1)])
            self.assertEqual(columns["points"][0:4].tolist(), [[0, 0], [8, 8], [3, 0], [8, 8]])
            self.assertEqual(columns["fills"][0].tolist(), [1, 0, 0])
            expected = orvan_svg.Document.open(self.art / "00.svg").normalize().columns()
            self.assertEqual(set(columns), {*expected, "inputs", "elements", "picture_inputs", "picture_sizes"})
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
        for missing in ("missing", "missing*", "list**"):
            for source in (f"{self.folder}/{missing}", f"@{self.folder}/{missing}"):
                with self.assertRaises(FileNotFoundError, msg=source):
                    self.run_batch("none", [self.art, source])
        self.assertFalse((self.folder / "none").exists(), "nothing is begun")

    def test_damaged_archives_cost_rows(self):
        """What can be read has its rows, and an archive that cannot be listed to its end has one of its own."""
        def make_tar(**changes):
            content = b""
            for name, drawing in drawings.items():
                member = tarfile.TarInfo(name)
                member.size = len(drawing)
                for key, value in changes.items() if name == "a.svg" else ():
                    setattr(member, key, value)
                content += member.tobuf(tarfile.GNU_FORMAT) + drawing + bytes(-len(drawing) % 512)
            return content + bytes(1024)

        def make_zip(changes=(), is_streamed=False, **options):
            file = io.BytesIO()
            target = types.SimpleNamespace(write=file.write, flush=file.flush) if is_streamed else file
            with zipfile.ZipFile(target, "w", **options) as archive:
                for name, drawing in drawings.items():
                    archive.writestr(name, drawing)
            content = bytearray(file.getvalue())
            for at, byte in changes:
                content[at] = byte
            return bytes(content)

        # The first has holes where it is sparse; the second is so large that nobody reads over it.
        with open(self.folder / "a.svg", "wb") as file:
            file.write(b"<svg/>")
            file.truncate(1 << 20)
        drawings = {"a.svg": b"<svg/>", "b.svg": b"<svg>" + b" " * 200000 + b"</svg>", "ü.svg": b"<svg></svg>"}
        tar, zipped = make_tar(), make_zip()
        frame = lambda piece, last: (len(piece) << 3 | last).to_bytes(3, "little") + piece  # Of zstd, not compressed.
        zstd = (b"\x28\xb5\x2f\xfd\xa0" + len(tar).to_bytes(4, "little") + b"".join(
            frame(tar[at:at + (1 << 16)], at + (1 << 16) >= len(tar)) for at in range(0, len(tar), 1 << 16)))
        # What is in each archive, d: done, r: refused, u: unreadable; and last, ! when the archive is.
        cases = {"whole.tar": (tar, "ddd"), "one-end.tar": (tar[:-512], "ddd"), "no-end.tar": (tar[:-1024], "ddd!"),
                 "head.tar": (tar[:1200], "d!"), "between.tar": (tar[:1024], "d!"), "content.tar": (tar[:9000], "du!"),
                 "padding.tar": (tar[:600], "d!"), "empty.tar": (b"", "!"), "none.tar": (b"no tar" * 999, "!"),
                 "sum.tar": (b"x" + tar[1:], "!"), "sum2.tar": (tar[:1024] + b"x" + tar[1025:], "d!"),
                 "huge.tar": (make_tar(size=1 << 33), "u!"), "beyond.tar": (make_tar(size=1 << 29), "u!"),
                 "dots.tar": (make_tar(name="../../a.svg"), "ddd"), "root.tar": (make_tar(name="/a.svg"), "ddd"),
                 "sparse.tar": (subprocess.run(["tar", "-cSC", self.folder, "a.svg"], stdout=subprocess.PIPE, check=True).stdout, "r"),
                 "link.tar": (make_tar(type=tarfile.LNKTYPE, size=0, linkname="/etc/passwd")[:512] + tar[1024:], "dd"),
                 "whole.tgz": (gzip.compress(tar), "ddd"), "cut.tar.gz": (gzip.compress(tar)[:-400], "!"),
                 "whole.tar.xz": (lzma.compress(tar), "ddd"), "flipped.txz": (lzma.compress(tar)[:-40], "du!"),
                 "whole.tzst": (zstd, "ddd"), "cut.tar.zst": (zstd[:-900], "du!"),
                 "whole.zip": (zipped, "ddd"), "packed.zip": (make_zip(compression=zipfile.ZIP_DEFLATED), "ddd"),
                 "streamed.zip": (make_zip(is_streamed=True, compression=zipfile.ZIP_DEFLATED), "ddd"),
                 "stored.zip": (make_zip(is_streamed=True), "ddd"), "none.zip": (b"PK" * 99, "!"),
                 "head.zip": (zipped[:60], "d!"), "content.zip": (zipped[:999], "du!"), "sum.zip": (make_zip([(36, 32)]), "udd"),
                 "method.zip": (make_zip([(8, 98)]), "udd"), "encrypted.zip": (make_zip([(6, 1)]), "udd"),
                 "beyond.zip": (make_zip([(21, 255), (25, 255)]), "u!")}
        (self.folder / "bad").mkdir()
        for name, (content, _) in cases.items():
            (self.folder / "bad" / name).write_bytes(content)
        # Each row is read by itself.
        subprocess.run([*PROGRAM, self.folder / "bad", "-o", self.folder / "out", "--chunk-size", "1"],
                       stdout=subprocess.DEVNULL, check=False)
        found = {name: "" for name in cases}
        for path in sorted((self.folder / "out").glob("*/rows.jsonl")):
            row = json.loads(path.read_text())
            name, _, member = row["input"].removeprefix(f"{self.folder}/bad/").partition("/")
            found[name] += row["outcome"][0] if member else "!"
            if "sha256" in row:
                content = (self.folder / "a.svg").read_bytes() if name == "sparse.tar" else drawings[os.path.basename(member)]
                self.assertEqual(row["sha256"], hashlib.sha256(content).hexdigest(), row)
            self.assertTrue(row["outcome"] == "done" or row["message"])
        self.assertEqual(found, {name: outcomes for name, (_, outcomes) in cases.items()})

    def test_what_cannot_be_reached_costs_a_row(self):
        """Pipes that nobody writes to, what goes away between listing and reading, folders that are nobody's business."""
        os.mkfifo(self.folder / "pipe.tar")
        (self.folder / "link.zip").symlink_to("pipe.tar")
        (self.folder / "gone.tar").symlink_to("nowhere")
        gone, locked = self.art / "gone.svg", self.folder / "locked"
        locked.mkdir()
        (self.folder / "list").write_text(f"{self.folder}/missing.svg\n{self.folder}/no*.svg\n@{self.folder}/nothing\n"
                                          f"{locked}\n{self.art}/00.svg")
        gone.write_text("<svg/>")
        with tarfile.open(self.folder / "gone-too.tar", "w") as archive:
            archive.add(gone, "a.svg")
        sources = [f"{self.folder}/pipe.tar", f"{self.folder}/*.zip", f"{self.folder}/gone*.tar", f"@{self.folder}/list", str(gone)]
        listed = batch._core.InputList(sources)
        user = os.geteuid()
        locked.chmod(0)
        self.folder.chmod(0o755)
        with contextlib.ExitStack() as undo:  # The superuser reads everything.
            if user == 0:
                os.seteuid(65534)
                undo.callback(os.seteuid, user)
            inputs, count = listed.take(99)
        locked.chmod(0o700)
        gone.unlink()
        (self.folder / "gone-too.tar").unlink()
        (self.folder / "out").mkdir()
        batch._core.run_chunk(str(self.folder / "out/00000000"), 0, inputs, {}, batch._core.BatchOptions(), batch._core.InputReader(),
                              bytearray(8))
        rows = [json.loads(line) for line in (self.folder / "out/00000000/rows.jsonl").read_text().splitlines()]
        self.assertEqual([(os.path.basename(row["input"]), row["outcome"], row.get("message")) for row in rows], [
            ("pipe.tar", "unreadable", "It is not an ordinary file."), ("link.zip", "unreadable", "It is not an ordinary file."),
            ("a.svg", "unreadable", "No such file or directory"), ("gone.tar", "unreadable", "No such file or directory"),
            ("missing.svg", "unreadable", f"There is no {self.folder}/missing.svg."),
            ("no*.svg", "unreadable", f"Nothing is called {self.folder}/no*.svg."),
            ("nothing", "unreadable", f"{self.folder}/nothing cannot be read."),
            ("locked", "unreadable", "Permission denied"), ("00.svg", "done", None),
            ("gone.svg", "unreadable", "No such file or directory")])
        with self.assertRaises(ValueError):
            batch._core.run_chunk(str(self.folder / "out/00000001"), 0, inputs[:-1], {}, batch._core.BatchOptions(),
                                  batch._core.InputReader(), bytearray(8))

    def test_tells_what_paths_come_from(self):
        text = (b'<svg width="9" height="9"><clipPath id="c"><rect width="3" height="3"/></clipPath><use href="#r"/><text>run</text>'
                b'<g clip-path="url(#c)"><rect id="r" width="8" height="8"/></g></svg>')
        (self.art / "00.svg").write_bytes(text)
        for clips in ("ignored", "applied"):
            _, rows = self.run_batch(clips, [self.art / "00.svg", self.art / "03.svg"], operation="columns", clips=clips)
            document = orvan_svg.Document.open(text)
            elements, paths = list(document), document.normalize(clips=clips)
            places = [elements.index(element) for element in paths.elements]
            with numpy.load(self.folder / clips / "00000000/columns.npz") as columns:
                self.assertEqual(columns["elements"].tolist(), [*places, 1])
                self.assertEqual(columns["inputs"].tolist(), [0] * len(places) + [1])
                for of in ("command", "point"):
                    self.assertEqual(columns[f"{of}_offsets"][-1], len(columns[f"{of}s"]))
                for name, column in paths.columns().items():
                    numpy.testing.assert_array_equal(columns[name][:len(column)], column, name)
            self.assertEqual((rows[0]["unclipped"], rows[0]["paths"]), (paths.unclipped_count, len(places)))

    def test_makes_thumbnails(self):
        self.run_batch("out", [self.art / "00.svg", self.art / "03.svg"], operation="thumbnails", size=16)
        with tarfile.open(self.folder / "out/00000000/files.tar") as archive:
            names = archive.getnames()
            self.assertEqual(names, ["0000000000.png", "0000000001.png"])
            self.assertEqual({(member.mode, member.mtime, member.uid, member.uname) for member in archive}, {(0o644, 0, 0, "")})
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
            run = subprocess.run([*PROGRAM, self.art, "-o", output, "--operation", operation,
                                  "--chunk-size", "8", "--grid", "100"], stdout=subprocess.PIPE, check=False)
            self.assertEqual((run.returncode, run.stdout), (1, b"94 done, 1 not, 0 there already\n"))
            self.assertEqual({name: (output / name).read_bytes() for name in files}, files)
            self.assertEqual(len(list(output.rglob("*"))), len(list((self.folder / operation).rglob("*"))))
        for row in rows:
            self.assertEqual(hashlib.sha256(pathlib.Path(row["input"]).read_bytes()).hexdigest(), row["sha256"])

    def test_reads_packed_drawings_plainly_and_writes_what_is_there_but_once(self):
        (self.art / "p.svgz").write_bytes(gzip.compress(b'<svg><g fill="none"/></svg>'))
        (self.art / "q.svgz").write_bytes(gzip.compress(b'<svg><g fill="odd"/></svg>' * 9)[:-9])
        files, rows = self.run_batch("out", [self.art / "p.svgz", self.art / "q.svgz"], complete=False, tolerant=False)
        self.assertEqual([row["outcome"] for row in rows], ["done", "failed"])
        _, (row,) = self.run_batch("found", [self.art / "00.svg"], style_sheet="path { fill: odd }", operation="columns")
        self.assertEqual((row["outcome"], row["finding_count"]), ("done", 1))
        # Two workers may have made the same shard: that of the first stays.
        inputs, count = batch._core.InputList([str(self.art / "00.svg")]).take(2)
        self.assertEqual(count, 1)
        batch._core.run_chunk(str(self.folder / "out/00000000"), 0, inputs, {}, batch._core.BatchOptions(),
                              batch._core.InputReader(), bytearray(8))
        self.assertEqual([path.name for path in (self.folder / "out").iterdir() if path.is_dir()], ["00000000"])
        self.assertEqual((self.folder / "out/00000000/rows.jsonl").read_bytes(), files["00000000/rows.jsonl"])

    def test_goes_on_where_it_was_interrupted(self):
        whole, _ = self.run_batch("out")
        for name in ("00000001", "00000003"):
            for path in (self.folder / "out" / name).iterdir():
                path.unlink()
            (self.folder / "out" / name).rename(self.folder / "out" / (name + ".part-1"))
        shown = []
        self.assertEqual(batch.run([self.art], self.folder / "out", chunk_size=8, memory=MEMORY, progress=shown.append), 2)
        self.assertEqual((len(shown), shown[-1]), (2, 4))
        self.assertEqual(self.run_batch("out")[0], whole)
        self.assertEqual(batch.run([self.art], self.folder / "out", chunk_size=8, memory=MEMORY), 0)
        # Another run, whatever it is that differs; and what makes no sense anywhere.
        for options in ({"operation": "check"}, {"complete": False}, {"tolerant": False}, {"style_sheet": "g {}"}, {"size": 9},
                        {"strokes": "outlined"}, {"stroke_tolerance": 1}, {"flatten": 1}, {"grid": 1}, {"precision": 1},
                        {"clips": "applied"}, {"deadline": 5.0}, {"memory": MEMORY + 1}, {"sources": [self.art / "00.svg"]}):
            with self.assertRaises(ValueError, msg=options):
                self.run_batch("out", **options)
        for options in ({"operation": "odd"}, {"size": 0}, {"size": 16385}, {"strokes": "odd"}, {"stroke_tolerance": 0},
                        {"flatten": -1}, {"grid": float("inf")}, {"precision": float("nan")}, {"clips": "kept"}, {"deadline": 0},
                        {"memory": -1}, {"style_sheet": "g {}", "complete": False}):
            with self.assertRaises(ValueError, msg=options):
                self.run_batch("none", **options)
        with self.assertRaises(ValueError):
            batch.run([self.art], self.folder / "none", chunk_size=0)

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

    def test_runs_the_chunk_of_a_killed_process_of_the_program_again(self):
        stuck, output = self.art / "inner/98.svg", self.folder / "killed"
        os.mkfifo(stuck)
        program = subprocess.Popen([*PROGRAM, self.art / "inner", "-o", output, "--jobs", "1"],
                                   stdout=subprocess.PIPE)
        children = pathlib.Path(f"/proc/{program.pid}/task/{program.pid}/children")
        ended = None
        for _ in range(2):
            while (worker := children.read_text().split()[:1]) in ([], ended) and program.poll() is None:
                time.sleep(0.01)
            writer = None
            while writer is None and program.poll() is None:  # Nobody can write before the worker waits for it.
                time.sleep(0.01)
                with contextlib.suppress(OSError):
                    writer = os.open(stuck, os.O_WRONLY | os.O_NONBLOCK)
            # Only when nobody writes any more the next worker begins, which would not wait otherwise.
            os.kill(program.pid, signal.SIGSTOP)
            os.kill(int(worker[0]), signal.SIGKILL)
            os.close(writer)
            os.kill(program.pid, signal.SIGCONT)
            ended = worker
        self.assertEqual(program.communicate()[0], b"19 done, 2 not, 0 there already\n")
        row = json.loads((output / "00000000/rows.jsonl").read_text().splitlines()[-1])
        self.assertEqual((row["outcome"], row["message"]), ("failed", "The worker ended at it: exit status -9."))

    def test_an_input_that_takes_too_long_costs_its_row(self):
        # A fifo without a writer: reading it waits for ever.
        os.mkfifo(self.art / "inner/98.svg")
        os.symlink("nowhere", self.art / "inner/99.svg")
        _, rows = self.run_batch("out", [self.art / "inner"], deadline=5.0)
        self.assertEqual({row["outcome"] for row in rows[:-2] if row["number"] != 4}, {"done"})
        self.assertEqual([(row["number"], row["outcome"], row["message"]) for row in rows[-2:]],
                         [(20, "failed", "It took more than 5 seconds."), (21, "unreadable", "No such file or directory")])

    def test_workers_that_end_cost_a_row_or_the_run(self):
        """Workers that are made to end, at an input or before any."""
        self.addCleanup(setattr, batch._worker, "__file__", batch._worker.__file__)
        batch._worker.__file__ = str(self.folder / "worker.py")
        script = """import json, os, sys
chunk = json.loads(sys.stdin.buffer.readline())
if {place} < 0 or str({place}) not in chunk["failures"]:
    with open(sys.argv[1], "r+b") as file:
        file.write(({place}).to_bytes(8, "little", signed=True))
    with open({log!r}, "a") as file:
        file.write("x")
    os._exit(3)
os.mkdir(chunk["folder"])
with open(chunk["folder"] + "/rows.jsonl", "w") as file:
    json.dump(chunk["failures"], file)
print("done", flush=True)
sys.stdin.buffer.read()"""
        for place, starts in ((-1, 3), (5, 2)):
            log = self.folder / f"log{place}"
            (self.folder / "worker.py").write_text(script.format(place=place, log=str(log)))
            if place < 0:
                with self.assertRaisesRegex(RuntimeError, "before their work: exit status 3"):
                    self.run_batch(f"out{place}", [self.art / "00.svg"])
            else:
                _, rows = self.run_batch(f"out{place}", [self.art / "00.svg"])
                self.assertEqual(rows, [{"5": "The worker ended at it: exit status 3."}])
            self.assertEqual(len(log.read_text()), starts)

    def test_the_command_line_says_what_is_wanted(self):
        taken = []
        self.addCleanup(setattr, batch, "run", batch.run)
        batch.run, run = lambda *arguments, **options: taken.append((arguments, options)), batch.run
        (self.folder / "sheet.css").write_text("g {}")
        self.assertEqual(batch.main(["a", "b", "-o", "out"]), 0)
        self.assertEqual(batch.main(
            ["c", "-o", "out", "--operation", "columns", "--plain", "--style-sheet", f"{self.folder}/sheet.css", "--size", "9",
             "--outline-strokes", "--flatten", "1", "--grid", "2", "--precision", "3", "--clips", "applied", "--deadline", "4",
             "--memory", "5", "--chunk-size", "6", "--jobs", "7", "--scheduler", "tcp://x"]), 0)
        usual = {name: parameter.default for name, parameter in inspect.signature(run).parameters.items()
                 if parameter.kind == parameter.KEYWORD_ONLY}
        self.assertEqual(taken[0], ((["a", "b"], "out"), {name: value for name, value in usual.items() if name != "stroke_tolerance"}))
        self.assertEqual(taken[1], ((["c"], "out"), {
            "operation": "columns", "complete": False, "tolerant": False, "style_sheet": "g {}", "size": 9, "strokes": "outlined",
            "flatten": 1, "grid": 2, "precision": 3, "clips": "applied", "deadline": 4, "memory": 5 << 20, "chunk_size": 6,
            "jobs": 7, "scheduler": "tcp://x", "progress": None}))
        batch.run = run
        said = io.StringIO()
        with contextlib.redirect_stderr(said):
            self.assertEqual(batch.main([str(self.folder / "missing"), "-o", str(self.folder / "out")]), 2)
        self.assertEqual(said.getvalue(), f"ERROR: There is no {self.folder}/missing.\n")


if __name__ == "__main__":
    unittest.main()
