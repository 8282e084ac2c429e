// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The search for a film's subtitles. It goes file by file, with the library's own rule for what
// belongs to a film, so that a file that cannot be read does not hide the others.

#include <algorithm>
#include <cstdint>
#include <filesystem>

#include "foundation/directory-iterator.h"
#include "foundation/exception.h"
#include "foundation/path.h"
#include "foundation/string.h"

#include "subtitles/subtitle-finder.h"
#include "subtitles/subtitle-reference.h"

#include "commands.h"
#include "cue-list.h"
#include "file-failures.h"
#include "json-document.h"
#include "subtitle-file.h"
#include "table.h"
#include "time-text.h"
#include "visible-text.h"

namespace tool {

using subtitles::SubtitleReference;

namespace {

// From these on, the person in front of the terminal is told how far we are.
constexpr std::size_t manyEntries = 1000;
constexpr std::size_t manyCandidates = 50;

/// Where to look, and for which names.
struct Search {
    std::string folder;
    fn::String prefix;
    fn::String excludedSuffix;  ///< The film's own; empty excludes nothing.
    /// What stands in front of names in what is printed: nothing for the current folder.
    std::string shownFolder;
};

/// A subtitle as it is listed.
struct Found {
    SubtitleReference reference;
    Json details;  ///< encoding, unit, frameRate, as scripts get them
    TimeUnit unit = TimeUnit::Nanoseconds;
    std::size_t cues = 0;
    std::optional<std::uint64_t> first;  ///< When the first cue comes.
    std::optional<std::uint64_t> last;   ///< When the last cue has gone.
    bool isCut = false;
};

bool isFolder(const std::string& path) {
    return std::filesystem::is_directory(checkExists(path));
}

std::string withSlash(const std::string& folder) {
    return folder.empty() || folder.back() == '/' ? folder : folder + "/";
}

Search searchFor(const FindOptions& options) {
    if (isFolder(options.place)) {
        const std::string shown = options.place == "." ? "" : withSlash(options.place);
        return {options.place, options.prefix.value_or(""), "", shown};
    }
    if (options.prefix) {
        throw UsageError(options.place + ": a prefix goes with a folder, and this is a file");
    }
    const fn::Path film = fn::Path::parsePath(options.place);
    const std::string folder = std::filesystem::path(options.place).parent_path();
    const fn::String suffix = film.extension().empty() ? "" : "." + film.extension();
    return {folder.empty() ? "." : folder, film.baseName(), suffix, withSlash(folder)};
}

/// The entries that belong to the film, in the order of their names.
std::vector<fn::DirectoryEntry> candidates(Console& console, const Search& search) {
    const fn::String prefix = search.prefix.toLowerCase();
    const fn::String suffix = search.excludedSuffix.toLowerCase();
    std::vector<fn::DirectoryEntry> result;
    std::size_t seen = 0;
    fn::DirectoryIterator listing(search.folder, fn::DirectoryEntry::ResolveNothing);
    for (const fn::DirectoryEntry& entry : listing) {
        const fn::String name = entry.name.toLowerCase();
        if (name.find(prefix) == 0 && (suffix.empty() || !name.endsWith(suffix))) {
            result.push_back(entry);
        }
        if (++seen % manyEntries == 0) {
            console.showProgress(std::to_string(seen) + " files, " + std::to_string(result.size()) +
                                 " of them may be subtitles");
        }
    }
    std::sort(result.begin(), result.end(),
              [](const auto& a, const auto& b) { return a.name.compare(b.name) < 0; });
    return result;
}

/// Loads the subtitle to see what is in it.
Found describe(const SubtitleReference& reference, const std::string& shownPath) {
    const LoadedTrack track = loadTrack(reference, "", std::nullopt);
    Found found{reference, loadedToJson(track), track.cues.unit(), track.cues.cues().size(), {},
                {},        track.isCut};
    found.reference.path = shownPath;
    for (const Cue& cue : track.cues.cues()) {
        found.first = std::min(found.first.value_or(cue.start), cue.start);
        found.last = std::max(found.last.value_or(0), cue.end.value_or(cue.start));
    }
    return found;
}

void examine(Console& console, const fn::DirectoryEntry& entry, const Search& search,
             FileFailures& failures, std::vector<Found>& result) {
    const std::string shownPath = search.shownFolder + entry.name;
    try {
        std::vector<SubtitleReference> references;
        subtitles::SubtitleFinder::instance()->processFile(
            entry, fn::Path::parsePath(search.folder), search.prefix, references);
        for (const SubtitleReference& reference : references) {
            result.push_back(describe(reference, shownPath));
        }
        if (!references.empty() && result.back().isCut) {
            reportCut(console, shownPath);
        }
    } catch (const fn::Exception& exception) {
        failures.add(shownPath, exception.displayText());
    } catch (const Failure& failure) {
        failures.add(shownPath, failure.what());
    }
}

std::string timeText(const std::optional<std::uint64_t>& time, TimeUnit unit) {
    if (!time) {
        return "-";
    }
    return unit == TimeUnit::Frames ? "{" + std::to_string(*time) + "}" : millisecondText(*time);
}

void print(Console& console, const std::vector<Found>& found) {
    Table table({{"FORMAT"},
                 {"LANGUAGE"},
                 {"ENCODING"},
                 {"CUES", Align::Right},
                 {"FIRST", Align::Right},
                 {"LAST", Align::Right},
                 {"FILE"}});
    for (const Found& one : found) {
        table.addRow({formatName(one.reference), visibleLine(one.reference.languageName()),
                      one.details["encoding"].get<std::string>(), std::to_string(one.cues),
                      timeText(one.first, one.unit), timeText(one.last, one.unit),
                      visibleLine(one.reference.path)});
    }
    if (!found.empty()) {
        console.write(table.text());
    }
}

Json toJson(const std::optional<std::uint64_t>& time) {
    return time ? Json(*time) : Json(nullptr);
}

void printJson(Console& console, const Search& search, const std::vector<Found>& found,
               const FileFailures& failures) {
    JsonDocument document(console);
    document.field("folder", search.folder);
    document.field("prefix", static_cast<const std::string&>(search.prefix));
    document.beginArray("subtitles");
    for (const Found& one : found) {
        Json object = trackToJson(one.reference);
        object.update(one.details);
        object.update(
            {{"cues", one.cues}, {"first", toJson(one.first)}, {"last", toJson(one.last)}});
        document.element(object);
    }
    document.endArray();
    failures.writeTo(document);
    document.end();
}

std::string nothingFound(const Search& search) {
    const std::string words = "no subtitles in '" + search.folder + "'";
    return search.prefix.empty() ? words
                                 : words + " whose names begin with '" + search.prefix + "'";
}

}  // namespace

ExitStatus find(Console& console, const FindOptions& options) {
    const Search search = searchFor(options);
    FileFailures failures(console);
    std::vector<Found> found;
    const std::vector<fn::DirectoryEntry> entries = candidates(console, search);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (entries.size() >= manyCandidates) {
            console.showProgress(std::to_string(i + 1) + " of " + std::to_string(entries.size()) +
                                 ": " + entries[i].name);
        }
        examine(console, entries[i], search, failures, found);
    }
    console.clearProgress();
    if (options.json) {
        printJson(console, search, found, failures);
    } else {
        print(console, found);
    }
    if (found.empty()) {
        console.message(nothingFound(search));
        return failures.statusOr(ExitStatus::Findings);
    }
    return failures.statusOr(ExitStatus::Done);
}

}  // namespace tool
