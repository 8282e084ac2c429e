// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitle-file.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "foundation/auto-ptr.h"
#include "foundation/exception.h"
#include "foundation/path.h"
#include "foundation/string.h"

#include "subtitles/language.h"
#include "subtitles/subtitle-data.h"
#include "subtitles/subtitle-loader.h"

#include "exit-status.h"
#include "file-failures.h"
#include "text-encoding.h"

namespace tool {

using subtitles::Language;
using subtitles::SubtitleLoader;
using subtitles::SubtitleReference;

namespace {

struct Format {
    std::string_view mimeType;
    std::string_view key;
    std::string_view name;
    std::string_view extensions;  ///< Each between blanks.
};

constexpr Format formats[] = {
    {"application/x-srt", "srt", "SRT", " srt "},
    {"application/x-micro-dvd-sub", "microdvd", "MicroDVD", " sub "},
    {"application/x-ass", "ass", "ASS", " ass ssa "},
    {"application/x-smi", "smi", "SMI", " smi sami "},
};

const Format* formatOf(const SubtitleReference& reference) {
    const auto found = std::find_if(std::begin(formats), std::end(formats), [&](const Format& f) {
        return f.mimeType == std::string_view(reference.mimeType);
    });
    return found != std::end(formats) ? found : nullptr;
}

const Format* formatByExtension(const fn::Path& path) {
    const fn::String extension = " " + path.extension().toLowerCase() + " ";
    const auto found = std::find_if(std::begin(formats), std::end(formats), [&](const Format& f) {
        return extension.size() > 2 && f.extensions.find(extension) != std::string_view::npos;
    });
    return found != std::end(formats) ? found : nullptr;
}

fn::String classOf(const SubtitleReference& reference) {
    const auto found = reference.loaderProperties.find("class");
    return found != reference.loaderProperties.end() ? found->second : fn::String();
}

/// "ko" of "ko-KR", which is what the language table knows.
fn::String mainCode(const fn::String& code) {
    return code.substr(0, code.find_first_of("-_"));
}

bool isLanguage(const SubtitleReference& reference, const fn::String& wanted) {
    const fn::String lower = wanted.toLowerCase();
    if (reference.languageCode.toLowerCase() == lower ||
        reference.languageName().toLowerCase() == lower) {
        return true;
    }
    const Language& language = Language::forCode(mainCode(wanted));
    return !language.matches("UND") && language.matches(mainCode(reference.languageCode));
}

bool isChosen(const SubtitleReference& reference, const TrackChoice& choice) {
    const fn::String className = choice.className;
    return (choice.language.empty() || isLanguage(reference, choice.language)) &&
           (className.empty() || classOf(reference).toLowerCase() == className.toLowerCase());
}

/// "English (en, class encc)".
std::string describeTrack(const SubtitleReference& reference) {
    std::string details = reference.languageCode;
    if (const fn::String className = classOf(reference); !className.empty()) {
        details += (details.empty() ? "class " : ", class ") + className;
    }
    if (details.empty() && reference.customLanguageName.empty()) {
        return "one in an unknown language";
    }
    const std::string name = reference.languageName();
    return details.empty() ? name : name + " (" + details + ")";
}

std::string describeTracks(const std::vector<SubtitleReference>& tracks) {
    std::string words;
    for (const SubtitleReference& track : tracks) {
        words += (words.empty() ? "" : ", ") + describeTrack(track);
    }
    return words;
}

std::string describeChoice(const TrackChoice& choice) {
    std::string words;
    if (!choice.language.empty()) {
        words = "in the language \"" + choice.language + "\"";
    }
    if (!choice.className.empty()) {
        words += (words.empty() ? "of the class \"" : " and of the class \"");
        words += choice.className + "\"";
    }
    return words;
}

/// An exception about what is in the file does not know its name.
fn::AutoPtr<subtitles::SubtitleData> load(SubtitleLoader& loader,
                                          const SubtitleReference& reference,
                                          const fn::String& encoding) {
    try {
        return loader.loadSubtitle(reference, encoding);
    } catch (const fn::UTF8Exception&) {
        throw Failure(reference.path + ": it is not valid UTF-8 (--encoding names another)");
    } catch (const fn::Exception& exception) {
        throw Failure(describeFailure(reference.path, exception.displayText()));
    }
}

/// A file that has gone by now is none that can be told about.
bool isLongerThanRead(const std::string& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    return !error && size > readLimit;
}

}  // namespace

std::vector<SubtitleReference> tracksInFile(const std::string& path) {
    const fn::Path parsed = fn::Path::parsePath(path);
    for (SubtitleLoader* const loader : SubtitleLoader::getAllLoaders()) {
        std::vector<SubtitleReference> tracks = loader->analyzeFile(parsed);
        if (!tracks.empty()) {
            return tracks;
        }
    }
    const Format* const format = formatByExtension(parsed);
    if (format == nullptr) {
        throw Failure(path + ": no subtitle file by its extension (srt, sub, ass, ssa, smi, sami)");
    }
    SubtitleReference reference;
    reference.type = SubtitleReference::FILE;
    reference.mimeType = fn::String(std::string(format->mimeType));
    reference.path = path;
    return {reference};
}

SubtitleReference chooseTrack(Console& console, const std::string& path, const TrackChoice& choice,
                              Ambiguity ambiguity) {
    return chooseAmong(console, path, tracksInFile(path), choice, ambiguity);
}

SubtitleReference chooseAmong(Console& console, const std::string& place,
                              const std::vector<SubtitleReference>& tracks,
                              const TrackChoice& choice, Ambiguity ambiguity) {
    std::vector<SubtitleReference> chosen;
    std::copy_if(tracks.begin(), tracks.end(), std::back_inserter(chosen),
                 [&](const SubtitleReference& track) { return isChosen(track, choice); });
    if (chosen.empty()) {
        throw Failure(place + ": no subtitles " + describeChoice(choice) + "; there is " +
                      describeTracks(tracks));
    }
    if (chosen.size() > 1) {
        const std::string words = place + ": several subtitles, " + describeTracks(chosen);
        if (ambiguity == Ambiguity::Refuse) {
            throw Failure(words + "; choose one with --language or --class");
        }
        console.message(words + "; this is the first one, --language and --class choose another");
    }
    return chosen.front();
}

LoadedTrack loadTrack(const SubtitleReference& reference, const std::string& encoding,
                      const std::optional<FrameRate>& frameRate) {
    const fn::String used = encoding.empty() ? encodingOfFile(reference.path) : encoding;
    for (SubtitleLoader* const loader : SubtitleLoader::getAllLoaders()) {
        if (loader->canHandle(reference)) {
            return {reference, used, CueList(load(*loader, reference, used), frameRate),
                    isLongerThanRead(reference.path)};
        }
    }
    throw Failure(reference.path + ": no reader for " + formatName(reference) + " files");
}

void reportCut(Console& console, const std::string& path) {
    console.message(path + ": longer than 8 MiB, and read no further");
}

std::string formatName(const SubtitleReference& reference) {
    const Format* const format = formatOf(reference);
    return format != nullptr ? std::string(format->name) : std::string(reference.mimeType);
}

Json trackToJson(const SubtitleReference& reference) {
    const Format* const format = formatOf(reference);
    const auto text = [](const std::string& value) { return value; };
    return {{"path", text(reference.path)},
            {"format", format != nullptr ? std::string(format->key) : ""},
            {"mimeType", text(reference.mimeType)},
            {"languageCode", text(reference.languageCode)},
            {"languageName", text(reference.languageName())},
            {"class", text(classOf(reference))}};
}

Json loadedToJson(const LoadedTrack& track) {
    const std::optional<FrameRate>& rate = track.cues.frameRate();
    return {{"encoding", track.encoding},
            {"unit", track.cues.unit() == TimeUnit::Frames ? "frames" : "nanoseconds"},
            {"frameRate", rate ? Json(toString(*rate)) : Json(nullptr)}};
}

}  // namespace tool
