#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
#
# Installs the Debian packages that this project is built, tested and developed with.
#
#   scripts/install-dependencies.sh [GROUP...]
#
# Groups: build (the default), test (adds what the tests and benchmarks need), demo (what makes the
# demonstration's film), develop (formatter, linter, fuzzer, documentation), package (what Debian
# packages are built and checked with), peers (what the comparison with other libraries needs, and the
# profiler). Only what is missing is installed; where nothing is, no network is needed and no rights.
set -euo pipefail

build=(
    g++
    cmake
    ninja-build
    pkg-config
    libcli11-dev
    libfmt-dev
    libglib2.0-dev
    libgstreamer1.0-dev
    libpcre2-dev
    libuchardet-dev
    libxml2-dev
    nlohmann-json3-dev
)
demo=(
    fonts-dejavu-core
    gstreamer1.0-plugins-base
    gstreamer1.0-plugins-good
    gstreamer1.0-tools
    gstreamer1.0-x
)
test=(
    chromium
    fonts-dejavu-core
    fonts-nanum
    gstreamer1.0-plugins-bad
    gstreamer1.0-plugins-base
    gstreamer1.0-plugins-good
    gstreamer1.0-tools
    gstreamer1.0-x
    groff-base
    libass-dev
    libavcodec-dev
    libavformat-dev
    libbenchmark-dev
    libgmock-dev
    libgstreamer-plugins-base1.0-dev
    libgtest-dev
    libpango1.0-dev
    python3
    xdotool
    xvfb
)
develop=(
    abigail-tools
    ccache
    clang
    clang-format
    clang-tidy
    doxygen
    libclang-rt-14-dev
    shellcheck
)

peers=(
    gstreamer1.0-plugins-base
    libass-dev
    libavcodec-dev
    libavformat-dev
    valgrind
)
package=(
    debhelper
    debootstrap
    dpkg-dev
    fakeroot
    lintian
)

missing=()

is_installed() {
    [ "$(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

collect_missing() {
    local package
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
}

if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
    echo "This script knows Debian and its children only. Packages: ${build[*]} ${test[*]}" >&2
    exit 2
fi

[ $# -gt 0 ] || set -- build
for group in "$@"; do
    case $group in
        build) collect_missing "${build[@]}" ;;
        demo) collect_missing "${demo[@]}" ;;
        test) collect_missing "${test[@]}" ;;
        develop) collect_missing "${develop[@]}" ;;
        package) collect_missing "${package[@]}" ;;
        peers) collect_missing "${peers[@]}" ;;
        *)
            echo "Unknown group \"$group\": build, demo, test, develop, package or peers" >&2
            exit 64
            ;;
    esac
done

[ ${#missing[@]} -gt 0 ] || exit 0

root=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
        echo "These packages are missing, and only root can install them:" >&2
        echo "    apt-get install ${missing[*]}" >&2
        exit 2
    fi
    root=(sudo)
fi

# What apt-get says is of interest only where it fails.
log=$(mktemp)
trap 'rm -f "$log"' EXIT
apt() {
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -o DPkg::Lock::Timeout=300 --quiet=2 "$@" </dev/null >"$log" 2>&1 ||
        { cat "$log" >&2; exit 2; }
}

echo "Installing ${missing[*]}" >&2
apt update
apt install --yes --no-install-recommends "${missing[@]}"
