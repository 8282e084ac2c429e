#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
#
# Builds the Debian packages, checks them with lintian, and tries them on a fresh Debian 12: the
# tool, the GStreamer element, and a player that is compiled there.
#
#   scripts/check-packages.sh [FOLDER]
#
# Works in FOLDER, build/packages if none is given, where the packages stay. Needs root, for the
# fresh system, and a Debian mirror.
set -euo pipefail
cd "$(dirname "$0")/.."

mirror=${MIRROR:-http://deb.debian.org/debian}
work=$(realpath -m "${1:-build/packages}")
root=$work/root
sources=$PWD

build_packages() {
    rm -rf "$work/source"
    mkdir -p "$work/source"
    git archive HEAD | tar -x -C "$work/source"
    # The tests have been run elsewhere; an empty DEB_BUILD_OPTIONS runs them once more.
    export DEB_BUILD_OPTIONS=${DEB_BUILD_OPTIONS-nocheck}
    (cd "$work/source" && dpkg-buildpackage --no-sign --build=binary)
}

make_fresh_system() {
    [ -e "$root/etc/debian_version" ] ||
        debootstrap --variant=minbase bookworm "$root" "$mirror"
    rm -rf "$root/packages" "$root/film"
    mkdir "$root/packages"
    cp "$work"/*.deb "$root/packages"
    cp -r "$sources/samples/film" "$root/film"
    # The first program of the guide.
    sed -n '/^```cpp$/,/^```$/{/^```$/q;/^```/d;p}' "$sources/docs/player.md" \
        >"$root/packages/player.cpp"
}

try_packages() {
    chroot "$root" env DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 bash -euc '
        apt-get --quiet=2 update
        rm /packages/*-dbgsym_*.deb
        apt-get --quiet=2 install --yes --no-install-recommends /packages/*.deb g++ pkg-config \
            gstreamer1.0-tools >/packages/log 2>&1 || { tail -n 40 /packages/log; exit 1; }
        cd /film
        subtitles --version
        subtitles detect *.ko.srt
        gst-inspect-1.0 subtitlesrc >/packages/element
        c++ -std=c++17 /packages/player.cpp -o /packages/player \
            $(pkg-config --cflags --libs subtitles)
        /packages/player . "The Harbour" en 9
        apt-get --quiet=2 purge --yes "libsubtitles*" subtitles-tools gstreamer1.0-subtitles
    '
}

scripts/install-dependencies.sh build package
build_packages
lintian --fail-on error --allow-root "$work"/*.changes
make_fresh_system
try_packages
