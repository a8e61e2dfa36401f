# SPDX-License-Identifier: MIT
"""Works through many drawings, on one machine or on a Dask cluster, and goes on where it was interrupted.

    python3 -m orvan_svg.batch icons/ art.tar -o out --operation columns
    python3 -m orvan_svg.batch @list.txt -o out --operation thumbnails --size 64 --scheduler tcp://host:8786

The inputs are numbered in the order of the sources and worked through in chunks of a few thousand. Each chunk becomes a
folder of its own, `out/00000000`, which appears when it is complete:

- `rows.jsonl` has a row for each input: its number, name, size, hash, and what became of it: "done", "refused" with line
  and column, "failed" for what took too long or too much memory, "unreadable"; an archive that is damaged has a row of
  its own behind what can be read of it;
- `columns.npz` has the columns of "columns" and "boxes": those of `NormalizedPaths`, or `fill`, `stroke` and `visual` boxes
  with the `kinds` of their elements; `elements` says which place the element of each path or box has in document order
  (`list(document)`), `inputs` of which input it is, `picture_inputs`
  and `picture_sizes` how large the pictures are;
- `files.tar` has the files of "thumbnails" and "repair", by the numbers of their inputs; `repair` has those only that changed.

What cannot be read has a row all the same: a line of a list that names nothing, a folder that cannot be searched, an archive
that is a pipe, a file that goes away before its turn.

`out/manifest.json` says what was asked for. The same inputs and options give the same bytes, with any number of workers,
and those that `orvan-svg batch` gives.

A run that is started again with the same options does what is missing. An input that stops its worker, by time or by
memory, costs its row and not the run.
"""

import argparse
import concurrent.futures
import json
import os
import subprocess
import sys
import tempfile
import threading
import time
from collections.abc import Callable, Iterable

from . import _core, _modules, _worker

#: What can be made of each input.
OPERATIONS = _core.operations

_POLL = 0.02  # Seconds between looks at a worker.


class Worker:
    """A process that runs chunks, watched by this one."""

    def __init__(self, deadline, memory):
        self._deadline, self._memory = deadline, memory
        self._process = None
        self._place = tempfile.NamedTemporaryFile(prefix="orvan-svg-")
        self._place.write(_worker.PLACE.pack(-1))
        self._place.flush()

    def _start(self):
        # Without what the machine or the environment adds to Python: the worker needs none of it.
        command = [sys.executable, "-S", "-E", _worker.__file__, self._place.name, str(self._memory), _modules.FOLDER]
        self._process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def _get_place(self):
        return _worker.PLACE.unpack(os.pread(self._place.fileno(), _worker.PLACE.size, 0))[0]

    def run(self, chunk):
        """Runs a chunk to its end, whatever becomes of the worker. An input that stops its worker by time fails at
        once; one at which a worker dies otherwise is tried again first, since somebody else may have ended it."""
        deaths, failures = {}, {}
        while not os.path.isdir(chunk["folder"]):
            reason = self._try({**chunk, "failures": failures})
            if reason is None:
                continue
            place = self._get_place()
            self.close_process()
            if place < 0:
                deaths[-1] = deaths.get(-1, 0) + 1
                if deaths[-1] > 2:
                    raise RuntimeError(f"The workers end before their work: {reason}")
                continue
            deaths[place] = deaths.get(place, 0) + 1
            if reason == "time":
                failures[place] = f"It took more than {self._deadline:g} seconds."
            elif deaths[place] > 1:
                failures[place] = f"The worker ended at it: {reason}."

    def _try(self, chunk):
        """None when the chunk was done, otherwise what happened to the worker."""
        if self._process is None:
            self._start()
        place, since = None, time.monotonic()
        answer = []
        try:
            inputs = chunk["inputs"]
            head = json.dumps({**chunk, "inputs": None, "size": len(inputs)})
            self._process.stdin.write(head.encode() + b"\n" + inputs)
            self._process.stdin.flush()
        except OSError:
            return f"exit status {self._process.wait()}"
        reading = threading.Thread(target=lambda: answer.append(self._process.stdout.readline()), daemon=True)
        reading.start()
        while True:
            reading.join(_POLL)
            if not reading.is_alive():
                return None if answer and answer[0] == b"done\n" else f"exit status {self._process.wait()}"
            now, here = time.monotonic(), self._get_place()
            if here != place:
                place, since = here, now
            elif place >= 0 and now - since > self._deadline:
                self._process.kill()
                reading.join()
                return "time"

    def close_process(self):
        if self._process is not None:
            self._process.kill()
            self._process.wait()
            self._process.stdin.close()
            self._process.stdout.close()
            self._process = None

    def close(self):
        self.close_process()
        self._place.close()


