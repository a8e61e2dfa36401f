# SPDX-License-Identifier: MIT
"""Makes the packages of what is built and uses what is in them: packages_test.py BUILD VERSION LIBDIR."""

import base64
import gzip
import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile

BUILD, VERSION, LIBRARIES = pathlib.Path(sys.argv[1]), sys.argv[2], sys.argv[3]
SOURCE = pathlib.Path(__file__).resolve().parents[2]
WORK = BUILD / "packages-test"
PYTHON_PACKAGE = "usr/lib/python3/dist-packages/orvan_svg"
LOOK = """
import orvan_svg
document = orvan_svg.Document.open(b"<svg xmlns='http://www.w3.org/2000/svg' width='2' height='3'><path d='M0 0H2V3z'/></svg>")
print(orvan_svg.__version__, document.render().shape, orvan_svg.__file__)
print(*sorted({line.split()[-1] for line in open("/proc/self/maps") if "/net.orvan." in line}))
"""


def run(*command, **options):
    result = subprocess.run(list(map(str, command)), capture_output=True, text=True, **options)
    if result.returncode:
        raise AssertionError(f"{' '.join(map(str, command))} ended with {result.returncode}:\n{result.stdout}{result.stderr}")
    return result.stdout


def get_names(folder, *patterns):
    return {str(file.relative_to(folder)) for pattern in patterns for file in folder.rglob(pattern) if file.is_file()}


def get_modules(folder):
    return sorted(file.name for file in folder.glob("*.so"))


