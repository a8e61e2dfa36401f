# SPDX-License-Identifier: MIT
"""A process that works through chunks: reads one a line from standard input, answers with a line when it is written.

It runs in a process of its own because an input may take too long or too much memory: whoever started it watches the
number of the input at hand in a shared file, and ends the process."""

import json
import mmap
import resource
import struct
import sys

from . import _core

#: What the shared file holds: the number of the input at hand, -1 between chunks.
PLACE = struct.Struct("=q")


def main():
    with open(sys.argv[1], "r+b") as file:
        place = mmap.mmap(file.fileno(), PLACE.size)
    memory = int(sys.argv[2])
    if memory > 0:
        resource.setrlimit(resource.RLIMIT_AS, (memory, memory))
    reader = _core.InputReader()
    for line in sys.stdin:
        chunk = json.loads(line)
        failures = {int(number): message for number, message in chunk["failures"].items()}
        _core.run_chunk(chunk["folder"], chunk["first"], chunk["inputs"], failures,
                        _core.BatchOptions(**chunk["options"]), reader, place)
        print("done", flush=True)


if __name__ == "__main__":
    main()