def run_chunk_alone(chunk, deadline, memory):
    """Runs a chunk with a worker of its own: what a cluster does."""
    worker = Worker(deadline, memory)
    try:
        worker.run(chunk)
    finally:
        worker.close()
    return chunk["folder"]


def make_chunks(sources, folder, options):
    """The chunks of a run, in their order; `options` are those of `_core.BatchOptions`."""
    first, size = 0, options["chunk_size"]
    listed = _core.InputList(sources)
    while True:
        inputs, count = listed.take(size)
        if count == 0:
            return
        yield {"folder": _core.get_chunk_folder(folder, first, size), "first": first, "inputs": inputs,
               "options": options}
        first += count


def run(sources: Iterable[str | os.PathLike], folder: str | os.PathLike, *, operation: str = "report",
        complete: bool = True, tolerant: bool = True, style_sheet: str = "", size: int = 64, strokes: str = "kept",
        stroke_tolerance: float = 0.01, flatten: float = 0.0, grid: float = 0.0, precision: float = 0.0,
        clips: str = "ignored", deadline: float = 30.0, memory: int = 2 << 30, chunk_size: int = 2000, jobs: int | None = None,
        scheduler: str | None = None, progress: Callable[[int], object] | None = None) -> int:
    """Works through the sources and leaves the results in a folder. Returns the number of chunks that were run.

    A source is a folder (searched with all below), an archive (.zip and .tar, or .tar.gz, .tar.xz, .tar.zst), a drawing,
    a pattern, or "@FILE": a list of these. `operation` is one of `OPERATIONS`: "report", "check", "columns" (of plain paths, made with `strokes`,
    `stroke_tolerance`, `flatten`, `grid`, `precision` and `clips` as `Document.normalize` does), "boxes", "thumbnails" (of `size`
    pixels), "repair". `deadline` is in seconds and `memory` in bytes, both for each input; 0 bytes is no bound. `jobs` is
    the number of workers, one for each processor unless given; with `scheduler` the workers of that Dask cluster are used,
    which must see the same files. `progress(done)` is called after each chunk, with the number of those that are there.

    Raises FileNotFoundError for a source that is none, ValueError for options that make no sense and when the folder
    holds another run, RuntimeError and OSError when it cannot be written. What is found to be missing or cannot be read
    later has a row.
    """
    options = {"operation": operation, "complete": complete, "tolerant": tolerant, "style_sheet": style_sheet,
               "size": size, "strokes": strokes, "stroke_tolerance": stroke_tolerance, "flatten": flatten, "grid": grid,
               "precision": precision, "clips": clips, "deadline": deadline, "memory": memory, "chunk_size": chunk_size}
    checked = _core.BatchOptions(**options)
    sources = [_make_absolute(os.fspath(source)) for source in sources]
    folder = os.path.abspath(folder)
    _core.InputList(sources)  # Nothing is begun when a source is missing.
    _core.begin_run(folder, sources, checked)
    done = count = 0

    def missing():
        nonlocal done
        for chunk in make_chunks(sources, folder, options):
            if os.path.isdir(chunk["folder"]):
                done += 1
            else:
                yield chunk

    for _ in (_run_on_cluster(missing(), scheduler, deadline, memory) if scheduler
              else _run_here(missing(), jobs or os.cpu_count(), deadline, memory)):
        done += 1
        count += 1
        if progress:
            progress(done)
    return count


def _make_absolute(source):
    return "@" + os.path.abspath(source[1:]) if source.startswith("@") else os.path.abspath(source)


def _run_here(chunks, jobs, deadline, memory):
    workers = [Worker(deadline, memory) for _ in range(jobs)]
    free = list(workers)

    def run_one(chunk):
        worker = free.pop()
        try:
            worker.run(chunk)
        finally:
            free.append(worker)

    try:
        with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
            yield from _keep_going(chunks, 2 * jobs, lambda chunk: pool.submit(run_one, chunk),
                                   lambda futures: concurrent.futures.wait(
                                       futures, return_when=concurrent.futures.FIRST_COMPLETED).done)
    finally:
        for worker in workers:
            worker.close()


