// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The arguments of every command. What they mean is said in the help texts here, once.

#include "command-line.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "frame-rate.h"
#include "script.h"
#include "time-text.h"

namespace tool {

namespace {

/// The command that the arguments name, ready to run.
using Command = std::function<ExitStatus(Console&)>;

void addJson(CLI::App& app, bool& json) {
    app.add_flag("--json", json, "Print one JSON document instead of text for people");
}

void addFrameRate(CLI::App& app, std::optional<FrameRate>& rate) {
    const auto take = [&rate](const std::string& text) {
        rate = parseFrameRate(text);
        if (!rate || !isPlausible(*rate)) {
            throw CLI::ValidationError("--fps",
                                       "\"" + text +
                                           "\" is no rate from 1/1000 to 1000, as a number "
                                           "or as a fraction such as 24000/1001");
        }
    };
    app.add_option_function<std::string>(
           "--fps", take,
           "Frames a second of the film, for MicroDVD: a number or a fraction such as 24000/1001")
        ->type_name("RATE");
}

void addEncoding(CLI::App& app, std::string& encoding) {
    app.add_option("--encoding", encoding, "The file's encoding, as iconv names it; else detected")
        ->type_name("NAME");
}

void addTrack(CLI::App& app, TrackChoice& choice) {
    app.add_option("--language", choice.language,
                   "The language to take from a file of several: a code or an English name")
        ->type_name("LANGUAGE");
    app.add_option("--class", choice.className, "The class to take from an SMI file of several")
        ->type_name("CLASS");
}

void addFind(CLI::App& app, Command& command) {
    CLI::App* const find =
        app.add_subcommand("find", "List the subtitles that belong to a film, and what they hold");
    const auto options = std::make_shared<FindOptions>();
    find->add_option("PLACE", options->place, "The film, or a folder")->required();
    find->add_option("PREFIX", options->prefix, "With a folder: how the names begin");
    addJson(*find, options->json);
    find->footer(
        "Exit status: 0 if there are any, 1 if there are none, 2 if a file cannot be read.");
    find->callback([=, &command] {
        command = [=](Console& console) { return tool::find(console, *options); };
    });
}

void addShow(CLI::App& app, Command& command) {
    CLI::App* const show = app.add_subcommand("show", "Print the cues of a subtitle file");
    const auto options = std::make_shared<ShowOptions>();
    show->add_option("FILE", options->file, "The subtitle file")->required();
    addEncoding(*show, options->encoding);
    addTrack(*show, options->track);
    addFrameRate(*show, options->frameRate);
    addJson(*show, options->json);
    show->footer(
        "Exit status: 0 if there are cues, 1 if there are none or the file is longer than 8 MiB, "
        "2 if it failed.");
    show->callback([=, &command] {
        command = [=](Console& console) { return tool::show(console, *options); };
    });
}

/// An option whose text `parse` turns into the value of `target`.
template <class Value, class Parse>
void addTime(CLI::App& app, const char* name, Value& target, Parse parse, const char* help) {
    const auto take = [=, &target](const std::string& text) {
        const auto time = parse(text);
        if (!time) {
            throw CLI::ValidationError(
                name, "\"" + text + "\" is no time such as 90, 1:30.5 or 0:01:30,500");
        }
        target = *time;
    };
    app.add_option_function<std::string>(name, take, help)->type_name("TIME");
}

void addFormat(CLI::App& app, std::optional<ScriptFormat>& format) {
    const auto take = [&format](const std::string& name) {
        format = name == "ass" ? ScriptFormat::ASS : ScriptFormat::WebVTT;
    };
    app.add_option_function<std::string>(
           "--format", take, "What to write, where the name of OUT does not tell: webvtt or ass")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"webvtt", "vtt", "ass"}));
}

void addConvert(CLI::App& app, Command& command) {
    CLI::App* const convert =
        app.add_subcommand("convert", "Write a subtitle file as WebVTT or as ASS");
    const auto options = std::make_shared<ConvertOptions>();
    convert->add_option("IN", options->input, "The subtitle file")->required();
    convert
        ->add_option("OUT", options->output,
                     "The file to write, .vtt or .ass; - is standard output, as WebVTT")
        ->required();
    addFormat(*convert, options->format);
    convert->add_flag("--force", options->force, "Overwrite OUT where it exists");
    addEncoding(*convert, options->encoding);
    addTrack(*convert, options->track);
    addFrameRate(*convert, options->frameRate);
    addTime(*convert, "--from", options->window.from, parseTime,
            "Leave out cues that have gone by this time of IN");
    addTime(*convert, "--to", options->window.to, parseTime,
            "Leave out cues that start at this time of IN or later");
    addTime(*convert, "--shift", options->window.shift, parseShift,
            "Show all cues later by this time, or earlier where it is negative");
    addJson(*convert, options->json);
    convert->footer(
        "Exit status: 0 if there are cues, 1 if --from, --to and --shift leave none or IN is "
        "longer than 8 MiB, 2 if it failed.");
    convert->callback([=, &command] {
        command = [=](Console& console) { return tool::convert(console, *options); };
    });
}

