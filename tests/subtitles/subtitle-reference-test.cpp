// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/subtitle-reference.h"

#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/describe.h"
#include "tests/support/log-recorder.h"

using subtitles::SubtitleReference;

namespace {

/// Every field, in order: "0|mime|code|custom|name|path|key=value,|stream".
std::string print(const SubtitleReference& reference) {
    std::ostringstream out;
    out << static_cast<int>(reference.type) << '|' << reference.mimeType << '|'
        << reference.languageCode << '|' << reference.customLanguageName << '|' << reference.name
        << '|' << subtitles::escaped(fn::to_string_view(reference.path)) << '|';
    for (const auto& [key, value] : reference.loaderProperties) {
        out << key << '=' << value << ',';
    }
    out << '|' << reference.streamName;
    return out.str();
}

/// One with something in every field.
SubtitleReference filled(SubtitleReference::Type type) {
    SubtitleReference reference;
    reference.type = type;
    reference.mimeType = "mime";
    reference.languageCode = "en";
    reference.customLanguageName = "custom";
    reference.name = "name";
    reference.path = "/path";
    reference.loaderProperties = {{"class", "encc"}, {"other", "2"}};
    reference.streamName = "stream";
    return reference;
}

/// White space is the writer's own business.
std::string compact(const fn::String& json) {
    std::string text;
    for (const char byte : json) {
        if (byte != ' ' && byte != '\n') {
            text += byte;
        }
    }
    return text;
}

}  // namespace

TEST(SubtitleReference, StartsWithoutType) {
    EXPECT_EQ(print(SubtitleReference()), "-1|||||||");
    EXPECT_EQ(SubtitleReference::INVALID, -1);
    EXPECT_EQ(SubtitleReference::FILE, 0);
    EXPECT_EQ(SubtitleReference::STREAM, 1);
}

TEST(SubtitleReference, IsCopiedWhole) {
    const SubtitleReference original = filled(SubtitleReference::FILE);
    const SubtitleReference copy(original);
    SubtitleReference assigned;
    assigned = original;
    EXPECT_EQ(print(copy), "0|mime|en|custom|name|/path|class=encc,other=2,|stream");
    EXPECT_EQ(print(assigned), print(original));
}

struct LanguageName {
    const char* name;
    const char* code;
    const char* custom;
    const char* expected;
};

class SubtitleReferenceLanguageName : public testing::TestWithParam<LanguageName> {};

