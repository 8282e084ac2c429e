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

# Runs a line as a person would type it.
try() {
    printf '\n$ %s\n' "$1"
    eval "$1"
}

# The same, and no more than its first lines.
try_beginning() {
    local lines=$1 command=$2
    printf '\n$ %s | head -n %d\n' "$command" "$lines"
    if [ -t 1 ]; then
        # A pipe would get plain text: colours and italics are for terminals.
        command="script --quiet --return --command '$command' /dev/null"
    fi
    eval "$command" | sed -n "1,${lines}p"
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

echo "A film, and its subtitles in twelve languages:"
try 'ls'
echo
echo "Which of them belong to the film, and what do they hold?"
try 'subtitles find "The Harbour.ogv"'
echo
echo "Which encodings are they in?"
try 'subtitles detect *.srt *.sub *.smi'
echo
echo "What is said in the Korean one, and in one with styles?"
try_beginning 11 'subtitles show "The Harbour.ko.srt"'
try_beginning 11 'subtitles show "The Harbour.en.sdh.srt"'
echo
echo "And for a browser, please."
try 'subtitles convert "The Harbour.en.sdh.srt" harbour.vtt'
try 'head -n 8 harbour.vtt'
echo
echo "And how does it look on the film?"
try 'subtitles preview "The Harbour.ogv" --subtitle "The Harbour.en.sdh.srt" --strip 6 -o harbour.png'
echo
echo "The picture is $film/harbour.png."
echo "The tool is build/demo/code/apps/subtitles/subtitles; the folder is $film."