class Packages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        shutil.rmtree(WORK, ignore_errors=True)
        WORK.mkdir()
        run("cpack", "--config", BUILD / "CPackConfig.cmake", "-B", WORK)
        cls.files = {name: next(WORK.glob(f"{name}_{VERSION}_*.deb"))
                     for name in ("orvan-svg", "liborvan-svg-dev", "python3-orvan-svg")}
        cls.folders = {name: WORK / name for name in cls.files}
        for name, file in cls.files.items():
            run("dpkg-deb", "-x", file, cls.folders[name])
        cls.root = WORK / "root"
        for folder in cls.folders.values():
            shutil.copytree(folder, cls.root, dirs_exist_ok=True)

    def get_field(self, name, field):
        return run("dpkg-deb", "-f", self.files[name], field).strip()

    def test_hold_what_was_built(self):
        program, development, python = self.folders.values()
        self.assertEqual(get_modules(program / "usr" / LIBRARIES / "orvan"), get_modules(BUILD / "lib/orvan"))
        headers = {f"orvan-svg/{name}" for folder in ("include", "renderer/include")
                   for name in get_names(SOURCE / folder, "*.h")} | get_names(SOURCE / "host/include", "*.h")
        self.assertEqual(get_names(development / "usr/include", "*"), headers)
        documents = development / "usr/share/doc/orvan-svg"
        self.assertLessEqual({name for name in get_names(SOURCE / "docs", "*.md") if not name.startswith("site/")},
                             get_names(documents / "docs", "*"))
        self.assertLessEqual(get_names(SOURCE / "examples", "*.cpp", "*.h", "*.txt", "*.py"),
                             get_names(documents / "examples", "*"))
        for file in ("liborvan_host.a", "pkgconfig/orvan-svg.pc", "cmake/orvan-svg/orvan-svg-config.cmake"):
            self.assertTrue((development / "usr" / LIBRARIES / file).is_file(), file)
        self.assertLessEqual(get_names(SOURCE / "python/orvan_svg", "*.py", "*.pyi", "py.typed"),
                             get_names(python / PYTHON_PACKAGE, "*"))
        for file in ("man/man1/orvan-svg.1.gz", "bash-completion/completions/orvan-svg", "doc/orvan-svg/README.md"):
            self.assertTrue((program / "usr/share" / file).is_file(), file)
        for name, folder in self.folders.items():
            self.assertIn("Permission is hereby granted", (folder / f"usr/share/doc/{name}/copyright").read_text())
            changes = gzip.open(folder / f"usr/share/doc/{name}/changelog.gz", "rt").read()
            self.assertTrue(changes.startswith(f"orvan-svg ({VERSION}) "), changes)
        names = [name for folder in self.folders.values() for name in get_names(folder, "*")]
        self.assertEqual(len(names), len(set(names)), "Two packages have the same file.")

    def test_say_what_they_need(self):
        for name in self.files:
            self.assertEqual(self.get_field(name, "Version"), VERSION)
        needs = self.get_field("orvan-svg", "Depends")
        for library in ("libc6", "libstdc++6", "zlib1g", "libarchive13", "libcairo2", "libpango-1.0-0", "libharfbuzz0b"):
            self.assertIn(f"{library} (>=", needs)
        licences = (SOURCE / "THIRD-PARTY.md").read_text()
        for need in needs.split(", "):
            self.assertRegex(licences, rf"(?<![\w.-]){re.escape(need.split()[0])}(?![\w.-])", "not among the licences")
        self.assertEqual(self.get_field("liborvan-svg-dev", "Depends"), f"orvan-svg (= {VERSION})")
        needs = self.get_field("python3-orvan-svg", "Depends")
        for package in (f"orvan-svg (= {VERSION})", "python3 (>= 3.", "python3-numpy"):
            self.assertIn(package, needs)

    def test_work_where_they_are_unpacked(self):
        program = self.root / "usr/bin/orvan-svg"
        self.assertEqual(run(program, "--version"), f"orvan-svg {VERSION}\n")
        self.assertIn("#State:EnabledActivatedHighlight", run(program, "tree", SOURCE / "examples/lamp.svg"))
        self.assertIn(" ", run(program, "boxes", SOURCE / "examples/lamp.svg", "#stand"))
        picture = WORK / "lamp.png"
        run(program, "render", SOURCE / "examples/lamp.svg", "-o", picture)
        self.assertEqual(picture.read_bytes()[:4], b"\x89PNG")
        environment = {**os.environ, "PYTHONPATH": str((self.root / PYTHON_PACKAGE).parent)}
        self.check_package(sys.executable, self.root, self.root / "usr" / LIBRARIES / "orvan", environment)
        environment = {**os.environ, "PKG_CONFIG_PATH": str(self.root / "usr" / LIBRARIES / "pkgconfig")}
        self.assertEqual(run("pkg-config", "--modversion", "orvan-svg", env=environment), f"{VERSION}\n")

    def check_package(self, python, package, modules, environment):
        with tempfile.TemporaryDirectory() as elsewhere:
            first, loaded = run(python, "-c", LOOK, env=environment, cwd=elsewhere).splitlines()
        version, shape, place = first.split(" ", 1)[0], first[first.index("("):first.index(")") + 1], first.split()[-1]
        self.assertEqual((version, shape), (VERSION, "(3, 2, 4)"))
        self.assertTrue(place.startswith(str(package)), place)
        self.assertGreaterEqual(len(loaded.split()), 2)
        for module in loaded.split():
            self.assertEqual(os.path.dirname(module), str(modules))

    @unittest.skipIf(os.geteuid() != 0, "dpkg gives files to root")
    def test_leave_nothing_behind(self):
        root = WORK / "dpkg"
        for folder in ("info", "updates", "triggers"):
            (root / "var/lib/dpkg" / folder).mkdir(parents=True)
        for file in ("status", "available"):
            (root / "var/lib/dpkg" / file).touch()
        dpkg = ("dpkg", f"--root={root}", "--force-depends", "--force-script-chrootless", f"--log={WORK}/log")
        run(*dpkg, "-i", *self.files.values())
        self.assertTrue((root / "usr/bin/orvan-svg").is_file())
        # What Python leaves when root imports the package.
        (root / PYTHON_PACKAGE / "__pycache__").mkdir()
        (root / PYTHON_PACKAGE / "__pycache__/batch.cpython-311.pyc").touch()
        run(*dpkg, "--purge", *self.files)
        self.assertEqual([name for name in get_names(root, "*") if not name.startswith("var/lib/dpkg/")], [])
        self.assertFalse((root / PYTHON_PACKAGE).exists())

    def test_make_a_wheel_that_installs(self):
        wheel = run(SOURCE / "scripts/make-wheel", BUILD, WORK / "wheel").strip()
        self.assertIn(f"orvan_svg-{VERSION}-cp3", wheel)
        self.assertTrue(wheel.endswith("-linux_x86_64.whl") or os.uname().machine != "x86_64", wheel)
        environment = WORK / "venv"
        with zipfile.ZipFile(wheel) as archive:
            record = archive.read(f"orvan_svg-{VERSION}.dist-info/RECORD").decode().splitlines()
            self.assertEqual(sorted(row.split(",")[0] for row in record), sorted(archive.namelist()))
            for name, digest, size in (row.split(",") for row in record[:-1]):
                found = base64.urlsafe_b64encode(hashlib.sha256(archive.read(name)).digest()).decode().rstrip("=")
                self.assertEqual((digest, int(size)), (f"sha256={found}", archive.getinfo(name).file_size), name)
        # The installer runs as Debian brings it, which spares the time to install it.
        run(sys.executable, "-m", "venv", "--without-pip", "--system-site-packages", environment)
        python = environment / "bin/python3"
        installer = next(pathlib.Path("/usr/share/python-wheels").glob("pip-*.whl"))
        pip = (python, installer / "pip", "--disable-pip-version-check")
        run(*pip, "install", "--no-index", "--no-deps", "--no-compile", wheel)
        package = next(environment.glob("lib/*/site-packages")) / "orvan_svg"
        clean = {name: value for name, value in os.environ.items() if name != "PYTHONPATH"}
        self.check_package(python, package, package / "modules", clean)
        run(*pip, "uninstall", "-y", "orvan-svg")
        self.assertFalse(package.exists())

    def complete(self, *words):
        script = (f"source {self.root}/usr/share/bash-completion/completions/orvan-svg; compopt() {{ echo \"[$*]\"; }}; "
                  "COMP_WORDS=(orvan-svg \"$@\"); COMP_CWORD=$#; _orvan_svg; printf '%s\\n' \"${COMPREPLY[@]}\"")
        return run("bash", "-uc", script, "bash", *words).split("\n")[:-1]

    def test_complete_the_command_line(self):
        plain = "[+o default]"  # No names of files.
        self.assertEqual(self.complete("re"), [plain, "registry", "render", "remove", "rename-id", "repair"])
        self.assertEqual(self.complete("render", "--he"), [plain, "--help", "--height"])
        self.assertEqual(self.complete("--modules", "dir", "boxes", "--kind", ""), [plain, "fill", "stroke", "visual"])
        self.assertEqual(self.complete("normalize", "--format", "=", "a"), [plain, "arrays"])
        self.assertEqual(self.complete("boxes", "--coordinates", "="), [plain, "view", "document", "parent", "element"])
        self.assertEqual(self.complete("batch", "--operation", "re"), [plain, "report", "repair"])
        self.assertEqual(self.complete("check", "--jobs", ""), [plain, ""])
        self.assertEqual(self.complete("check", "--modules", ""), ["[-o dirnames +o default]", ""])
        for words in (("tree", "a"), ("render", "-o", "a"), ("check", "--style-sheet", "=", "a")):
            self.assertEqual(self.complete(*words), [""], words)


unittest.main(argv=sys.argv[:1])
