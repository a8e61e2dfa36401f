# SPDX-License-Identifier: MIT
"""A process that works through chunks: reads one a line from standard input, answers with a line when it is written.

It runs in a process of its own because an input may take too long or too much memory: whoever started it watches the
number of the input at hand in a shared file, and ends the process."""

import json
import mmap
import resource
import struct
import sys

from . import _operations, _sources

#: What the shared file holds: the number of the input at hand, -1 between chunks.
PLACE = struct.Struct("<q")


def run_chunk(chunk, reader, progress):
    options = chunk["options"]
    operation = _operations.OPERATIONS[options["operation"]]
    failures = {int(number): message for number, message in chunk["failures"].items()}
    shard = _operations.Shard(chunk["folder"])
    for number, (name, path, member) in enumerate(chunk["inputs"], chunk["first"]):
        PLACE.pack_into(progress, 0, number)
        shard.add_row(_run_input(number, name, path, member, failures, operation, shard, options, reader))
    PLACE.pack_into(progress, 0, -1)
    shard.write()


def _run_input(number, name, path, member, failures, operation, shard, options, reader):
    if number in failures:  # It may have been the reading.
        return {"number": number, "input": name, "outcome": "failed", "message": failures[number]}
    try:
        content = reader.read(path, member)
    except Exception as error:  # Archives raise errors of their own kinds.
        return {"number": number, "input": name, "outcome": "unreadable", "message": str(error)}
    row = _operations.begin_row(number, name, content)
    try:
        # Beside an archive there is nothing that its members could refer to.
        document, found = _operations.load(row, content, "" if member else path, options)
        if document is not None:
            operation(document, found, row, shard, options)
    except MemoryError:
        row.update(outcome="failed", message="It needs more memory than is allowed.")
    except (ValueError, OSError, RuntimeError) as error:
        row.update(outcome="failed", message=str(error))
    return row


def main():
    with open(sys.argv[1], "r+b") as file:
        progress = mmap.mmap(file.fileno(), PLACE.size)
    memory = int(sys.argv[2])
    if memory > 0:
        resource.setrlimit(resource.RLIMIT_AS, (memory, memory))
    reader = _sources.Reader()
    for line in sys.stdin:
        run_chunk(json.loads(line), reader, progress)
        print("done", flush=True)


if __name__ == "__main__":
    main()
