#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-2.1-or-later
"""Installs a build into an empty prefix and uses it there as a player's developer does.

    install-test.py BUILD COMPILER SOURCES

The prefix is moved once, so that nothing in it may know where it was. The program is the guide's,
as it stands in docs/player.md, and it is built outside the tree.
"""

import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import guide

BUILD, COMPILER, SOURCES = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
GENERATOR = sys.argv[4]
LISTS = (SOURCES / "CMakeLists.txt").read_text(encoding="utf-8")
VERSION = re.search(r"project\(subtitles VERSION ([\d.]+)", LISTS).group(1)
SOVERSION = re.search(r"set\(SUBTITLES_SOVERSION (\d+)\)", LISTS).group(1)
GUIDE = SOURCES / "docs/player.md"


def run(*command, **options):
    """The output of a command that has to succeed."""
    done = subprocess.run([str(word) for word in command], text=True, check=False,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **options)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))}\n{done.stdout}")
    return done.stdout


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        cls.folder = pathlib.Path(temporary.name)
        cls.prefix = cls.folder / "prefix"
        run("cmake", "--install", BUILD, "--prefix", cls.folder / "moved-from-here")
        (cls.folder / "moved-from-here").rename(cls.prefix)
        cls.libraries = next(cls.prefix.glob("**/libsubtitles.so")).parent
        cls.pkg_config_path = {**os.environ, "PKG_CONFIG_PATH": str(cls.libraries / "pkgconfig")}

    def search_path(self, file):
        """The environment for a file that a distribution has left without a search path."""
        if "RUNPATH" in run("readelf", "-d", file):
            return dict(os.environ)
        return {**os.environ, "LD_LIBRARY_PATH": str(self.libraries)}

    def pkg_config(self, *words):
        return run("pkg-config", *words, env=self.pkg_config_path).split()

    def compile_header(self, header):
        flags = self.pkg_config("--cflags", header.parent.name)
        run(COMPILER, "-std=c++17", "-fsyntax-only", "-Wall", "-Wextra", "-pedantic", "-Werror",
            "-x", "c++", "-", *flags, input=f"#include <{header.parent.name}/{header.name}>\n")

    def expect_player_works(self, player, environment):
        film = player.parent / "film"
        shutil.copytree(SOURCES / "samples/film", film)
        commands = [pair for block in guide.blocks(GUIDE, "console")
                    for pair in guide.examples(block)]
        self.assertTrue(commands)
        for command, output in commands:
            self.assertTrue(command.startswith("player "))
            command = command.replace("player", str(player), 1)
            self.assertEqual(run("sh", "-c", command, cwd=film, env=environment), output)

    def test_every_public_header_compiles_alone(self):
        headers = sorted((self.prefix / "include").glob("*/*.h"))
        self.assertGreater(len(headers), 40)
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            list(pool.map(self.compile_header, headers))

    def test_one_header_includes_all_others(self):
        headers = {file.name for file in (self.prefix / "include/subtitles").iterdir()}
        everything = (self.prefix / "include/subtitles/subtitles.h").read_text(encoding="utf-8")
        self.assertEqual(headers - {"subtitles.h", "export.h"},
                         set(re.findall(r'^#include "subtitles/(.*)"$', everything, re.MULTILINE)))

    def test_cmake_finds_it_and_builds_a_player(self):
        source = self.folder / "with-cmake"
        source.mkdir()
        program, = guide.blocks(GUIDE, "cpp")[:1]
        lists, = guide.blocks(GUIDE, "cmake")
        (source / "player.cpp").write_text(program, encoding="utf-8")
        (source / "CMakeLists.txt").write_text(lists, encoding="utf-8")
        # The build program of this build is there; the one that CMake takes by itself may not be.
        run("cmake", "-S", source, "-B", source / "build", "-G", GENERATOR,
            f"-DCMAKE_PREFIX_PATH={self.prefix}", f"-DCMAKE_CXX_COMPILER={COMPILER}",
            "-DCMAKE_CXX_COMPILER_LAUNCHER=")
        run("cmake", "--build", source / "build")
        self.expect_player_works(source / "build/player", None)

    def test_a_bare_compiler_call_builds_a_player(self):
        source = self.folder / "with-pkg-config"
        source.mkdir()
        # The guide's other pieces are compiled behind its program.
        program = "\n".join(guide.blocks(GUIDE, "cpp"))
        (source / "player.cpp").write_text(program, encoding="utf-8")
        command, = guide.blocks(GUIDE, "sh")
        run("sh", "-c", re.sub("^c\\+\\+", COMPILER, command), cwd=source,
            env=self.pkg_config_path)
        self.expect_player_works(source / "player",
                                 {**os.environ, "LD_LIBRARY_PATH": str(self.libraries)})

    def test_libraries_have_a_version_and_a_name_for_the_linker(self):
        for name in "libsubtitles", "libfoundation":
            library = self.libraries / f"{name}.so.{VERSION}"
            self.assertTrue(library.is_file() and not library.is_symlink())
            soname = f"{name}.so.{SOVERSION}"
            self.assertIn(f"soname: [{soname}]", run("readelf", "-d", library))
            for link in soname, f"{name}.so":
                self.assertEqual((self.libraries / link).resolve(), library)

    def test_pkg_config_asks_for_what_the_headers_need_and_no_more(self):
        self.assertEqual(self.pkg_config("--modversion", "subtitles", "foundation"),
                         [VERSION, VERSION])
        self.assertEqual(self.pkg_config("--print-requires", "subtitles"),
                         f"foundation = {VERSION} gstreamer-1.0 >= 1.20".split())
        self.assertEqual(self.pkg_config("--print-requires", "foundation"), ["fmt"])
        self.assertEqual(
            self.pkg_config("--print-requires-private", "subtitles", "foundation"), [])

    def test_the_prefix_knows_neither_sources_nor_build(self):
        for file in self.prefix.rglob("*"):
            if file.suffix in (".cmake", ".pc", ".h"):
                text = file.read_text(encoding="utf-8")
                for place in str(SOURCES), BUILD, "moved-from-here":
                    self.assertNotIn(place, text, file)

    def test_the_tool_finds_the_libraries_beside_it(self):
        tool = self.prefix / "bin/subtitles"
        if not tool.exists():
            self.skipTest("built without the tool")
        environment = self.search_path(tool)
        self.assertIn(VERSION, run(tool, "--version", env=environment))
        found = re.search(r"libsubtitles\S* => (\S+)", run("ldd", tool, env=environment)).group(1)
        self.assertEqual(pathlib.Path(found).resolve().parent, self.libraries)

    @unittest.skipUnless(shutil.which("gst-inspect-1.0"), "needs GStreamer's tools")
    def test_gstreamer_finds_the_element(self):
        plugins = self.libraries / "gstreamer-1.0"
        if not plugins.exists():
            self.skipTest("built without the plugin")
        environment = {**self.search_path(plugins / "libgstsubtitles.so"),
                       "GST_PLUGIN_PATH": str(plugins),
                       "GST_REGISTRY": str(self.folder / "registry.bin")}
        self.assertIn("subtitlesrc", run("gst-inspect-1.0", "subtitles", env=environment))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
