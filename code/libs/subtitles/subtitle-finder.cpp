// SPDX-License-Identifier: LGPL-2.1-or-later
//
// One listing of the folder, and the loaders asked about the names that fit.

#include "subtitles/subtitle-finder.h"

#include <algorithm>
#include <iterator>
#include <list>
#include <utility>

#include "foundation/exception.h"
#include "foundation/file.h"
#include "foundation/unicode.h"
#include "foundation/utf8-iterator.h"

#include "subtitles/language.h"
#include "subtitles/subtitle-loader.h"

namespace subtitles {
namespace {

bool isFolder(const fn::File& file) {
    if (!file.exists()) {
        return false;
    }
    const fn::DirectoryEntry entry = file.info(fn::DirectoryEntry::ResolvePolicy::ResolveLinks);
    return entry.exists && entry.isDirectory;
}

/// Both texts are in lower case.
bool isCandidate(const fn::String& name, const fn::String& prefix, const fn::String& suffix) {
    return name.compare(0, prefix.size(), prefix) == 0 && !name.endsWith(suffix);
}

bool hasNoLanguage(const SubtitleReference& reference) {
    return reference.languageCode.empty() && reference.languageName() == Language::forCode("").name;
}

/// The text from its first letter on. Separators of every kind stand in front of a language, and
/// behind it they may be part of its name.
fn::String fromFirstLetter(const fn::String& text) {
    try {
        const fn::UTF8Iterator end = text.endUTF8();
        for (fn::UTF8Iterator it = text.beginUTF8(); it != end; ++it) {
            if (fn::Unicode::isAlpha(static_cast<int>(*it))) {
                return text.substr(static_cast<std::size_t>(it.position() - text.data()));
            }
        }
    } catch (const fn::UTF8Exception&) {
        // A name in some old encoding: its language cannot be told, but the file can be played.
    }
    return {};
}

bool isUnknown(const Language& language) {
    const std::vector<fn::String>& codes = language.codes;
    return std::find(codes.begin(), codes.end(), "UND") != codes.end();
}

void sortByPath(std::vector<SubtitleReference>& references) {
    // Stable, so that the languages of one file keep the order in which the file has them.
    std::stable_sort(references.begin(), references.end(),
                     [](const SubtitleReference& left, const SubtitleReference& right) {
                         return left.path.compare(right.path) < 0;
                     });
}

}  // namespace

SubtitleFinder* SubtitleFinder::instance() {
    static SubtitleFinder* const finder = new SubtitleFinder;
    return finder;
}

void SubtitleFinder::processFolder(const fn::Path& folder, const fn::String& prefix,
                                   const fn::String& excludedSuffix,
                                   std::vector<SubtitleReference>& result) {
    if (isFolder(fn::File(folder))) {
        const fn::String lowerPrefix = prefix.toLowerCase();
        const fn::String lowerSuffix = excludedSuffix.toLowerCase();
        fn::DirectoryIterator listing(folder.toAbsolute().toString(),
                                      fn::DirectoryEntry::ResolvePolicy::ResolveNothing);
        for (const fn::DirectoryEntry& entry : listing) {
            if (isCandidate(entry.name.toLowerCase(), lowerPrefix, lowerSuffix)) {
                processFile(entry, folder, prefix, result);
            }
        }
    }
    sortByPath(result);
}

void SubtitleFinder::processFile(const fn::DirectoryEntry& entry, const fn::Path& /*folder*/,
                                 const fn::String& prefix, std::vector<SubtitleReference>& result) {
    const fn::Path path = fn::Path::parsePath(entry.path);
    for (SubtitleLoader* const loader : SubtitleLoader::getAllLoaders()) {
        std::vector<SubtitleReference> references = loader->analyzeFile(path);
        if (references.size() == 1 && hasNoLanguage(references.front())) {
            const fn::Path own = fn::Path::parsePath(references.front().path);
            tryToSetlanguageFromName(own.baseName(), prefix, references.front());
        }
        std::move(references.begin(), references.end(), std::back_inserter(result));
    }
}

std::vector<SubtitleReference> SubtitleFinder::analyzeSubtitles(const fn::String& videoPath,
                                                                const fn::String& subtitlePath) {
    const fn::String prefix = fn::Path::parsePath(videoPath).baseName();
    const fn::Path path = fn::Path::parsePath(subtitlePath);
    const fn::String name = path.baseName();
    std::vector<SubtitleReference> result;
    for (SubtitleLoader* const loader : SubtitleLoader::getAllLoaders()) {
        for (SubtitleReference& reference : loader->analyzeFile(path)) {
            tryToSetlanguageFromName(name, prefix, reference);
            result.push_back(std::move(reference));
        }
    }
    return result;
}

void SubtitleFinder::tryToSetlanguageFromName(const fn::String& baseName, const fn::String& prefix,
                                              SubtitleReference& reference) {
    if (baseName.size() <= prefix.size()) {
        return;
    }
    const fn::String code = fromFirstLetter(baseName.substr(prefix.size()));
    if (isUnknown(Language::forCode(code))) {
        reference.customLanguageName = code;
    } else {
        reference.languageCode = code;
    }
}

}  // namespace subtitles
