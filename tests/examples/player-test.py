#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-2.1-or-later
"""Plays a film with the example player on a virtual screen, presses its keys and looks at it.

    player-test.py PLAYER FOLDER-FOR-PICTURES

The subtitles are blocks of one colour for each language, so that counting pixels tells which one
is on the screen, and how large. The pictures are kept, to be looked at.
"""

import os
import pathlib
import queue
import subprocess
import sys
import tempfile
import threading
import time
import unittest

PLAYER, PICTURES = sys.argv[1], pathlib.Path(sys.argv[2])
WIDTH, HEIGHT = 480, 270
COLORS = {"English": (255, 0, 0), "Korean": (0, 255, 0)}
PATIENCE = 30  # seconds; for a machine that is busy


def cue(color):
    return f'1\n00:00:00,000 --> 00:09:00,000\n<font color="{color}">\u2588\u2588\u2588\u2588</font>\n'


def gst_launch(*description, **options):
    subprocess.run(["gst-launch-1.0", "--quiet", *description], check=True, **options)


def is_near(pixel, color):
    return all(abs(a - b) < 60 for a, b in zip(pixel, color))


class Screen:
    def __init__(self):
        read, write = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-noreset", "-displayfd", str(write), "-screen", "0", f"{WIDTH}x{HEIGHT}x24"],
            pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as answer:
            self.environment = dict(os.environ, DISPLAY=":" + answer.readline().strip())
        # Without a window manager, the keys go to the window below the pointer.
        self.tell("mousemove", "20", "20")

    def tell(self, *command):
        subprocess.run(["xdotool", *command], env=self.environment, check=True)

    def colors(self, name):
        """How many pixels have the colour of each language."""
        PICTURES.mkdir(parents=True, exist_ok=True)
        raw = PICTURES / "screen.rgb"
        gst_launch("ximagesrc", "num-buffers=1", "show-pointer=false", "!", "videoconvert", "!",
                   "video/x-raw,format=RGB", "!", "tee", "name=t", "!", "queue", "!", "pngenc",
                   "!", "filesink", f"location={PICTURES / name}.png", "t.", "!", "queue", "!",
                   "filesink", f"location={raw}", env=self.environment)
        data = raw.read_bytes()
        raw.unlink()
        counts = dict.fromkeys(COLORS, 0)
        for at in range(0, len(data) - 2, 3):
            pixel = data[at:at + 3]
            for language, color in COLORS.items():
                counts[language] += is_near(pixel, color)
        return counts

    def close(self):
        self.server.terminate()
        self.server.wait()


class PlayerTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        folder = pathlib.Path(temporary.name)
        self.film = folder / "film.ogv"
        (folder / "film.en.srt").write_text(cue("#ff0000"), encoding="utf-8")
        (folder / "film.ko.srt").write_text(cue("#00ff00"), encoding="utf-8")
        gst_launch("videotestsrc", "pattern=black", "num-buffers=900", "!",
                   f"video/x-raw,width={WIDTH},height={HEIGHT},framerate=10/1", "!", "theoraenc",
                   "speed-level=2", "!", "oggmux", "!", "filesink", f"location={self.film}")
        self.screen = Screen()
        self.addCleanup(self.screen.close)

    def play(self, film):
        self.player = subprocess.Popen([PLAYER, film], env=self.screen.environment, text=True,
                                       stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.addCleanup(self.player.wait)
        self.addCleanup(self.player.kill)
        self.lines = queue.Queue()
        threading.Thread(target=lambda: [self.lines.put(line) for line in self.player.stdout],
                         daemon=True).start()

    def press(self, key):
        self.screen.tell("key", key)

    def expect_line(self, text):
        self.assertEqual(self.lines.get(timeout=PATIENCE), text + "\n")

    def expect_colors(self, name, condition):
        """The screen follows a key soon, not at once."""
        end = time.monotonic() + PATIENCE
        counts = self.screen.colors(name)
        while not condition(counts):
            self.assertLess(time.monotonic(), end, f"{name}: {counts}")
            time.sleep(0.1)
            counts = self.screen.colors(name)
        return counts

    def test_keys_choose_tracks_and_sizes(self):
        self.play(self.film)
        self.expect_line("Subtitles: English")
        first = self.expect_colors("english", lambda n: n["English"] > 300 and not n["Korean"])
        self.press("t")
        self.expect_line("Subtitles: Korean")
        self.expect_colors("korean", lambda n: n["Korean"] > 300 and not n["English"])
        self.press("t")
        self.expect_line("Subtitles: none")
        self.expect_colors("none", lambda n: not n["Korean"] and not n["English"])
        self.press("t")
        self.expect_line("Subtitles: English")
        for _ in range(3):
            self.press("plus")
        larger = self.expect_colors("larger", lambda n: n["English"] > first["English"] * 5 / 4)
        for _ in range(5):
            self.press("minus")
        self.expect_colors("smaller", lambda n: 0 < n["English"] < first["English"])
        self.assertEqual(larger["Korean"], 0)
        self.press("space")
        self.press("Right")
        self.press("t")
        self.expect_line("Subtitles: Korean")
        self.expect_colors("paused", lambda n: n["Korean"] > 100 and not n["English"])
        self.press("q")
        self.assertEqual(self.player.wait(PATIENCE), 0)
        self.assertEqual(self.player.stderr.read(), "")

    def test_a_broken_film_is_told(self):
        self.film.write_text("no film", encoding="utf-8")
        self.play(self.film)
        self.assertEqual(self.player.wait(PATIENCE), 1)
        self.assertIn("player: ", self.player.stderr.read())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
