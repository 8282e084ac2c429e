# SPDX-License-Identifier: LGPL-2.1-or-later
#
# Completion of `subtitles` in fish.

set -l commands find show convert preview detect

complete -c subtitles -n "not __fish_seen_subcommand_from $commands" -f
complete -c subtitles -n "not __fish_seen_subcommand_from $commands" -l version -d "Print the version"
complete -c subtitles -n "not __fish_seen_subcommand_from $commands" -a find -d "List the subtitles that belong to a film"
complete -c subtitles -n "not __fish_seen_subcommand_from $commands" -a show -d "Print the cues of a subtitle file"
complete -c subtitles -n "not __fish_seen_subcommand_from $commands" -a convert -d "Write a subtitle file as WebVTT or as ASS"
complete -c subtitles -n "not __fish_seen_subcommand_from $commands" -a preview -d "Draw a frame of a film with its subtitle"
complete -c subtitles -n "not __fish_seen_subcommand_from $commands" -a detect -d "Name the encodings of text files"

complete -c subtitles -s h -l help -d "Print the help"
complete -c subtitles -n "__fish_seen_subcommand_from $commands" -l json -d "Print one JSON document"
complete -c subtitles -n "__fish_seen_subcommand_from show convert preview" -x -l encoding -d "The file's encoding"
complete -c subtitles -n "__fish_seen_subcommand_from show convert preview" -x -l language -d "The language to take"
complete -c subtitles -n "__fish_seen_subcommand_from show convert preview" -x -l class -d "The SMI class to take"
complete -c subtitles -n "__fish_seen_subcommand_from show convert preview" -x -l fps -d "Frames a second of the film"
complete -c subtitles -n "__fish_seen_subcommand_from convert" -x -l format -a "webvtt ass" -d "What to write"
complete -c subtitles -n "__fish_seen_subcommand_from convert" -x -l from -d "Leave out cues that have gone by then"
complete -c subtitles -n "__fish_seen_subcommand_from convert" -x -l to -d "Leave out cues that start then or later"
complete -c subtitles -n "__fish_seen_subcommand_from convert" -x -l shift -d "Show all cues later by this time"
complete -c subtitles -n "__fish_seen_subcommand_from convert preview" -l force -d "Overwrite the output"
complete -c subtitles -n "__fish_seen_subcommand_from preview" -r -l subtitle -d "The subtitle file"
complete -c subtitles -n "__fish_seen_subcommand_from preview" -x -l at -d "The time of the frame"
complete -c subtitles -n "__fish_seen_subcommand_from preview" -x -l strip -d "The first so many cues"
complete -c subtitles -n "__fish_seen_subcommand_from preview" -r -s o -l output -d "The picture to write"
