#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-2.1-or-later
"""Runs tools/check-exports over a library of our own: check-exports-test.py COMPILER."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
COMPILER = sys.argv[1]
SOURCE = """
struct Film { Film(int length); int length; };
Film::Film(int given) : length(given) {}
int frames(Film film) { return film.length; }
__attribute__((visibility("hidden"))) int hidden() { return 0; }
"""


class CheckExports(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.list = pathlib.Path(temporary.name, "names")
        self.library = pathlib.Path(temporary.name, "libfilm.so")
        subprocess.run([COMPILER, "-shared", "-fPIC", "-nostdlib", "-x", "c++", "-", "-o",
                        self.library], input=SOURCE, text=True, check=True)

    def check(self, *options):
        done = subprocess.run([sys.executable, ROOT / "tools/check-exports", *options, self.list,
                               self.library], capture_output=True, text=True, check=False)
        return done.returncode, done.stdout

    def test_agrees_with_a_list_in_any_order(self):
        self.list.write_text("# of films\n\nframes(Film)\nFilm::Film(int)\n")
        self.assertEqual(self.check(), (0, ""))

    def test_a_name_that_is_not_given_out_is_missing(self):
        self.list.write_text("frames(Film)\nFilm::Film(int)\nhidden()\n")
        status, output = self.check()
        self.assertEqual(status, 1)
        self.assertIn("is not given out: hidden()", output)

    def test_a_name_that_is_not_listed_is_too_much(self):
        self.list.write_text("frames(Film)\n")
        status, output = self.check()
        self.assertEqual(status, 1)
        self.assertIn("is given out, but not listed: Film::Film(int)", output)

    def test_updating_keeps_the_comments(self):
        self.list.write_text("# of films\nhidden()\n")
        self.assertEqual(self.check("--update"), (0, ""))
        self.assertEqual(self.list.read_text(), "# of films\nFilm::Film(int)\nframes(Film)\n")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
