#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-2.1-or-later
"""Runs tools/check-includes over small trees of our own."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent


def check(files):
    """The exit status and the output for a tree of these files, a dictionary of name and text."""
    with tempfile.TemporaryDirectory() as folder:
        for name, text in files.items():
            path = pathlib.Path(folder, "code", name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        done = subprocess.run([sys.executable, ROOT / "tools/check-includes", folder],
                              capture_output=True, text=True, check=False)
        return done.returncode, done.stdout


class CheckIncludes(unittest.TestCase):
    def expect_fault(self, name, line, fault):
        self.assertEqual(check({name: line}), (1, f"{'code/' + name}:1: {fault}\n"))

    def test_takes_its_own_layer_and_lower_ones(self):
        self.assertEqual(check({
            "libs/foundation/path.h": '#include "foundation/value.h"\n#include <string>\n',
            "libs/subtitles/subtitle-finder.cpp":
                '#include "subtitles/color.h"\n#include "foundation/path.h"\n#include <gst/gst.h>\n',
        }), (0, ""))

    def test_a_higher_layer_is_a_fault(self):
        self.expect_fault("libs/subtitles/color.h", '#  include "subtitles/subtitle-data.h"',
                          'subtitles/subtitle-data.h is of the layer "model", above "vocabulary"')

    def test_the_foundation_knows_no_subtitles(self):
        self.expect_fault("libs/foundation/xml-reader.cpp", '#include "subtitles/color.h"',
                          "subtitles/color.h: foundation may not know subtitles")

    def test_the_foundation_knows_no_gstreamer(self):
        self.expect_fault("libs/foundation/auto-ptr.h", "#include <gst/gst.h>",
                          "gst/gst.h: GStreamer stays out of the foundation")

    def test_a_parser_knows_no_path(self):
        self.expect_fault("libs/subtitles/ass-parser.cpp", '#include "foundation/path.h"',
                          "foundation/path.h: a parser takes a string: it opens no file and knows "
                          "no path and no charset")

    def test_third_party_headers_stay_in_sources(self):
        self.expect_fault("libs/foundation/xml-reader.h", "#include <libxml/xmlreader.h>",
                          "libxml/xmlreader.h: libxml2 stays in sources")
        self.assertEqual(
            check({"libs/foundation/xml-reader.cpp": "#include <libxml/xmlreader.h>"}), (0, ""))

    def test_our_headers_are_named_from_the_root_and_in_quotes(self):
        self.expect_fault("libs/subtitles/color.cpp", '#include "color.h"',
                          '"color.h": write the path from code/libs')
        self.expect_fault("libs/subtitles/color.cpp", "#include <subtitles/color.h>",
                          "<subtitles/color.h>: our own headers stand in quotes")

    def test_an_unknown_file_is_a_fault(self):
        status, output = check({"libs/subtitles/teletext.cpp": ""})
        self.assertEqual(status, 1)
        self.assertIn('"teletext" stands in no layer', output)
        self.assertIn("tools/check-includes", output)

    def test_the_tool_uses_public_headers_only(self):
        self.assertEqual(check({
            "libs/subtitles/CMakeLists.txt": "set(public_headers\n  color.h)\n",
            "libs/subtitles/color.h": "",
            "libs/subtitles/load-string.h": "",
            "apps/subtitles/main.cpp":
                '#include "subtitles/color.h"\n#include "subtitles/load-string.h"\n',
        }), (1, "code/apps/subtitles/main.cpp:2: subtitles/load-string.h is no public header\n"))


if __name__ == "__main__":
    unittest.main()
