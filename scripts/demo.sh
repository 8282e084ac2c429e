#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
#
# Installs what is missing, builds the library and its command-line tool, and shows what they do
# with a film's folder of subtitles.
set -euo pipefail
cd "$(dirname "$0")/.."

build() {
    cmake --preset demo
    cmake --build --preset demo
}

# Runs a command as a person would type it.
try() {
    printf '\n$ %s\n' "$(printf '%q ' "$@" | sed 's/ $//')"
    "$@"
}

scripts/install-dependencies.sh build demo

mkdir -p build
echo "Building (a few minutes; build/demo.log has the details)" >&2
if ! build >build/demo.log 2>&1; then
    tail -n 40 build/demo.log >&2
    exit 1
fi
PATH=$PWD/build/demo/code/apps/subtitles:$PATH

film=build/demo-film
rm -rf "$film"
cp -r samples/film "$film"
scripts/make-test-film.sh "$film/The Harbour.ogv"
cd "$film"

echo "A film and its subtitles, in ten languages and as many encodings:"
try ls
echo
echo "Which of them belong to the film, and what do they hold?"
try subtitles find "The Harbour.ogv"
echo
echo "Which encodings are they in?"
try subtitles detect ./*.srt
echo
echo "What is said in the Korean one, and in one with styles?"
try subtitles show "The Harbour.ko.srt" | sed -n 1,14p
try subtitles show "The Harbour.en.sdh.srt" | sed -n 1,14p
echo
echo "The tool is $PWD/../demo/code/apps/subtitles/subtitles; try it with --help."
