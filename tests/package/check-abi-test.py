#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-2.1-or-later
"""Runs tools/check-abi over a small library of our own: check-abi-test.py COMPILER."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
COMPILER = sys.argv[1]
HEADER = """
namespace films {
struct Film { int length; };
class Reel { public: int turns(Film film); };
int frames(Film& film);
}
"""
SOURCE = """
#include "film.h"
int films::frames(Film& film) { return film.length; }
int films::Reel::turns(Film film) { return film.length; }
"""


class CheckABI(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.root = pathlib.Path(temporary.name)
        self.sources = self.root / "code/libs/films"
        self.library = self.root / "build/code/libs/films/libfilms.so"
        self.sources.mkdir(parents=True)
        self.library.parent.mkdir(parents=True)
        self.notes("")
        self.build(HEADER, SOURCE)
        self.assertEqual(self.check("--update"), (0, ""))

    def notes(self, text):
        changes = f"# Changelog\n\n## Unreleased\n\n{text}\n## 0.1.0\n\n- `Reel::turns`, `cut`\n"
        (self.root / "CHANGELOG.md").write_text(changes, encoding="utf-8")

    def build(self, header, source, *options, soname="libfilms.so.0"):
        (self.sources / "film.h").write_text(header, encoding="utf-8")
        (self.sources / "film.cpp").write_text(source, encoding="utf-8")
        subprocess.run([COMPILER, "-shared", "-fPIC", "-g", f"-Wl,-soname,{soname}", *options,
                        self.sources / "film.cpp", "-o", self.library], check=True)

    def check(self, *options):
        done = subprocess.run([sys.executable, ROOT / "tools/check-abi", "--root", self.root,
                               *options, self.root / "build"],
                              capture_output=True, text=True, check=False)
        self.assertEqual(done.stderr, "")
        return done.returncode, done.stdout

    def expect_fault(self, text, *options):
        status, output = self.check(*options)
        self.assertEqual(status, 1)
        self.assertIn(text, output)

    def build_with_longer_films(self, **options):
        self.build(HEADER.replace("int length;", "long length;"), SOURCE, **options)

    def test_the_same_interface_passes_however_it_is_compiled(self):
        self.build(HEADER, SOURCE, "-O2")
        self.assertEqual(self.check(), (0, ""))

    def test_a_changed_record_breaks_programs(self):
        self.build_with_longer_films()
        self.expect_fault("breaks programs that were linked with libfilms.so.0")
        self.expect_fault("breaks programs", "--update")

    def test_a_function_that_is_gone_breaks_programs(self):
        self.build(HEADER, SOURCE.replace("int films::frames", "static int frames").replace(
            "(Film&", "(films::Film&"))
        self.expect_fault("breaks programs")

    def test_a_change_under_a_new_soname_needs_a_new_baseline_alone(self):
        self.build_with_longer_films(soname="libfilms.so.1")
        self.expect_fault("The SONAME is libfilms.so.1")
        self.assertEqual(self.check("--update"), (0, ""))
        self.assertEqual(self.check(), (0, ""))

    def test_before_the_first_release_of_a_soname_the_baseline_may_change(self):
        self.build_with_longer_films()
        self.assertEqual(self.check("--update", "--unreleased"), (0, ""))
        self.assertEqual(self.check(), (0, ""))

    def test_an_addition_has_to_be_told_under_unreleased(self):
        self.build(HEADER + "namespace films { void cut(Film film); }",
                   SOURCE + "void films::cut(Film) {}")
        self.expect_fault("Added, and not told")
        self.expect_fault("`cut`")
        self.notes("- Films can be `cut`.\n")
        self.assertEqual(self.check(), (0, ""))

    def test_a_new_operation_is_told_with_its_class(self):
        self.build(HEADER.replace("public:", "public: int cut(Film film);"),
                   SOURCE + "int films::Reel::cut(Film) { return 1; }")
        self.notes("- `Reel` can cut.\n")
        self.expect_fault("`Reel::cut`")
        self.notes("- `Reel::cut`.\n")
        self.assertEqual(self.check(), (0, ""))

    def test_a_new_class_is_told_once(self):
        self.build(HEADER + "namespace films { class Screen { public: void open(); void close(); };}",
                   SOURCE + "void films::Screen::open() {} void films::Screen::close() {}")
        self.expect_fault("`Screen::close`, `Screen::open`")
        self.notes("- `Screen`.\n")
        self.assertEqual(self.check(), (0, ""))

    def test_a_build_without_debug_information_is_a_fault(self):
        self.build(HEADER, SOURCE, "-g0")
        self.expect_fault("has no debug information")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
