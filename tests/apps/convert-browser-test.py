#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-2.1-or-later
"""A browser plays what `subtitles convert` writes as the track of a video.

    convert-browser-test.py TOOL BROWSER SAMPLES

Every cue of the track has the times and the text that the tool tells of the file it read.
"""

import functools
import html
import http.server
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import threading
import unittest

TOOL, BROWSER, SAMPLES = sys.argv[1:4]

PAGE = """<!doctype html><meta charset="utf-8"><body><video><track src="cues.vtt"></video><script>
const element = document.querySelector("track");
function tell(result) {
    const place = document.createElement("pre");
    place.id = "result";
    place.textContent = JSON.stringify(result);
    document.body.append(place);
}
element.onerror = () => tell("error");
element.onload = () => tell(Array.from(element.track.cues).map(cue => ({
    start: cue.startTime, end: cue.endTime, text: cue.getCueAsHTML().textContent,
    bold: Array.from(cue.getCueAsHTML().querySelectorAll("b")).map(node => node.textContent),
    italic: Array.from(cue.getCueAsHTML().querySelectorAll("i")).map(node => node.textContent),
})));
element.track.mode = "showing";
</script>"""


class QuietServer(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *_):
        pass


def cues_in_browser(folder):
    """The cues of cues.vtt in the folder, as the browser has them."""
    pathlib.Path(folder, "page.html").write_text(PAGE, encoding="utf-8")
    handler = functools.partial(QuietServer, directory=folder)
    with http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler) as server:
        threading.Thread(target=server.serve_forever, daemon=True).start()
        done = subprocess.run(
            [BROWSER, "--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
             f"--user-data-dir={folder}/profile", "--virtual-time-budget=20000", "--dump-dom",
             f"http://127.0.0.1:{server.server_port}/page.html"],
            capture_output=True, text=True, timeout=240, check=True)
        server.shutdown()
    result = re.search(r'<pre id="result">(.*)</pre>', done.stdout, re.DOTALL)
    assert result, done.stdout + done.stderr
    return json.loads(html.unescape(result.group(1)))


def run_tool(*arguments):
    return subprocess.run([TOOL, *arguments], capture_output=True, text=True, check=True).stdout


def without_marks(text):
    """The exporter puts a left-to-right mark in front of every line of every run: it is meant."""
    return text.replace("\u200e", "")


class Browser(unittest.TestCase):
    def converted(self, source, *options):
        """The cues of a converted file in the browser."""
        with tempfile.TemporaryDirectory() as folder:
            run_tool("convert", str(source), f"{folder}/cues.vtt", *options)
            return cues_in_browser(folder)

    def expect_same(self, source, *options):
        told = json.loads(run_tool("show", "--json", str(source), *options))["cues"]
        cues = self.converted(source, *options)
        self.assertEqual(
            [(cue["start"], cue["end"], without_marks(cue["text"])) for cue in cues],
            [(round(cue["start"] / 1e9, 3), round(cue["end"] / 1e9, 3), cue["text"])
             for cue in told])
        self.assertGreater(len(cues), 0)

    def test_the_samples_play(self):
        self.expect_same(pathlib.Path(SAMPLES, "film", "The Harbour.en.sdh.srt"))
        self.expect_same(pathlib.Path(SAMPLES, "film", "The Harbour.ar.srt"))
        self.expect_same(pathlib.Path(SAMPLES, "film", "The Harbour.it.ass"))
        self.expect_same(pathlib.Path(SAMPLES, "film", "The Harbour.pl.sub"))
        self.expect_same(pathlib.Path(SAMPLES, "film", "The Harbour.smi"), "--language", "ko")

    def test_odd_text_plays(self):
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder, "odd.srt")
            source.write_bytes(
                "1\n00:00:01,000 --> 00:00:02,500\n<b>Bold</b> & a --> b\n\n"
                "2\n00:00:03,000 --> 00:00:04,004\na\r\rb\n-->\n\n"
                "3\n01:00:00,000 --> 100:00:00,001\n\u00a0x > y\n\n".encode())
            self.expect_same(source)
            cues = self.converted(source)
            self.assertEqual(cues[0]["bold"], ["\u200eBold"])
            self.assertEqual(cues[1]["text"], "\u200ea\n\u200e\n\u200eb\n\u200e-->")

    def test_tags_across_each_other_show_more_than_was_marked(self):
        """The exporter closes what ends and does not open again what goes on: it is meant."""
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder, "tags.srt")
            source.write_text(
                "1\n00:00:01,000 --> 00:00:02,500\n<b>a<i>b</b>c</i>d\n\n"
                "2\n00:00:03,000 --> 00:00:04,000\nx<u>y\n\n", encoding="utf-8")
            self.expect_same(source)
            cues = [{key: without_marks("|".join(value)) if key in ("bold", "italic") else value
                     for key, value in cue.items()} for cue in self.converted(source)]
            # The browser does not let the bold end inside the italic, so it lasts to the end.
            self.assertEqual(cues[0]["bold"], "abcd")
            self.assertEqual(cues[0]["italic"], "bc")
            self.assertEqual(cues[1]["text"], "\u200ex\u200ey")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
