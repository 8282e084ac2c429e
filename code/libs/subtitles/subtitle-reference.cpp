// SPDX-License-Identifier: LGPL-2.1-or-later
//
// References as JSON. The type is the first thing that is read, and the only one that can be wrong:
// a document that fails has changed nothing.

#include "subtitles/subtitle-reference.h"

#include "foundation/exception.h"
#include "foundation/json.h"
#include "foundation/stream.h"
#include "foundation/value.h"

#include "subtitles/gst-logging.h"
#include "subtitles/language.h"

namespace subtitles {
namespace {

constexpr const char* typeKey = "type";
constexpr const char* mimeTypeKey = "mime-type";
constexpr const char* languageCodeKey = "language-code";
constexpr const char* languageNameKey = "language-name";
constexpr const char* nameKey = "name";
constexpr const char* pathKey = "path";
constexpr const char* loaderPropertiesKey = "loader-properties";
constexpr const char* streamNameKey = "stream-name";

using Map = fn::Value::Map;

/// The entry of that key, nil where there is none.
const fn::Value& at(const Map& map, const char* key) {
    const auto found = map.find(key);
    return found != map.end() ? found->second : fn::Value::NIL;
}

fn::Value toValue(const std::map<fn::String, fn::String>& properties) {
    fn::Value value;
    for (const auto& [key, text] : properties) {
        value.map()[key] = text;
    }
    return value;
}

void addProperties(const fn::Value& value, std::map<fn::String, fn::String>& properties) {
    if (!value.is(fn::Value::MapType)) {
        return;
    }
    for (const auto& [key, text] : value.map()) {
        properties[key.asString()] = text.asString();
    }
}

/// A type that is there counts, even as null, which is 0 and so a file. Only a missing one is
/// none.
SubtitleReference::Type readType(const Map& map) {
    const auto found = map.find(typeKey);
    return found != map.end() ? static_cast<SubtitleReference::Type>(found->second.asNumber<int>())
                              : SubtitleReference::INVALID;
}

}  // namespace

fn::String SubtitleReference::languageName() const {
    return customLanguageName.empty() ? Language::forCode(languageCode).name : customLanguageName;
}

fn::String SubtitleReference::serialize() const {
    fn::Value value;
    Map& map = value.map();
    map[typeKey] = static_cast<long long>(type);
    map[mimeTypeKey] = mimeType;
    map[languageCodeKey] = languageCode;
    if (!customLanguageName.empty()) {
        map[languageNameKey] = customLanguageName;
    }
    map[nameKey] = name;
    if (type == STREAM) {
        map[streamNameKey] = streamName;
    }
    if (type == FILE) {
        map[pathKey] = path;
        if (!loaderProperties.empty()) {
            map[loaderPropertiesKey] = toValue(loaderProperties);
        }
    }
    fn::ByteArrayOutputStream stream;
    fn::json::serialize(value, stream, false);
    const fn::StringView bytes = stream.byteArray().view();
    return fn::String(bytes.data(), bytes.size());
}

void SubtitleReference::readFrom(const fn::String& text) {
    const fn::Value value = fn::json::deserialize(fn::to_string_view(text), "");
    const Map& map = value.map();
    type = readType(map);
    mimeType = at(map, mimeTypeKey).asString();
    languageCode = at(map, languageCodeKey).asString();
    customLanguageName = at(map, languageNameKey).asString();
    name = at(map, nameKey).asString();
    if (type == STREAM) {
        streamName = at(map, streamNameKey).asString();
    }
    if (type == FILE) {
        path = at(map, pathKey).asString();
        addProperties(at(map, loaderPropertiesKey), loaderProperties);
    }
}

bool SubtitleReference::deserialize(const fn::String& text) {
    if (text.empty()) {
        return false;
    }
    try {
        readFrom(text);
    } catch (const fn::Exception& exception) {
        FN_LOG(Error, Formatter)("Error while parsing SubtitleReference: {}", exception);
        return false;
    }
    return true;
}

fn::logging::Category* SubtitleReference::_fn_getLoggingCategoryStatic() {
    static fn::logging::Category* const category = loggingCategory("subtitleReference");
    return category;
}

fn::logging::Tag SubtitleReference::_fn_getLoggingTag() const {
    return _fn_getLoggingTagStatic();
}

fn::logging::Tag SubtitleReference::_fn_getLoggingTagStatic() {
    return {};
}

}  // namespace subtitles
