# SPDX-License-Identifier: LGPL-2.1-or-later
"""The pieces of a guide: its fenced blocks."""

import re

FENCE = re.compile(r"^```(\w+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def blocks(guide, language):
    """The texts of the blocks of a language, in the order of the guide."""
    found = FENCE.findall(guide.read_text(encoding="utf-8"))
    return [text for name, text in found if name == language]


def examples(block):
    """Pairs of a command and the output that a block "console" shows for it."""
    for example in block.split("$ ")[1:]:
        command, _, output = example.partition("\n")
        yield command, output
