# SPDX-License-Identifier: MIT
"""What the scripts share that hold the program against a browser: which files, and having Chromium read them."""
import http.server
import json
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import threading

#: Lets a document read nothing but itself.
ALONE = ("Content-Security-Policy", "default-src 'none'; style-src 'unsafe-inline'; img-src data:")


def list_files(source, largest, suffixes=(".svg", ".svgz")):
    """The files of a source that are not larger than this: those of an installed package, of a folder, or the one file."""
    if os.path.isfile(source):
        return [source]
    if os.path.isdir(source):
        files = [str(path) for path in sorted(pathlib.Path(source).rglob("*.svg*"))]
    else:
        listing = subprocess.run(["dpkg-query", "-L", source], capture_output=True, text=True, check=True).stdout
        files = [line for line in listing.splitlines() if not os.path.islink(line)]
    return [name for name in files if name.endswith(suffixes) and 0 < os.path.getsize(name) <= largest]


def take_sample(files, count, seed=1):
    """As many of the files, always the same; all of them without a count."""
    return sorted(random.Random(seed).sample(files, count)) if count and len(files) > count else files


class Handler(http.server.BaseHTTPRequestHandler):
    """Answers the browser: the page, files by the rest of their addresses, and what the page reports."""

    protocol_version = "HTTP/1.1"

    def log_message(self, *_):
        pass

    def answer(self, body, kind="text/plain", headers=()):
        self.send_response(200)
        for name, value in [("Content-Type", kind), ("Content-Length", str(len(body))), *headers]:
            self.send_header(name, value)
        self.end_headers()
        self.wfile.write(body)

    def do_GET(self):
        file = self.server.find_file(self.path)
        if file is None:
            self.answer(self.server.page.encode() if self.path == "/" else b"", "text/html")
            return
        data = pathlib.Path(file).read_bytes()
        packed = [("Content-Encoding", "gzip")] if data[:2] == b"\x1f\x8b" else []
        self.answer(data, "image/svg+xml", [*self.server.headers, *packed])

    def do_POST(self):
        body = self.rfile.read(int(self.headers["Content-Length"]))
        if self.path == "/done":
            self.server.done.set()
        else:
            self.server.results[int(self.path.rsplit("/", 1)[1])] = json.loads(body)
        self.answer(b"")


def run_page(page, find_file, headers=(), options=()):
    """Has Chromium run a page until it posts to /done.

    `find_file` tells the file of an address, None for others. The result is what the page has posted to /result/NUMBER
    as JSON, by the numbers. Ends the program when the browser ends before."""
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    server.page, server.find_file, server.headers = page, find_file, headers
    server.results, server.done = {}, threading.Event()
    threading.Thread(target=server.serve_forever, daemon=True).start()
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as profile:
        browser = subprocess.Popen(
            ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-sync", *options,
             f"--user-data-dir={profile}", "--remote-debugging-port=0", f"http://127.0.0.1:{server.server_port}/"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        while not server.done.wait(1.0) and browser.poll() is None:
            pass
        browser.terminate()
        browser.wait()
    server.shutdown()
    if not server.done.is_set():
        sys.exit("chromium ended before it was through")
    return server.results
