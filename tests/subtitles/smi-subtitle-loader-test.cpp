// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/smi-subtitle-loader.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/exception.h"

#include "tests/support/describe.h"
#include "tests/support/file-watch.h"
#include "tests/support/temporary-folder.h"

namespace subtitles {
namespace {

constexpr char twoLanguages[] =
    "<SAMI><HEAD><STYLE TYPE=\"text/css\"><!--\n"
    ".ENCC {Name:English; lang:en-US;}\n"
    ".KRCC {Name:Korean; lang:ko-KR;}\n"
    "--></STYLE></HEAD><BODY>\n"
    "<SYNC Start=1000><P Class=KRCC>\xC7\xD1\xB1\xDB \xC0\xDA\xB8\xB7\xC0\xC7 \xC3\xB9 \xC1\xD9"
    "<P Class=ENCC>First line\n"
    "<SYNC Start=3000><P Class=KRCC>&nbsp;<P Class=ENCC>&nbsp;\n"
    "<SYNC Start=5000><P Class=KRCC>\xB5\xCE \xB9\xF8\xC2\xB0 \xC1\xD9\xC0\xD4\xB4\xCF\xB4\xD9"
    "<P Class=ENCC>Second line\n"
    "</BODY></SAMI>\n";

class SMIFile : public testing::Test {
protected:
    /// The references of a file with these contents: class, code and name of each.
    std::string analyze(const std::string& name, const std::string& contents) {
        references = loader.analyzeFile(
            fn::Path::parsePath(folder.writeFile(name, contents), fn::Path::Style{}));
        std::string text;
        for (const SubtitleReference& reference : references) {
            EXPECT_EQ(reference.type, SubtitleReference::FILE);
            EXPECT_EQ(reference.mimeType, "application/x-smi");
            EXPECT_EQ(reference.path, folder.path(name));
            text += "[";
            for (const auto& [key, value] : reference.loaderProperties) {
                text += key + "=" + value + " ";
            }
            text += reference.languageCode + "/" + reference.customLanguageName + "]";
        }
        return text;
    }

    std::string load(std::size_t index, const char* encoding = "") {
        return describe(*loader.loadSubtitle(references.at(index), encoding));
    }

