#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-2.1-or-later
"""Runs the examples of the guides and compares what comes out with what they show.

    readme-test.py FOLDER-OF-THE-TOOL GUIDE.md...

An example is a fenced block "console": a line that begins with "$ " is a command, "> " goes on with
it, and the lines behind it are its output, both streams together. The examples of one guide run in
one copy of samples/film, beside an empty film.
"""

import difflib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BLOCK = re.compile(r"^```console\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def examples_of(text):
    """Pairs of a command and the output that stands behind it."""
    for block in BLOCK.findall(text):
        command, output = None, []
        for line in block.splitlines(keepends=True):
            if line.startswith("$ "):
                if command is not None:
                    yield command, "".join(output)
                command, output = line[2:], []
            elif line.startswith("> ") and command is not None and not output:
                command += line[2:]
            else:
                output.append(line)
        if command is not None:
            yield command, "".join(output)


def run(command, folder, tool):
    environment = dict(os.environ, PATH=f"{tool}:{os.environ['PATH']}", LC_ALL="C.UTF-8")
    return subprocess.run(["bash", "-c", command], cwd=folder, env=environment, text=True,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, check=False).stdout


def check(guide, tool):
    """The number of examples, and of those that show something else than what comes out."""
    count = faults = 0
    with tempfile.TemporaryDirectory() as temporary:
        folder = pathlib.Path(temporary, "film")
        shutil.copytree(ROOT / "samples/film", folder)
        (folder / "The Harbour.ogv").touch()
        for command, shown in examples_of(guide.read_text(encoding="utf-8")):
            count += 1
            output = run(command, folder, tool)
            if output != shown:
                faults += 1
                print(f"{guide}: $ {command}", end="")
                sys.stdout.writelines(difflib.unified_diff(
                    shown.splitlines(keepends=True), output.splitlines(keepends=True),
                    "shown", "comes out", n=1))
    return count, faults


def main():
    tool = pathlib.Path(sys.argv[1]).resolve()
    results = [check(pathlib.Path(name), tool) for name in sys.argv[2:]]
    count, faults = (sum(column) for column in zip(*results))
    print(f"{count} examples, {faults} of them wrong")
    return 1 if faults or not count else 0


if __name__ == "__main__":
    sys.exit(main())
