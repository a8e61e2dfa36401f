# SPDX-License-Identifier: MIT
"""A process that works through chunks: reads each from standard input, a line of JSON with the inputs as bytes behind it,
and answers with a line when it is written.

It runs in a process of its own because an input may take too long or too much memory: whoever started it watches the
number of the input at hand in a shared file, and ends the process. It is run as a file and works with the compiled half of
the package alone, because importing the package would take several times as long as starting Python."""

import json
import mmap
import resource
import struct
import sys

#: What the shared file holds: the number of the input at hand, -1 between chunks.
PLACE = struct.Struct("=q")


def main():
    import _core  # It stands beside this file.

    _core.load_modules(sys.argv[3])
    with open(sys.argv[1], "r+b") as file:
        place = mmap.mmap(file.fileno(), PLACE.size)
    memory = int(sys.argv[2])
    if memory > 0:
        resource.setrlimit(resource.RLIMIT_AS, (memory, memory))
    reader = _core.InputReader()
    for line in sys.stdin.buffer:
        chunk = json.loads(line)
        inputs = sys.stdin.buffer.read(chunk["size"])
        failures = {int(number): message for number, message in chunk["failures"].items()}
        _core.run_chunk(chunk["folder"], chunk["first"], inputs, failures,
                        _core.BatchOptions(**chunk["options"]), reader, place)
        print("done", flush=True)


if __name__ == "__main__":
    main()
