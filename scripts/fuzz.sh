#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
#
# Runs fuzz targets, each for so many seconds, and tells what came of it.
#
#   scripts/fuzz.sh SECONDS [TARGET...]
#
# Builds with the preset fuzz. New inputs go into build/fuzz/corpus/TARGET, from where the next run
# goes on; the committed corpus and the dictionaries are only read. What breaks a target lies beside
# that folder, and the script ends with 1.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ $# -lt 1 ]; then
    echo "usage: scripts/fuzz.sh SECONDS [TARGET...]" >&2
    exit 64
fi
seconds=$1
shift

# The dictionaries of a target: its own, or those of all that it reads.
dictionaries() {
    case $1 in
    ass-entry) echo ass srt ;;
    exporters) echo attributed-text-buffer ass srt ;;
    folder) echo file finder srt microdvd ass smi style-sheet ;;
    loader) echo srt microdvd ass smi style-sheet ;;
    microdvd) echo microdvd srt ;;
    pango-markup) echo pango-markup srt ;;
    regular-expression) echo srt microdvd ass ;;
    smi) echo smi style-sheet ;;
    srt-markup) echo srt ;;
    subtitle-reference) echo subtitle-reference json ;;
    xml-reader) echo pango-markup ;;
    *) echo "$1" ;;
    esac
}
export -f dictionaries

fuzz() {
    local seconds=$1 target=$2 work log dictionary
    work=$PWD/build/fuzz/corpus/$target
    log=$work.log
    mkdir -p "$work"
    for dictionary in $(dictionaries "${target%-fuzz}"); do
        cat "fuzz/dictionaries/$dictionary.dict"
        echo
    done >"$work.dict"
    if ! "build/fuzz/fuzz/$target" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=4096 \
        -print_final_stats=1 -artifact_prefix="$work-" "-dict=$work.dict" \
        "$work" "fuzz/corpus/$target" >"$log" 2>&1; then
        tail -n 60 "$log"
        printf '%-28s FAILED\n' "$target"
        return 1
    fi
    # The last line of its kind tells the edges that were reached.
    printf '%-28s %12s executions %8s edges %6s MB\n' "$target" \
        "$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")" \
        "$(sed -n 's/.* cov: \([0-9]*\) .*/\1/p' "$log" | tail -n 1)" \
        "$(sed -n 's/^stat::peak_rss_mb: *//p' "$log")"
}
export -f fuzz

cmake --preset fuzz >/dev/null
if [ $# -gt 0 ]; then
    cmake --build --preset fuzz --target "$@" >/dev/null
else
    cmake --build --preset fuzz --target fuzz-targets >/dev/null
    set -- build/fuzz/fuzz/*-fuzz
fi
printf '%s\0' "${@##*/}" |
    xargs -0 -n 1 -P "$(nproc)" bash -c 'set -euo pipefail; fuzz "$@"' fuzz "$seconds"