    test::TemporaryFolder folder;
    SMISubtitleLoader loader;
    std::vector<SubtitleReference> references;
};

TEST_F(SMIFile, TwoClassesAreTwoReferences) {
    EXPECT_EQ(analyze("x.smi", twoLanguages), "[class=encc en/][class=krcc ko/]");
}

TEST_F(SMIFile, ReferencesLoadTheirLanguageOnly) {
    analyze("x.smi", twoLanguages);
    ASSERT_EQ(references.size(), 2U);
    EXPECT_EQ(load(0),
              "application/x-attributed-text ns | 1000000000+1999999999 [First line] | "
              "5000000000+5000000000 [Second line]");
    EXPECT_NE(load(1).find("\xED\x95\x9C\xEA\xB8\x80"), std::string::npos);
    EXPECT_EQ(load(1), load(1, "CP949"));
}

TEST_F(SMIFile, IsReadOnceToDetectAndOnceToParse) {
    const fn::Path path = fn::Path::parsePath(folder.writeFile("x.smi", twoLanguages));
    const test::FileWatch watch(folder.path());
    references = loader.analyzeFile(path);
    EXPECT_EQ(watch.opened().size(), 2U);
    load(0);
    EXPECT_EQ(watch.opened().size(), 2U);
    load(0, "CP949");
    EXPECT_EQ(watch.opened().size(), 1U);
}

TEST_F(SMIFile, ExtensionCountsInAnyCase) {
    EXPECT_NE(analyze("x.SMI", twoLanguages), "");
    EXPECT_NE(analyze("x.Sami", twoLanguages), "");
    EXPECT_EQ(analyze("x.txt", twoLanguages), "");
}

TEST_F(SMIFile, OtherExtensionIsNotOpened) {
    EXPECT_TRUE(
        loader.analyzeFile(fn::Path::parsePath("/nowhere/x.txt", fn::Path::Style{})).empty());
    EXPECT_THROW(loader.analyzeFile(fn::Path::parsePath("/nowhere/x.smi", fn::Path::Style{})),
                 fn::Exception);
}

TEST_F(SMIFile, OrderOfStyleAndBodyPlaysNoPart) {
    EXPECT_EQ(analyze("x.smi",
                      "<SAMI><BODY><SYNC Start=1><P Class=K>a</P></SYNC></BODY>"
                      "<STYLE>.K {lang:ko} </STYLE></SAMI>"),
              "[class=k ko/]");
}

TEST_F(SMIFile, DocumentWithoutClassesIsOneReference) {
    EXPECT_EQ(analyze("x.smi", "<SAMI><SYNC Start=1><P>a<SYNC Start=9000><P>b</SAMI>"), "[/]");
    EXPECT_EQ(load(0),
              "application/x-attributed-text ns | 1000000+8998999999 [a] | "
              "9000000000+5000000000 [b]");
}

TEST_F(SMIFile, DocumentWithoutTextIsNoReference) {
    EXPECT_EQ(analyze("x.smi", ""), "");
    EXPECT_EQ(analyze("x.smi", "  12 14  0  0  0  0            999 V2000\n"), "");
}

TEST_F(SMIFile, ClassThatIsNotInTheFileLoadsNothing) {
    analyze("x.smi", twoLanguages);
    references[0].loaderProperties["class"] = "jpcc";
    EXPECT_EQ(load(0), "application/x-attributed-text ns");
}

TEST_F(SMIFile, WantedClassIsTakenAsItStands) {
    analyze("x.smi", twoLanguages);
    references[0].loaderProperties["class"] = "ENCC";
    EXPECT_EQ(load(0), "application/x-attributed-text ns");
}

TEST_F(SMIFile, PropertiesSurviveSerialisation) {
    analyze("x.smi", twoLanguages);
    SubtitleReference copy;
    ASSERT_TRUE(copy.deserialize(references[1].serialize()));
    EXPECT_EQ(copy.loaderProperties, references[1].loaderProperties);
    EXPECT_TRUE(loader.canHandle(copy));
}

TEST_F(SMIFile, CanHandleAsksForTypeAndMimeType) {
    SubtitleReference reference;
    reference.mimeType = "application/x-smi";
    EXPECT_FALSE(loader.canHandle(reference));
    reference.type = SubtitleReference::STREAM;
    EXPECT_FALSE(loader.canHandle(reference));
    reference.type = SubtitleReference::FILE;
    EXPECT_TRUE(loader.canHandle(reference));
    reference.mimeType = "application/x-srt";
    EXPECT_FALSE(loader.canHandle(reference));
}

TEST_F(SMIFile, UnknownEncodingIsNamed) {
    analyze("x.smi", twoLanguages);
    try {
        load(0, "no-such-encoding");
        ADD_FAILURE() << "nothing was raised";
    } catch (const fn::Exception& exception) {
        EXPECT_NE(exception.displayText().find("no-such-encoding"), fn::String::npos);
    }
}

struct SampleCase {
    const char* name;
    const char* references;  ///< Class, code and name of each.
    std::vector<const char*> cues;
};

class SMISample : public testing::TestWithParam<SampleCase> {};

TEST_P(SMISample, GivesItsLanguagesAndTheirCues) {
    const std::string file =
        std::string(std::getenv("SUBTITLES_SAMPLES")) + "/smi/" + GetParam().name;
    SMISubtitleLoader loader;
    std::string told;
    std::vector<std::string> cues;
    for (const SubtitleReference& reference : loader.analyzeFile(fn::Path::parsePath(file))) {
        const auto found = reference.loaderProperties.find("class");
        told += "[" + (found != reference.loaderProperties.end() ? found->second : "") + " " +
                reference.languageCode + "/" + reference.customLanguageName + "]";
        cues.push_back(describe(*loader.loadSubtitle(reference, "")));
    }
    EXPECT_EQ(told, GetParam().references);
    EXPECT_EQ(cues, std::vector<std::string>(GetParam().cues.begin(), GetParam().cues.end()));
}

const SampleCase samples[] = {
    {"no-end-tags.ko.smi",
     "[krcc ko/]",
     {"application/x-attributed-text ns | 1200000000+2749999999 [\uC624\uB298 \uC544\uCE68\uC740 "
      "\uC548\uAC1C\uAC00 \uC9D9\uB124\uC694.] | "
      "5410000000+2689999999 [\uC5F0\uB77D\uC120\uC774 \uB610 \uB2A6\uACA0\uC5B4\uC694.] | "
      "8240000000+4999999999 [- \uC5EC\uAE30\uB294 \uCC98\uC74C\uC774\uC2DC\uC8E0?\\n- "
      "\uC5B4\uC81C ]"
      "[weight=700: \uB9C8\uC9C0\uB9C9 \uBC30\uB85C][ \uC654\uC2B5\uB2C8\uB2E4.] | "
      "13380000000+2749999999 [\uADF8\uB7FC \uC624\uB798\uB41C \uC5EC\uAD00\uC5D0\uC11C "
      "\uC8FC\uBB34\uC168\uACA0\uB124\uC694.] | "
      "16270000000+3349999999 [\uCE68\uB300\uB294 \uC9E7\uC558\uC9C0\uB9CC\\n\uC218\uD504\uB294 "
      "\uB9DB\uC788\uC5C8\uC2B5\uB2C8\uB2E4.] | "
      "19760000000+5000000000 [\uC774 \uD56D\uAD6C\uC5D0\uB294 \uBB34\uC2A8 \uC77C\uB85C "
      "\uC624\uC168\uB098\uC694?]"}},
    {"all-end-tags.smi",
     "[enuscc en/][forced /FORCED][latin /Harbour]",
     {"application/x-attributed-text ns | "
      "1200000000+2749999999 [The fog is thick this morning.] | "
      "5410000000+2689999999 [style=2: The ferry][ will be late\\nagain.]",
      "application/x-attributed-text ns | "
      "1200000000+2749999999 [THE HARBOUR]",
      "application/x-attributed-text ns | "
      "1200000000+2749999999 [Ze fock is sick zis mornink.] | "
      "5410000000+2689999999 [Ze verry.]"}},
    {"no-classes.smi",
     "[ /]",
     {"application/x-attributed-text ns | "
      "1200000000+4209999999 [The fog is thickthis morning.] | "
      "5410000000+5000000000 [The ferry will be late again.]"}},
};

INSTANTIATE_TEST_SUITE_P(Files, SMISample, testing::ValuesIn(samples), [](const auto& test) {
    std::string name = test.param.name;
    std::replace_if(
        name.begin(), name.end(), [](char byte) { return byte == '-' || byte == '.'; }, '_');
    return name;
});

}  // namespace
}  // namespace subtitles