def _run_on_cluster(chunks, scheduler, deadline, memory):
    import distributed

    with distributed.Client(scheduler) as client:
        most = 4 * max(1, sum(client.nthreads().values()))
        yield from _keep_going(chunks, most,
                               lambda chunk: client.submit(run_chunk_alone, chunk, deadline=deadline, memory=memory,
                                                           pure=False, retries=3),
                               lambda futures: distributed.wait(futures, return_when="FIRST_COMPLETED").done)


def _keep_going(chunks, most, submit, wait):
    """Keeps so many chunks on their way and no more, because a run may have more inputs than memory has room for."""
    going = set()
    try:
        for chunk in chunks:
            going.add(submit(chunk))
            if len(going) >= most:
                done = wait(going)
                going -= done
                yield from (future.result() for future in done)
        while going:
            done = wait(going)
            going -= done
            yield from (future.result() for future in done)
    finally:
        for future in going:
            future.cancel()


def _parse_arguments(arguments):
    parser = argparse.ArgumentParser(prog="orvan_svg.batch", description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("sources", nargs="+", metavar="SOURCE", help="folder, file, glob, tar, zip, or @FILE: a list of these")
    parser.add_argument("-o", "--output", required=True, metavar="DIR", help="where the results go")
    parser.add_argument("--operation", choices=OPERATIONS, default="report")
    parser.add_argument("--plain", action="store_true", help="the plain and strict import")
    parser.add_argument("--style-sheet", metavar="FILE", help="CSS that comes after that of the files")
    parser.add_argument("--size", type=int, default=64, help="of thumbnails, in pixels (64)")
    parser.add_argument("--outline-strokes", action="store_true", help="columns: make areas of strokes")
    parser.add_argument("--flatten", type=float, default=0.0, metavar="D",
                        help="columns: straight lines only, no farther off than this")
    parser.add_argument("--grid", type=float, default=0.0, metavar="SIDE",
                        help="columns: fit each picture into a square of this side")
    parser.add_argument("--precision", type=float, default=0.0, metavar="STEP",
                        help="columns: round coordinates to multiples of this")
    parser.add_argument("--clips", choices=("ignored", "applied"), default="ignored",
                        help="columns: what becomes of clip paths (ignored)")
    parser.add_argument("--deadline", type=float, default=30.0, help="seconds for each input (30)")
    parser.add_argument("--memory", type=int, default=2048, help="MiB for each worker, 0 for no bound (2048)")
    parser.add_argument("--chunk-size", type=int, default=2000, help="inputs in one folder of results (2000)")
    parser.add_argument("--jobs", type=int, help="workers (one for each processor)")
    parser.add_argument("--scheduler", metavar="ADDRESS", help="of a Dask cluster, to run there")
    return parser.parse_args(arguments)


def main(arguments=None):
    """The command line. The result is the exit status: 0 when all chunks are there, 2 for wrong arguments."""
    wanted = _parse_arguments(arguments)
    style_sheet = ""
    is_terminal = sys.stderr.isatty()

    def show(done):
        print(f"\r{done * wanted.chunk_size:,} inputs", end="", file=sys.stderr, flush=True)

    try:
        if wanted.style_sheet:
            with open(wanted.style_sheet, encoding="utf-8") as file:
                style_sheet = file.read()
        run(wanted.sources, wanted.output, operation=wanted.operation, complete=not wanted.plain,
            tolerant=not wanted.plain, style_sheet=style_sheet, size=wanted.size,
            strokes="outlined" if wanted.outline_strokes else "kept", flatten=wanted.flatten, grid=wanted.grid,
            precision=wanted.precision, clips=wanted.clips, deadline=wanted.deadline,
            memory=wanted.memory << 20, chunk_size=wanted.chunk_size, jobs=wanted.jobs, scheduler=wanted.scheduler,
            progress=show if is_terminal else None)
    except (OSError, RuntimeError, ValueError) as error:
        print(f"ERROR: {error}", file=sys.stderr)
        return 2
    return 0


if __name__ == "__main__":
    sys.exit(main())