void addPreview(CLI::App& app, Command& command) {
    CLI::App* const preview =
        app.add_subcommand("preview", "Draw a frame of a film with its subtitle, as a PNG");
    const auto options = std::make_shared<PreviewOptions>();
    preview->add_option("FILM", options->film, "The film; without one the background is plain");
    preview
        ->add_option("--subtitle", options->subtitle,
                     "The subtitle file; else one that stands beside the film")
        ->type_name("FILE");
    addTime(*preview, "--at", options->at, parseTime, "The time of the frame");
    preview
        ->add_option("--strip", options->strip,
                     "In place of one frame: the first so many cues, side by side")
        ->type_name("COUNT")
        ->check(CLI::Range(1, 300));
    preview
        ->add_option("-o,--output", options->output, "The picture to write; - is standard output")
        ->type_name("OUT")
        ->required();
    preview->add_flag("--force", options->force, "Overwrite OUT where it exists");
    addEncoding(*preview, options->encoding);
    addTrack(*preview, options->track);
    addFrameRate(*preview, options->frameRate);
    addJson(*preview, options->json);
    preview->footer(
        "Exit status: 0 if there is a cue in the picture, 1 if there is none at that time, 2 if it "
        "failed.");
    preview->callback([=, &command] {
        command = [=](Console& console) { return tool::preview(console, *options); };
    });
}

/// The parser takes "[a,b]" for a list of two wherever it takes several values; with a mark in
/// front it is a name again. No argument can have a NUL of its own.
constexpr char bracketMark = '\0';

/// "--encoding=", as scripts write it with an empty variable: the parser would take the next
/// argument for the value.
bool hasEmptyValue(const std::string& argument) {
    return argument.size() > 3 && argument.compare(0, 2, "--") == 0 && argument.back() == '=';
}

std::vector<std::string> argumentsForParser(int argc, const char* const* argv) {
    std::vector<std::string> arguments;
    bool mayBeOption = true;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        mayBeOption = mayBeOption && argument != "--";
        if (i > 1 && arguments.front() == "detect" && argument[0] == '[') {
            arguments.push_back(bracketMark + argument);
        } else if (mayBeOption && hasEmptyValue(argument)) {
            arguments.push_back(argument.substr(0, argument.size() - 1));
            arguments.emplace_back();
        } else {
            arguments.push_back(argument);
        }
    }
    std::reverse(arguments.begin(), arguments.end());  // the parser wants the last one first
    return arguments;
}

void addDetect(CLI::App& app, Command& command) {
    CLI::App* const detect = app.add_subcommand("detect", "Name the encodings of text files");
    const auto options = std::make_shared<DetectOptions>();
    detect->add_option("FILE", options->files, "The files")->required();
    addJson(*detect, options->json);
    detect->footer("Exit status: 0 if all files could be read, 2 if not.");
    detect->callback([=, &command] {
        for (std::string& file : options->files) {
            file.erase(0, file[0] == bracketMark ? 1 : 0);
        }
        command = [=](Console& console) { return tool::detect(console, *options); };
    });
}

/// What the parser says: help and version are answers, everything else is a fault of the arguments.
ExitStatus answer(Console& console, const CLI::App& app, const CLI::ParseError& error) {
    std::ostringstream out;
    std::ostringstream fault;
    if (app.exit(error, out, fault) == 0) {
        console.write(out.str());
        return ExitStatus::Done;
    }
    if (const std::vector<std::string> rest = app.remaining(); app.get_subcommands().empty()) {
        throw UsageError(rest.empty() ? "a command is missing"
                                      : rest.front() + ": no such command");
    }
    throw UsageError(error.what());
}

}  // namespace

ExitStatus runCommandLine(Console& console, int argc, const char* const* argv) {
    CLI::App app("Finds, shows and converts the text subtitles of films.", "subtitles");
    Command command;
    app.set_version_flag("--version", "subtitles " SUBTITLES_VERSION, "Print the version and exit");
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.require_subcommand(1);
    app.get_formatter()->label("TEXT", "");
    app.get_formatter()->label("REQUIRED", "");
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    addFind(app, command);
    addShow(app, command);
    addConvert(app, command);
    addPreview(app, command);
    addDetect(app, command);
    try {
        app.parse(argumentsForParser(argc, argv));
    } catch (const CLI::ParseError& error) {
        return answer(console, app, error);
    }
    return command(console);
}

}  // namespace tool
