# SPDX-License-Identifier: LGPL-2.1-or-later
#
# Completion of `subtitles` in bash. Files are offered by what each command reads.

_subtitles_options() {
    local common="--help --json" choice="--encoding --language --class --fps"
    case $1 in
        find | detect) echo "$common" ;;
        show) echo "$common $choice" ;;
        convert) echo "$common $choice --format --force --from --to --shift" ;;
        preview) echo "$common $choice --subtitle --at --strip --output --force" ;;
        *) echo "--help --version" ;;
    esac
}

# Files with one of these extensions, in any letter case, and folders.
_subtitles_files() {
    local name
    while IFS= read -r name; do
        if [[ -d $name || ${name,,} =~ \.($1)$ ]]; then
            COMPREPLY+=("$name")
        fi
    done < <(compgen -f -- "$2")
    compopt -o filenames 2>/dev/null || true
}

# What stands behind an option that takes a value. False behind any other word.
_subtitles_value() {
    case $1 in
        --encoding) mapfile -t COMPREPLY < <(compgen -W "$(iconv -l 2>/dev/null | tr -d /)" -- "$2") ;;
        --format) mapfile -t COMPREPLY < <(compgen -W "webvtt ass" -- "$2") ;;
        --subtitle) _subtitles_files "srt|sub|ass|ssa|smi|sami" "$2" ;;
        --output | -o) _subtitles_files "png" "$2" ;;
        --language | --class | --fps | --from | --to | --shift | --at | --strip) ;;
        *) return 1 ;;
    esac
}

_subtitles() {
    local word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]}
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(
            compgen -W "find show convert preview detect $(_subtitles_options)" -- "$word")
    elif _subtitles_value "${COMP_WORDS[COMP_CWORD - 1]}" "$word"; then
        return
    elif [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$(_subtitles_options "$command")" -- "$word")
    else
        case $command in
            show) _subtitles_files "srt|sub|ass|ssa|smi|sami" "$word" ;;
            convert) _subtitles_files "srt|sub|ass|ssa|smi|sami|vtt" "$word" ;;
            *) _subtitles_files ".*" "$word" ;;
        esac
    fi
}
complete -F _subtitles subtitles
