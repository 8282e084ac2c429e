#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
#
# Makes a small test film, twenty seconds of moving pictures without sound.
#
#   scripts/make-test-film.sh FILE.ogv
set -euo pipefail

if [ $# -ne 1 ]; then
    echo "usage: scripts/make-test-film.sh FILE.ogv" >&2
    exit 64
fi

mkdir -p "$(dirname "$1")"
gst-launch-1.0 --quiet \
    videotestsrc num-buffers=500 pattern=ball \
    ! "video/x-raw,width=320,height=180,framerate=25/1" \
    ! theoraenc bitrate=200 ! oggmux ! filesink "location=\"$1\"" >&2
