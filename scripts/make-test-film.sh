#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
#
# Makes a small test film: 23 seconds of a moon over the sea, without sound.
#
#   scripts/make-test-film.sh FILE.ogv
set -euo pipefail

if [ $# -ne 1 ]; then
    echo "usage: scripts/make-test-film.sh FILE.ogv" >&2
    exit 64
fi

frames=575
sky="video/x-raw,width=640,height=250,framerate=25/1"
sea="video/x-raw,width=640,height=110,framerate=25/1"
waves="video/x-raw,width=160,height=28,framerate=25/1"

mkdir -p "$(dirname "$1")"
gst-launch-1.0 --quiet \
    compositor name=scene sink_1::ypos=250 sink_2::ypos=250 sink_2::alpha=0.12 \
    ! "video/x-raw,format=I420,width=640,height=360,framerate=25/1" \
    ! theoraenc quality=24 ! oggmux ! filesink "location=\"$1\"" \
    videotestsrc num-buffers=$frames pattern=ball \
    background-color=0xff1d3a57 foreground-color=0xfff6ecc9 ! "$sky" ! scene.sink_0 \
    videotestsrc num-buffers=$frames pattern=solid-color foreground-color=0xff0c1d2e \
    ! "$sea" ! scene.sink_1 \
    videotestsrc num-buffers=$frames pattern=snow ! "$waves" \
    ! videoscale add-borders=false ! "$sea,pixel-aspect-ratio=1/1" ! scene.sink_2 >&2