TEST_P(SubtitleReferenceLanguageName, Is) {
    SubtitleReference reference;
    reference.languageCode = GetParam().code;
    reference.customLanguageName = GetParam().custom;
    EXPECT_EQ(reference.languageName(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, SubtitleReferenceLanguageName,
    testing::Values(LanguageName{"OfTheCode", "en", "", "English"},
                    LanguageName{"OfTheCodeInUpperCase", "EN", "", "English"},
                    LanguageName{"UnknownForAnUnknownCode", "xx", "", "Unknown"},
                    LanguageName{"UnknownWithoutCode", "", "", "Unknown"},
                    LanguageName{"TheCustomOneWithoutCode", "", "Deutsch", "Deutsch"},
                    LanguageName{"TheCustomOneBeforeTheCode", "en", "Deutsch", "Deutsch"}),
    [](const auto& test) { return test.param.name; });

struct Serialized {
    const char* name;
    SubtitleReference reference;
    const char* expected;
};

SubtitleReference englishFile() {
    SubtitleReference reference;
    reference.type = SubtitleReference::FILE;
    reference.mimeType = "application/x-srt";
    reference.languageCode = "en";
    reference.path = "/films/a.en.srt";
    return reference;
}

class SubtitleReferenceSerialize : public testing::TestWithParam<Serialized> {};

TEST_P(SubtitleReferenceSerialize, Writes) {
    EXPECT_EQ(compact(GetParam().reference.serialize()), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, SubtitleReferenceSerialize,
    testing::Values(
        Serialized{"AnEnglishFile", englishFile(),
                   R"({"language-code":"en","mime-type":"application/x-srt","name":"",)"
                   R"("path":"/films/a.en.srt","type":0})"},
        Serialized{"EveryKeyOfAFileInByteOrder", filled(SubtitleReference::FILE),
                   R"({"language-code":"en","language-name":"custom",)"
                   R"("loader-properties":{"class":"encc","other":"2"},"mime-type":"mime",)"
                   R"("name":"name","path":"/path","type":0})"},
        Serialized{"TheStreamNameOfAStreamAlone", filled(SubtitleReference::STREAM),
                   R"({"language-code":"en","language-name":"custom","mime-type":"mime",)"
                   R"("name":"name","stream-name":"stream","type":1})"},
        Serialized{"NeitherOfWhatIsNotSet", filled(SubtitleReference::INVALID),
                   R"({"language-code":"en","language-name":"custom","mime-type":"mime",)"
                   R"("name":"name","type":-1})"},
        Serialized{"NeitherOfATypeThatNobodyKnows", filled(SubtitleReference::Type{7}),
                   R"({"language-code":"en","language-name":"custom","mime-type":"mime",)"
                   R"("name":"name","type":7})"},
        Serialized{"EmptyTextsThatAreAlwaysThere", SubtitleReference(),
                   R"({"language-code":"","mime-type":"","name":"","type":-1})"}),
    [](const auto& test) { return test.param.name; });

TEST(SubtitleReferenceSerialize, WritesTheEmptyStreamNameOfAStream) {
    SubtitleReference reference;
    reference.type = SubtitleReference::STREAM;
    EXPECT_EQ(compact(reference.serialize()),
              R"({"language-code":"","mime-type":"","name":"","stream-name":"","type":1})");
}

class SubtitleReferenceDeserialize : public testing::Test {
protected:
    /// Puts the library's own sink in place first, so that the recorder's comes after it.
    SubtitleReferenceDeserialize() { SubtitleReference::_fn_getLoggingCategoryStatic(); }

    /// Reads the text into one that is filled, and gives the result and the fields.
    static std::string read(const fn::String& text) {
        SubtitleReference reference = filled(SubtitleReference::FILE);
        const bool result = reference.deserialize(text);
        return (result ? "true " : "false ") + print(reference);
    }
};

TEST_F(SubtitleReferenceDeserialize, LeavesEverythingForAnEmptyTextAndSaysNothing) {
    const test::LogRecorder log;
    EXPECT_EQ(read(""), "false 0|mime|en|custom|name|/path|class=encc,other=2,|stream");
    EXPECT_EQ(log.lines(), "");
}

TEST_F(SubtitleReferenceDeserialize, ReadsADocumentWithoutTypeAndTouchesNeitherPathNorStream) {
    EXPECT_EQ(read(R"({"mime-type":"m","path":"/new","stream-name":"new"})"),
              "true -1|m||||/path|class=encc,other=2,|stream");
}

TEST_F(SubtitleReferenceDeserialize, EmptiesFieldsWhoseKeysAreMissing) {
    EXPECT_EQ(read("{}"), "true -1|||||/path|class=encc,other=2,|stream");
    EXPECT_EQ(read(R"({"type":0})"), "true 0||||||class=encc,other=2,|stream");
    EXPECT_EQ(read(R"({"type":1})"), "true 1|||||/path|class=encc,other=2,|");
}

TEST_F(SubtitleReferenceDeserialize, ReadsAnyOtherTypeWithoutPathAndStream) {
    EXPECT_EQ(read(R"({"type":-7,"path":"/new","stream-name":"new"})"),
              "true -7|||||/path|class=encc,other=2,|stream");
}

TEST_F(SubtitleReferenceDeserialize, TakesNullForTypeAsAFile) {
    EXPECT_EQ(read(R"({"type":null,"path":"/new"})"), "true 0|||||/new|class=encc,other=2,|stream");
}

TEST_F(SubtitleReferenceDeserialize, TakesBoolsForNumbers) {
    EXPECT_EQ(read(R"({"type":true,"stream-name":"s"})"), "true 1|||||/path|class=encc,other=2,|s");
    EXPECT_EQ(read(R"({"type":false,"path":"/p"})"), "true 0|||||/p|class=encc,other=2,|stream");
}

TEST_F(SubtitleReferenceDeserialize, TakesANumberWithAnEmptyFraction) {
    EXPECT_EQ(read(R"({"type":1.0,"stream-name":"new"})"),
              "true 1|||||/path|class=encc,other=2,|new");
}

TEST_F(SubtitleReferenceDeserialize, KeepsTheLoaderPropertiesThatTheDocumentDoesNotName) {
    EXPECT_EQ(read(R"({"type":0,"loader-properties":{"class":"krcc","new":"3"}})"),
              "true 0||||||class=krcc,new=3,other=2,|stream");
    EXPECT_EQ(read(R"({"type":0,"loader-properties":{}})"),
              "true 0||||||class=encc,other=2,|stream");
}

TEST_F(SubtitleReferenceDeserialize, PassesOverLoaderPropertiesThatAreNoObject) {
    for (const char* value : {"null", "1", "\"text\"", "[]", "[1,{}]", "true"}) {
        const fn::String text =
            fn::String(R"({"path":"/new","type":0,"loader-properties":)") + value + "}";
        EXPECT_EQ(read(text), "true 0|||||/new|class=encc,other=2,|stream") << value;
    }
}

TEST_F(SubtitleReferenceDeserialize, PassesOverLoaderPropertiesOfAStream) {
    EXPECT_EQ(read(R"({"type":1,"loader-properties":{"class":"krcc"}})"),
              "true 1|||||/path|class=encc,other=2,|");
}

TEST_F(SubtitleReferenceDeserialize, PassesOverUnknownKeysOfAnyKind) {
    EXPECT_EQ(read(R"({"a":[1,[2,{"b":null}]],"c":{"d":[]},"name":"n","z":1e3})"),
              "true -1||||n|/path|class=encc,other=2,|stream");
}

struct Failure {
    const char* name;
    const char* text;
    const char* fields;   ///< What stands in the fields afterwards.
    const char* message;  ///< How the log's message begins.
};

class SubtitleReferenceFailure : public testing::TestWithParam<Failure> {};

TEST_P(SubtitleReferenceFailure, IsLoggedAndLeavesWhatWasRead) {
    SubtitleReference::_fn_getLoggingCategoryStatic();
    const test::LogRecorder log;
    SubtitleReference reference = filled(SubtitleReference::FILE);
    EXPECT_FALSE(reference.deserialize(GetParam().text));
    EXPECT_EQ(print(reference), GetParam().fields);
    ASSERT_EQ(log.records().size(), 1U) << log.lines();
    const test::LogRecorder::Record record = log.records().front();
    EXPECT_EQ(record.category, "subtitleReference");
    EXPECT_EQ(record.priority, 2);
    EXPECT_EQ(record.function, "deserialize");
    EXPECT_THAT(record.text,
                testing::StartsWith(std::string("Error while parsing SubtitleReference: ") +
                                    GetParam().message));
}

constexpr const char* unchanged = "0|mime|en|custom|name|/path|class=encc,other=2,|stream";
constexpr const char* notIntegral = "Value can not be implicitly converted to integral type\n";
constexpr const char* lossy = "Value can not be converted to requested type without loss\n";

INSTANTIATE_TEST_SUITE_P(
    Cases, SubtitleReferenceFailure,
    testing::Values(Failure{"NoJson", "nonsense", unchanged, ""},
                    Failure{"CutShort", R"({"type":0)", unchanged, ""},
                    Failure{"Blank", " ", unchanged, ""}, Failure{"AnArray", "[]", unchanged, ""},
                    Failure{"AString", "\"text\"", unchanged, ""},
                    Failure{"ANumber", "1", unchanged, ""}, Failure{"Null", "null", unchanged, ""},
                    Failure{"TypeAsText", R"({"type":"0"})", unchanged, notIntegral},
                    Failure{"TypeAsObject", R"({"type":{}})", unchanged, notIntegral},
                    Failure{"TypeWithFraction", R"({"type":1.5})", unchanged, lossy},
                    Failure{"TypeTooLarge", R"({"type":2147483648})", unchanged, lossy},
                    Failure{"TypeTooSmall", R"({"type":-2147483649})", unchanged, lossy},
                    Failure{"TypeFarTooLarge", R"({"type":1e300})", unchanged, lossy}),
    [](const auto& test) { return test.param.name; });

TEST(SubtitleReferenceRoundTrip, LosesTheStreamNameOfAFile) {
    SubtitleReference reference;
    ASSERT_TRUE(reference.deserialize(filled(SubtitleReference::FILE).serialize()));
    EXPECT_EQ(print(reference), "0|mime|en|custom|name|/path|class=encc,other=2,|");
}

TEST(SubtitleReferenceRoundTrip, LosesThePathAndThePropertiesOfAStream) {
    SubtitleReference reference;
    ASSERT_TRUE(reference.deserialize(filled(SubtitleReference::STREAM).serialize()));
    EXPECT_EQ(print(reference), "1|mime|en|custom|name|||stream");
}

TEST(SubtitleReferenceRoundTrip, KeepsAnEmptyCustomNameEmpty) {
    SubtitleReference reference;
    ASSERT_TRUE(reference.deserialize(englishFile().serialize()));
    EXPECT_EQ(reference.customLanguageName, "");
    EXPECT_EQ(reference.languageName(), "English");
}

TEST(SubtitleReferenceRoundTrip, KeepsEveryByteOfAPath) {
    SubtitleReference reference = englishFile();
    reference.path = "/";
    for (int byte = 1; byte < 256; ++byte) {
        reference.path += static_cast<char>(byte);
    }
    SubtitleReference read;
    ASSERT_TRUE(read.deserialize(reference.serialize()));
    EXPECT_EQ(print(read), print(reference));
}

TEST(SubtitleReferenceRoundTrip, KeepsTextsOfAnyScript) {
    SubtitleReference reference = filled(SubtitleReference::FILE);
    reference.name = "\xED\x95\x9C\xEA\xB8\x80 \"quoted\" \\ / \n \xF0\x9F\x98\x80";
    reference.loaderProperties = {{"\xC3\xA9", "\xE2\x82\xAC"}, {"", ""}};
    reference.streamName = "";
    SubtitleReference read;
    ASSERT_TRUE(read.deserialize(reference.serialize()));
    EXPECT_EQ(print(read), print(reference));
}

TEST(SubtitleReferenceLogging, HasItsCategoryAndAnEmptyTag) {
    EXPECT_EQ(SubtitleReference::_fn_getLoggingCategoryStatic()->name(), "subtitleReference");
    EXPECT_EQ(SubtitleReference::_fn_getLoggingCategoryStatic(),
              SubtitleReference::_fn_getLoggingCategoryStatic());
    for (const fn::logging::Tag& tag :
         {SubtitleReference()._fn_getLoggingTag(), SubtitleReference::_fn_getLoggingTagStatic()}) {
        EXPECT_EQ(tag.name, "");
        EXPECT_EQ(tag.number, 0);
    }
}
