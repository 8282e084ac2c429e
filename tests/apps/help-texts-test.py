#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-2.1-or-later
"""The man page and the completions know the commands and options that the tool's help tells.

    help-texts-test.py TOOL FOLDER
"""

import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

TOOL, FOLDER = (pathlib.Path(word).resolve() for word in sys.argv[1:3])
BASH = FOLDER / "completion/subtitles.bash"


def help_of(*command):
    return subprocess.run([TOOL, *command, "--help"], capture_output=True, text=True,
                          check=True).stdout


def commands():
    return re.findall(r"^  (\w+) ", help_of().partition("Subcommands:")[2], re.MULTILINE)


def options(*command):
    return set(re.findall(r"^  (?:-\w,)?(--[a-z]+)", help_of(*command), re.MULTILINE))


def all_options():
    return set().union(options(), *map(options, commands()))


def complete(*words):
    """What bash offers for the last word."""
    script = f"""source '{BASH}'
        COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
        _subtitles
        printf '%s\\n' "${{COMPREPLY[@]}}" """
    done = subprocess.run(["bash", "-c", script, "bash", *words], capture_output=True, text=True,
                          check=True, cwd=complete.folder)
    return {word for word in done.stdout.splitlines() if word}


def names_in(value):
    """The names of all objects in a JSON document."""
    if isinstance(value, dict):
        return set(value).union(*map(names_in, value.values()))
    return set().union(*map(names_in, value)) if isinstance(value, list) else set()


class HelpTexts(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        complete.folder = pathlib.Path(temporary.name)
        for name in "film.ogv", "film.SRT", "film one.ass", "notes.txt", "film.png":
            (complete.folder / name).touch()
        (complete.folder / "folder").mkdir()

    def test_the_help_is_understood(self):
        self.assertIn("convert", commands())
        self.assertIn("--output", options("preview"))

    def test_the_man_page_tells_every_command_and_option_and_no_other(self):
        page = (FOLDER / "subtitles.1").read_text(encoding="utf-8").replace("\\-", "-")
        self.assertEqual(re.findall(r"^\.B subtitles (\w+)", page, re.MULTILINE), commands())
        self.assertEqual(set(re.findall(r"--[a-z]+", page)), all_options())

    def test_the_man_page_tells_every_name_of_the_json_documents(self):
        folder = complete.folder
        (folder / "a.srt").write_text("1\n00:00:01,000 --> 00:00:02,000\nOne\n", encoding="utf-8")
        (folder / "b.srt").mkdir()
        page = (FOLDER / "subtitles.1").read_text(encoding="utf-8")
        section = page.partition("\n.SH JSON\n")[2].partition("\n.SH ")[0]
        for arguments in (["find", "."], ["show", "a.srt"], ["convert", "a.srt", "a.vtt"],
                          ["detect", "a.srt", "b.srt"]):
            done = subprocess.run([TOOL, *arguments, "--json"], capture_output=True, text=True,
                                  check=False, cwd=folder)
            names = names_in(json.loads(done.stdout))
            self.assertEqual(names - set(re.findall(r"\w+", section)), set(), arguments)

    @unittest.skipUnless(shutil.which("groff"), "needs groff")
    def test_the_man_page_has_no_faults(self):
        done = subprocess.run(["groff", "-man", "-Tutf8", "-ww", "-z", FOLDER / "subtitles.1"],
                              capture_output=True, text=True, check=True)
        self.assertEqual(done.stderr, "")

    def test_bash_offers_commands_and_their_options(self):
        self.assertEqual(complete("subtitles", ""), {*commands(), *options()})
        self.assertEqual(complete("subtitles", "co"), {"convert"})
        for command in commands():
            self.assertEqual(complete("subtitles", command, "-"), options(command), command)

    def test_bash_offers_files_that_a_command_reads(self):
        self.assertEqual(complete("subtitles", "show", ""), {"film.SRT", "film one.ass", "folder"})
        self.assertEqual(complete("subtitles", "preview", "--output", ""), {"film.png", "folder"})
        self.assertEqual(complete("subtitles", "detect", "no"), {"notes.txt"})

    def test_bash_offers_the_values_of_an_option(self):
        self.assertEqual(complete("subtitles", "convert", "--format", ""), {"webvtt", "ass"})
        self.assertEqual(complete("subtitles", "convert", "--encoding", "windows-125x"), set())
        self.assertEqual(complete("subtitles", "convert", "--shift", ""), set())

    def test_other_shells_know_the_same_options(self):
        zsh = (FOLDER / "completion/_subtitles").read_text(encoding="utf-8")
        fish = (FOLDER / "completion/subtitles.fish").read_text(encoding="utf-8")
        self.assertEqual(set(re.findall(r"--[a-z]+", zsh)), all_options())
        names = re.findall(r"^complete.* -l ([a-z]+)", fish, re.MULTILINE)
        self.assertEqual({f"--{name}" for name in names}, all_options())
        for command in commands():
            self.assertIn(f"'{command}:", zsh)
            self.assertIn(f" -a {command} ", fish)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
