# SPDX-License-Identifier: MIT
"""uses_library.py BUILD COMPILER: installs the support library from the build tree into a folder of
its own, and builds and runs a small program with it in each of the two ways that other programs
use: find_package and pkg-config."""
import os
import pathlib
import shlex
import subprocess
import sys
import tempfile
import unittest

BUILD, COMPILER = pathlib.Path(sys.argv[1]), sys.argv[2]
CONSUMER = pathlib.Path(__file__).parent / "consumer"
SAYS = "a range: 41 42 43\n"


def run(*command):
    """What the command printed. If it fails, so does the test, with that output."""
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    assert done.returncode == 0, done.stdout
    return done.stdout


class InstalledLibrary(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.work = pathlib.Path(folder.name)
        # The folder is moved after the installation: no file may depend on its place.
        run("cmake", "--install", BUILD, "--component", "slib", "--strip",
            "--prefix", cls.work / "elsewhere")
        cls.prefix = (cls.work / "elsewhere").rename(cls.work / "prefix")

    def test_cmake_finds_it(self):
        run("cmake", "-S", CONSUMER, "-B", self.work / "consumer", f"-DCMAKE_CXX_COMPILER={COMPILER}",
            f"-DCMAKE_PREFIX_PATH={self.prefix}")
        run("cmake", "--build", self.work / "consumer")
        self.assertEqual(run(self.work / "consumer/consumer"), SAYS)

    def test_pkg_config_finds_it(self):
        os.environ["PKG_CONFIG_PATH"] = str(next(self.prefix.glob("**/pkgconfig")))
        flags, libraries = (shlex.split(run("pkg-config", "--static", kind, "nosig-slib"))
                            for kind in ("--cflags", "--libs"))
        # Link the whole archive, so that no library that any part of it needs can be left unnamed.
        run(COMPILER, "-std=c++20", *flags, CONSUMER / "main.cpp", "-o", self.work / "program",
            "-Wl,--whole-archive", *libraries, "-Wl,--no-whole-archive")
        self.assertEqual(run(self.work / "program"), SAYS)

    def test_no_header_is_missing(self):
        root = self.prefix / "include/nosig-slib"
        headers = self.work / "headers.cpp"
        headers.write_text("".join(f'#include "{header.relative_to(root)}"\n'
                                   for header in sorted(root.glob("**/*.h"))))
        run(COMPILER, "-std=c++20", "-fsyntax-only", "-I", root, headers)

    def test_no_file_names_the_build_folders(self):
        for path in self.prefix.glob("**/*"):
            with self.subTest(path.relative_to(self.prefix)):
                text = path.read_bytes() if path.is_file() else b""
                for place in (BUILD, pathlib.Path(__file__).parents[2], self.work):
                    self.assertNotIn(os.fsencode(place), text)


unittest.main(argv=sys.argv[:1])
