#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-2.1-or-later
"""Runs the examples of the guides and compares what comes out with what they show.

    readme-test.py [--update] FOLDER-OF-THE-TOOL GUIDE.md...

An example is a fenced block "console": a line that begins with "$ " is a command, "> " goes on with
it, and the lines behind it are its output, both streams together. The examples of one guide run in
one copy of samples/film, beside an empty film. With --update first, the guides are rewritten to
show what comes out.

    readme-test.py --program GUIDE.md FILE

Writes the first C++ program of a guide to a file, where it is not there yet.
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
PROGRAM = re.compile(r"^```cpp\n(.*?)^```$", re.MULTILINE | re.DOTALL)
BLOCK = re.compile(r"^```console\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def examples_of(block):
    """Pairs of a command, as it stands there, and the output behind it."""
    lines = block.splitlines(keepends=True)
    starts = [number for number, line in enumerate(lines) if line.startswith("$ ")]
    for start, end in zip(starts, starts[1:] + [len(lines)]):
        output = start + 1
        while output < end and lines[output].startswith("> "):
            output += 1
        yield "".join(lines[start:output]), "".join(lines[output:end])


def run(shown_command, folder, tool):
    command = "".join(line[2:] for line in shown_command.splitlines(keepends=True))
    environment = dict(os.environ, PATH=f"{tool}:{os.environ['PATH']}", LC_ALL="C.UTF-8")
    return subprocess.run(["bash", "-c", command], cwd=folder, env=environment, text=True,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, check=False).stdout


def results_of(text, tool):
    """For each example the block it stands in, its command, what is shown and what comes out."""
    with tempfile.TemporaryDirectory() as temporary:
        folder = pathlib.Path(temporary, "film")
        shutil.copytree(ROOT / "samples/film", folder)
        (folder / "The Harbour.ogv").touch()
        for block in BLOCK.findall(text):
            for command, shown in examples_of(block):
                yield block, command, shown, run(command, folder, tool)


def update(guide, tool):
    text = guide.read_text(encoding="utf-8")
    blocks = {}
    for block, command, _, output in results_of(text, tool):
        blocks[block] = blocks.get(block, "") + command + output
    for block, new in blocks.items():
        text = text.replace(f"```console\n{block}```", f"```console\n{new}```")
    guide.write_text(text, encoding="utf-8")


def check(guide, tool):
    """The number of examples, and of those that show something else than what comes out."""
    count = faults = 0
    for _, command, shown, output in results_of(guide.read_text(encoding="utf-8"), tool):
        count += 1
        if output != shown:
            faults += 1
            print(f"{guide}: {command}", end="")
            sys.stdout.writelines(difflib.unified_diff(
                shown.splitlines(keepends=True), output.splitlines(keepends=True),
                "shown", "comes out", n=1))
    return count, faults


def write_program(guide, file):
    program = PROGRAM.search(guide.read_text(encoding="utf-8")).group(1)
    if not file.exists() or file.read_text(encoding="utf-8") != program:
        file.write_text(program, encoding="utf-8")


def main():
    arguments = sys.argv[1:]
    if arguments[0] == "--program":
        write_program(*map(pathlib.Path, arguments[1:]))
        return 0
    updating = arguments[0] == "--update"
    tool, *guides = [pathlib.Path(name).resolve() for name in arguments[updating:]]
    if updating:
        for guide in guides:
            update(guide, tool)
        return 0
    results = [check(guide, tool) for guide in guides]
    count, faults = (sum(column) for column in zip(*results))
    print(f"{count} examples, {faults} of them wrong")
    return 1 if faults or not count else 0


if __name__ == "__main__":
    sys.exit(main())
