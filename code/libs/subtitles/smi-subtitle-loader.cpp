// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/smi-subtitle-loader.h"

#include <limits>
#include <list>

#include "subtitles/charset-detector.h"
#include "subtitles/load-string.h"
#include "subtitles/loader-support.h"
#include "subtitles/smi-loader.h"

namespace subtitles {

namespace {

constexpr const char* smiType = "application/x-smi";
constexpr const char* classKey = "class";

/// The encoding of the whole file: the words of a language may come late in a file that starts with
/// another one.
fn::String detectEncoding(const fn::String& path) {
    return knownEncoding(CharsetDetector::detectFileCharset(
        path.c_str(), std::numeric_limits<unsigned long>::max()));
}

SubtitleReference referenceFor(const SMILoader::LanguageEntry& entry, const fn::Path& path) {
    SubtitleReference reference = makeFileReference(path, smiType);
    reference.languageCode = entry.languageCode;
    reference.customLanguageName = entry.languageName;
    if (!entry.className.empty()) {
        reference.loaderProperties[classKey] = entry.className;
    }
    return reference;
}

}  // namespace

std::vector<SubtitleReference> SMISubtitleLoader::analyzeFile(const fn::Path& path) {
    std::vector<SubtitleReference> references;
    if (!hasExtension(path, {"smi", "sami"})) {
        return references;
    }
    const fn::String file = path.toString();
    SMILoader loader;
    loader.languagesOnly = true;
    loader.parse(file, detectEncoding(file));
    std::list<SMILoader::LanguageEntry> languages = loader.getLanguages();
    // Text without classes is one subtitle in an unknown language.
    if (languages.empty() && !loader.buffers.empty()) {
        languages.emplace_back();
    }
    for (const SMILoader::LanguageEntry& entry : languages) {
        references.push_back(referenceFor(entry, path));
    }
    return references;
}

bool SMISubtitleLoader::canHandle(const SubtitleReference& reference) {
    return isFileReference(reference, smiType);
}

fn::AutoPtr<SubtitleData> SMISubtitleLoader::loadSubtitle(const SubtitleReference& reference,
                                                          const fn::String& encoding) {
    SMILoader loader;
    loader.parseStyleSheets = false;
    const auto wanted = fn::find(reference.loaderProperties, classKey);
    if (wanted != reference.loaderProperties.end()) {
        loader.wantedClass = wanted->second;
    }
    return loader.load(reference.path,
                       encoding.empty() ? detectEncoding(reference.path) : encoding);
}

}  // namespace subtitles
