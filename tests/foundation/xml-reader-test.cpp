// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/xml-reader.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <ostream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/temporary-folder.h"

namespace {

using fn::XMLReader;

XMLReader readerFor(const fn::String& text) {
    return XMLReader::readerForText(text, XMLReader::SubstituteEntities);
}

std::string printNode(const XMLReader& reader) {
    switch (reader.nodeType()) {
        case XMLReader::StartTag:
            return "<" + reader.name() + (reader.isEmptyElement() ? "/>" : ">");
        case XMLReader::EndTag: return "</" + reader.name() + ">";
        case XMLReader::Text: return "[" + reader.value() + "]";
        case XMLReader::WhiteSpace: return "_";
        default: return "{" + std::to_string(reader.nodeType()) + "}";
    }
}

/// The nodes, and "failed" behind them where the reader says so.
std::string print(const fn::String& text) {
    XMLReader reader = readerFor(text);
    std::string nodes;
    while (reader.read(false)) {
        EXPECT_FALSE(reader.failed);
        nodes += printNode(reader);
    }
    EXPECT_EQ(reader.nodeType(), XMLReader::NoNode);
    EXPECT_FALSE(reader.read(false));
    return nodes + (reader.failed ? "failed" : "");
}

struct Case {
    const char* name;
    const char* text;
    const char* expected;
};

void PrintTo(const Case& test, std::ostream* out) {
    *out << test.text;
}

constexpr Case cases[] = {
    {"TagsAndText", "<r>a<b>c</b>d</r>", "<r>[a]<b>[c]</b>[d]</r>"},
    {"SelfClosedTagHasNoEnd", "<r><b/><b /></r>", "<r><b/><b/></r>"},
    {"TagWithoutContentHasAnEnd", "<r><b></b><i a='1'></i></r>", "<r><b></b><i></i></r>"},
    {"SelfClosedRoot", "<r/>", "<r/>"},
    {"RootWithoutContent", "<r></r>", "<r></r>"},
    {"WhiteSpaceAloneHasItsOwnType", "<r> <b>x</b>\n<b> y </b></r>",
     "<r>_<b>[x]</b>_<b>[ y ]</b></r>"},
    {"ReferencesAreExpanded", "<r>a&lt;&amp;&gt;&quot;&apos;&#65;&#x20ac;</r>",
     "<r>[a<&>\"'A\xe2\x82\xac]</r>"},
    {"NoBreakSpaceIsText", "<r>&#160;</r>", "<r>[\xc2\xa0]</r>"},
    {"CaseOfNamesStays", "<r><B>x</B></r>", "<r><B>[x]</B></r>"},
    {"PrefixBelongsToTheName", "<r xmlns:p='u'><p:b>x</p:b></r>", "<r><p:b>[x]</p:b></r>"},
    {"UndeclaredPrefixIsNoDefect", "<r><p:b>x</p:b></r>", "<r><p:b>[x]</p:b></r>"},
    {"CommentSplitsText", "<r>a<!--x-->b</r>", "<r>[a]{8}[b]</r>"},
    {"CommentsMayHoldOneHyphen", "<r><!-- a-b -> <b> --><!-->--></r>", "<r>{8}{8}</r>"},
    {"SectionsMayHoldHyphens", "<r><![CDATA[<!-- -- ]]><?x <!-- -- ?></r>", "<r>{4}{7}</r>"},
    {"CDataHasItsOwnType", "<r>a<![CDATA[<x>]]>b</r>", "<r>[a]{4}[b]</r>"},
    {"Instruction", "<r>a<?x y?>b</r>", "<r>[a]{7}[b]</r>"},
    {"LineEndsAreOneLineFeed", "<r>a\r\nb\rc</r>", "<r>[a\nb\nc]</r>"},
    {"ByteOrderMark", "\xef\xbb\xbf<r>a</r>", "<r>[a]</r>"},
    {"DeclaredEncodingIsIgnored", "<?xml version='1.0' encoding='ISO-8859-1'?><r>\xc3\xa4</r>",
     "<r>[\xc3\xa4]</r>"},
    {"UnknownEncodingIsIgnored", "<?xml version='1.0' encoding='none'?><r>\xc3\xa4</r>",
     "<r>[\xc3\xa4]</r>"},
    {"InnerEntity", "<!DOCTYPE r [<!ENTITY e 'x<b>y</b>z'>]><r>1&e;2&e;3</r>",
     "{10}<r>[1x]<b>[y]</b>[z2x]<b>[y]</b>[z3]</r>"},
    {"EmptyTagsInAnEntity", "<!DOCTYPE r [<!ENTITY e '<b/><i></i>'>]><r>&e;&e;</r>",
     "{10}<r><b/><i></i><b/><i></i></r>"},
    {"EmptyEntity", "<!DOCTYPE r [<!ENTITY e ''>]><r>1&e;2</r>", "{10}<r>[12]</r>"},
    {"NestedEntities", "<!DOCTYPE r [<!ENTITY a 'x'><!ENTITY b '&a;&a;'>]><r>&b;&b;</r>",
     "{10}<r>[xxxx]</r>"},

    {"Empty", "", "failed"},
    {"TextAlone", "abc", "failed"},
    {"WhiteSpaceAlone", " \n", "failed"},
    {"UnclosedTagAtTheEnd", "<r>a<b>c</b>d<i>e", "<r>[a]<b>[c]</b>[d]<i>[e]failed"},
    {"UnclosedTagInATag", "<r>a<b>c</b>d<i>e</r>", "<r>[a]<b>[c]</b>[d]<i>[e]failed"},
    {"UnclosedTagWithoutContent", "<r>a<i></r>", "<r>[a]<i>failed"},
    {"UnclosedRoot", "<r>", "<r>failed"},
    {"UnclosedBehindEmptyTags", "<r><b/><b></b><b>", "<r><b/><b></b><b>failed"},
    {"WrongEndTag", "<r><b>x</i></r>", "<r><b>[x]failed"},
    {"EndTagTooMany", "<r>x</r></r>", "<r>[x]</r>failed"},
    {"SecondRoot", "<r>x</r><r/>", "<r>[x]</r>failed"},
    {"TextBehindTheRoot", "<r>x</r>y", "<r>[x]</r>failed"},
    {"LoneAmpersand", "<r><b>x</b>a & b</r>", "<r><b>[x]</b>[a ]failed"},
    {"UndeclaredEntity", "<r>a&nbsp;b</r>", "<r>[a]failed"},
    {"LoneLess", "<r>a < b</r>", "<r>[a ]failed"},
    {"AttributeWithoutQuotes", "<r>a<b x=1>c</b></r>", "<r>[a]failed"},
    {"AttributeTwice", "<r>a<b x='1' x='2'>c</b></r>", "<r>[a]failed"},
    {"MalformedUTF8", "<r>a<b>c</b>\xff</r>", "<r>[a]<b>[c]</b>failed"},
    {"ControlCharacter", "<r>a<b>c</b>\x01</r>", "<r>[a]<b>[c]</b>failed"},
    {"CDataEndInText", "<r><b/>]]></r>", "<r><b/>failed"},
    {"HyphensInAComment", "<r>a<b/><!--x--y--></r>", "<r>[a]<b/>failed"},
    {"CommentWithoutEnd", "<r>a<b/><!--x-></r>", "<r>[a]<b/>failed"},
    {"CDataWithoutEnd", "<r>a<b/><![CDATA[x]></r>", "<r>[a]<b/>failed"},
    {"InstructionWithoutEnd", "<r>a<b/><?x ></r>", "<r>[a]<b/>failed"},
    {"EntityThatContainsItself",
     "<!DOCTYPE r [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><r>x<b/>&a;y</r>", "{10}<r>[x]<b/>failed"},
    {"EntityWithHalfATag", "<!DOCTYPE r [<!ENTITY e '<b>'>]><r>x&e;y</b></r>", "{10}<r>[x]failed"},
};

class XMLReaderNodes : public testing::TestWithParam<Case> {};

TEST_P(XMLReaderNodes, Are) {
    EXPECT_EQ(print(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, XMLReaderNodes, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(XMLReaderNodes, NulByteIsADefect) {
    EXPECT_EQ(print(fn::String("<r>a<b/>\0</r>", 13)), "<r>[a]<b/>failed");
    EXPECT_EQ(print(fn::String("<r>a</r>\0", 9)), "<r>[a]</r>failed");
}

TEST(XMLReaderNodes, NumbersAreTheTextReaders) {
    EXPECT_EQ(XMLReader::StartTag, 1);
    EXPECT_EQ(XMLReader::Text, 3);
    EXPECT_EQ(XMLReader::EndTag, 15);
    EXPECT_EQ(XMLReader::SubstituteEntities, 2);
}

TEST(XMLReaderNodes, FailOnlyWhereTheReaderReachesTheDefect) {
    const fn::String text = "<r>a<b>c</r>";
    XMLReader reader = readerFor(text);
    EXPECT_FALSE(reader.failed);
    for (const char* node : {"<r>", "[a]", "<b>", "[c]"}) {
        ASSERT_TRUE(reader.read(false));
        EXPECT_EQ(printNode(reader), node);
        EXPECT_FALSE(reader.failed);
    }
    EXPECT_FALSE(reader.read(false));
    EXPECT_TRUE(reader.failed);
}

TEST(XMLReaderNodes, EveryPrefixOfATextFailsBehindWhatItHolds) {
    const std::string text =
        "<?xml version='1.0'?><!DOCTYPE r [<!ENTITY e '<u>x</u>'>]>"
        "<r a='1'>t &amp; <b></b><i/>&e;<!-- c --><![CDATA[d]]></r>";
    const std::string whole = print(text);
    ASSERT_EQ(whole, "{10}<r>[t & ]<b></b><i/><u>[x]</u>{8}{4}</r>");
    std::size_t longest = 0;
    for (std::size_t size = 0; size < text.size(); ++size) {
        const std::string nodes = print(text.substr(0, size));
        ASSERT_GE(nodes.size(), 6U) << size;
        ASSERT_EQ(nodes.substr(nodes.size() - 6), "failed") << size;
        longest = std::max(longest, nodes.size());
        // A text that is cut is one of the whole's, with its last characters missing.
        std::string held = nodes.substr(0, nodes.size() - 6);
        if (!held.empty() && held.back() == ']') {
            held.pop_back();
        }
        EXPECT_EQ(whole.substr(0, held.size()), held) << size;
    }
    EXPECT_EQ(longest, whole.size() - 4 + 6);
}

TEST(XMLReaderRead, SkipsContentWhereItIsAskedTo) {
    const fn::String text = "<r><a><b>x</b>y<c/></a><d/>z</r>";
    XMLReader reader = readerFor(text);
    std::string nodes;
    reader.read(true);
    nodes += printNode(reader);
    reader.read(false);
    nodes += printNode(reader);
    while (reader.read(true)) {
        nodes += printNode(reader);
    }
    EXPECT_EQ(nodes, "<r><a></a><d/>[z]</r>");
    EXPECT_FALSE(reader.failed);
}

TEST(XMLReaderRead, SkippingOverADefectFails) {
    const fn::String text = "<r><a>x";
    XMLReader reader = readerFor(text);
    reader.read(false);
    reader.read(false);
    EXPECT_FALSE(reader.read(true));
    EXPECT_TRUE(reader.failed);
}

TEST(XMLReaderAttributes, AreReadFromStartTagsOnly) {
    const fn::String text =
        "<r size='12' font=\"a &amp; &quot;b&quot; &#65;\" empty='' xml:lang='en'>t</r>";
    XMLReader reader = readerFor(text);
    EXPECT_FALSE(reader.hasAttribute("size"));
    EXPECT_EQ(reader.getAttribute("size"), "");
    ASSERT_TRUE(reader.read(false));
    EXPECT_TRUE(reader.hasAttribute("size"));
    EXPECT_EQ(reader.getAttribute("size"), "12");
    EXPECT_EQ(reader.getAttribute("font"), "a & \"b\" A");
    EXPECT_TRUE(reader.hasAttribute("empty"));
    EXPECT_EQ(reader.getAttribute("empty"), "");
    EXPECT_EQ(reader.getAttribute("xml:lang"), "en");
    EXPECT_FALSE(reader.hasAttribute("Size"));
    EXPECT_FALSE(reader.hasAttribute("absent"));
    EXPECT_EQ(reader.getAttribute("absent"), "");
    ASSERT_TRUE(reader.read(false));
    EXPECT_FALSE(reader.hasAttribute("size"));
    ASSERT_TRUE(reader.read(false));
    EXPECT_EQ(reader.nodeType(), XMLReader::EndTag);
    EXPECT_FALSE(reader.hasAttribute("size"));
    EXPECT_FALSE(reader.isEmptyElement());
}

TEST(XMLReaderAttributes, ExpandEntities) {
    const fn::String text = "<!DOCTYPE r [<!ENTITY e 'x'>]><r a='1&e;2'/>";
    XMLReader reader = readerFor(text);
    reader.read(false);
    ASSERT_TRUE(reader.read(false));
    EXPECT_EQ(reader.getAttribute("a"), "1x2");
}

TEST(XMLReaderOptions, WithoutSubstitutionAReferenceIsANode) {
    const fn::String text = "<!DOCTYPE r [<!ENTITY e 'x'>]><r>1&e;2&amp;</r>";
    XMLReader reader = XMLReader::readerForText(text, 0);
    std::string nodes;
    while (reader.read(false)) {
        nodes += printNode(reader);
    }
    EXPECT_EQ(nodes, "{10}<r>[1]{5}[2&]</r>");
}

TEST(XMLReaderMove, TakesTheStateAlong) {
    const fn::String text = "<r>a<b>";
    XMLReader first = readerFor(text);
    first.read(false);
    XMLReader second(std::move(first));
    EXPECT_EQ(printNode(second), "<r>");
    second.read(false);
    second.read(false);
    second.read(false);
    first = std::move(second);
    EXPECT_TRUE(first.failed);
    EXPECT_FALSE(first.read(false));
}

// A text that names a file with a secret in every way that there is.
class XMLReaderSafety : public testing::Test {
protected:
    XMLReaderSafety() {
        _folder.writeFile("secret.xml", "SECRET");
        _folder.writeFile("outer.dtd", "<!ENTITY e 'SECRET'><!ATTLIST r a CDATA 'SECRET'>");
    }

    /// `text` with the folder's path in place of "$".
    std::string readIn(std::string text) const {
        for (std::size_t at = text.find('$'); at != std::string::npos; at = text.find('$')) {
            text.replace(at, 1, _folder.path());
        }
        const std::string nodes = print(text);
        XMLReader reader = readerFor(text);
        std::string attributes;
        while (reader.read(false)) {
            attributes += reader.getAttribute("a");
        }
        return nodes + attributes;
    }

private:
    test::TemporaryFolder _folder;
};

TEST_F(XMLReaderSafety, ExternalEntityReadsAsNothing) {
    EXPECT_EQ(readIn("<!DOCTYPE r [<!ENTITY e SYSTEM '$/secret.xml'>]><r>1&e;2</r>"),
              "{10}<r>[12]</r>");
    EXPECT_EQ(readIn("<!DOCTYPE r [<!ENTITY e SYSTEM 'file://$/secret.xml'>]><r>1&e;2</r>"),
              "{10}<r>[12]</r>");
    EXPECT_EQ(readIn("<!DOCTYPE r [<!ENTITY e PUBLIC 'x' '$/secret.xml'>]><r>1&e;2</r>"),
              "{10}<r>[12]</r>");
    EXPECT_EQ(readIn("<!DOCTYPE r [<!ENTITY e SYSTEM 'http://127.0.0.1:9/x'>]><r>1&e;2</r>"),
              "{10}<r>[12]</r>");
}

TEST_F(XMLReaderSafety, ExternalEntityInAnAttributeGivesNothingAway) {
    const std::string nodes =
        readIn("<!DOCTYPE r [<!ENTITY e SYSTEM '$/secret.xml'>]><r a='1&e;2'/>");
    EXPECT_EQ(nodes.find("SECRET"), std::string::npos) << nodes;
}

TEST_F(XMLReaderSafety, ExternalSubsetIsPassedOver) {
    const std::string nodes = readIn("<!DOCTYPE r SYSTEM '$/outer.dtd'><r>1<b/>2</r>");
    EXPECT_EQ(nodes, "{10}<r>[1]<b/>[2]</r>");
    const std::string used = readIn("<!DOCTYPE r SYSTEM '$/outer.dtd'><r>1&e;2</r>");
    EXPECT_EQ(used.find("SECRET"), std::string::npos) << used;
}

TEST_F(XMLReaderSafety, ExternalParameterEntityIsPassedOver) {
    const std::string nodes =
        readIn("<!DOCTYPE r [<!ENTITY % p SYSTEM '$/outer.dtd'> %p;]><r>1&e;2</r>");
    EXPECT_EQ(nodes.find("SECRET"), std::string::npos) << nodes;
}

TEST_F(XMLReaderSafety, DeclarationThatAnEntityBuildsIsNoWayAround) {
    const std::string nodes = readIn(
        "<!DOCTYPE r [<!ENTITY % p \"<!ENTITY e SY&#83;TEM '$/secret.xml'>\"> %p;]><r>1&e;2</r>");
    EXPECT_EQ(nodes, "{10}<r>[12]</r>");
}

TEST_F(XMLReaderSafety, InclusionIsAnOrdinaryTag) {
    EXPECT_EQ(readIn("<r xmlns:xi='http://www.w3.org/2001/XInclude'>"
                     "<xi:include href='$/secret.xml' parse='text'/></r>"),
              "<r><xi:include/></r>");
}

TEST_F(XMLReaderSafety, NothingIsPrinted) {
    testing::internal::CaptureStderr();
    for (const Case& test : cases) {
        print(test.text);
    }
    readIn("<!DOCTYPE r SYSTEM '$/missing.dtd' [<!ENTITY e SYSTEM '$/missing'>]><r>&e;&f;</r>");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

std::string repeat(const std::string& text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

struct Counts {
    std::size_t nodes = 0;
    std::size_t bytes = 0;
    bool failed = false;
};

Counts count(const fn::String& text) {
    Counts counts;
    XMLReader reader = readerFor(text);
    while (reader.read(false)) {
        ++counts.nodes;
        counts.bytes += reader.value().size();
    }
    counts.failed = reader.failed;
    return counts;
}

constexpr std::size_t longSize = 8U << 20U;

TEST(XMLReaderLong, TextOfMegabytesIsOneNode) {
    const Counts counts = count("<r>" + std::string(longSize, 'x') + "</r>");
    EXPECT_EQ(counts.nodes, 3U);
    EXPECT_EQ(counts.bytes, longSize);
    EXPECT_FALSE(counts.failed);
}

TEST(XMLReaderLong, AttributeOfMegabytes) {
    const fn::String text = "<r a='" + std::string(longSize, 'x') + "'/>";
    XMLReader reader = readerFor(text);
    ASSERT_TRUE(reader.read(false));
    EXPECT_EQ(reader.getAttribute("a").size(), longSize);
}

TEST(XMLReaderLong, ManyTags) {
    const std::size_t tags = longSize / 64;
    const Counts counts = count("<r>" + repeat("<b>x</b>", tags) + "</r>");
    EXPECT_EQ(counts.nodes, 3 * tags + 2);
    EXPECT_FALSE(counts.failed);
}

TEST(XMLReaderLong, DefectAtEveryByteEndsAtTheFirst) {
    for (const char* defect : {"<", "&", "</", "<!", "<!-", "]]>", "\xff", "\x01", "<b "}) {
        const Counts counts = count("<r>" + repeat(defect, longSize / 64) + "</r>");
        EXPECT_TRUE(counts.failed) << defect;
        EXPECT_EQ(counts.nodes, 1U) << defect;
    }
}

TEST(XMLReaderLong, ConstructWithoutEndFails) {
    for (const char* start : {"<!--", "<![CDATA[", "<?x ", "<!DOCTYPE", "<", "<b a='", "&"}) {
        for (const char* filling : {"x", "-", "]", "?", "!", ">", " ", "["}) {
            const std::string endless = start + repeat(filling, longSize / 64);
            for (const char* before : {"", "<r>", "<!DOCTYPE r [", "<r/>"}) {
                EXPECT_TRUE(count(before + endless).failed) << before << start << filling;
            }
        }
    }
}

std::string attributes(std::size_t count, const std::string& equals) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += " a" + std::to_string(i) + equals + "'>'";
    }
    return text;
}

TEST(XMLReaderLong, ManyAttributesAreRead) {
    const fn::String text = "<r>x<b" + attributes(250, "=") + "/></r>";
    XMLReader reader = readerFor(text);
    reader.read(false);
    reader.read(false);
    ASSERT_TRUE(reader.read(false));
    EXPECT_EQ(reader.getAttribute("a249"), ">");
    EXPECT_FALSE(count(text).failed);
}

TEST(XMLReaderLong, TagWithMoreAttributesIsADefect) {
    const std::string crowded = attributes(longSize / 16, "=");
    const Counts counts = count("<r>x<b" + crowded + "/></r>");
    EXPECT_TRUE(counts.failed);
    EXPECT_EQ(counts.nodes, 2U);
    EXPECT_TRUE(count("<!DOCTYPE r [<!ENTITY e \"<b" + crowded + "/>\">]><r>&e;</r>").failed);
    const std::string hidden = attributes(longSize / 16, "&#61;");
    EXPECT_TRUE(count("<!DOCTYPE r [<!ENTITY e \"&#60;b" + hidden + "/>\">]><r>&e;</r>").failed);
}

TEST(XMLReaderLong, EqualsSignsInTextAreNoAttributes) {
    const std::string signs(longSize / 8, '=');
    const Counts counts = count("<r>" + signs + "<b a='" + signs + "'/>" + signs + "</r>");
    EXPECT_FALSE(counts.failed);
    EXPECT_EQ(counts.bytes, 2 * signs.size());
}

TEST(XMLReaderLong, DeepNestingFailsBehindItsLimit) {
    const std::string deep = "<r>" + repeat("<b>", 200) + "x" + repeat("</b>", 200) + "</r>";
    EXPECT_FALSE(count(deep).failed);
    const Counts counts = count("<r>" + repeat("<b>", longSize / 4));
    EXPECT_TRUE(counts.failed);
    EXPECT_GE(counts.nodes, 250U);
    EXPECT_LE(counts.nodes, 3000U);
}

/// Declares e0 with `content`, and e1 to e(levels - 1) as ten times the one before.
std::string declareLevels(const std::string& content, int levels) {
    std::string text = "<!DOCTYPE r [<!ENTITY e0 '" + content + "'>";
    for (int i = 1; i < levels; ++i) {
        text += "<!ENTITY e" + std::to_string(i) + " '" +
                repeat("&e" + std::to_string(i - 1) + ";", 10) + "'>";
    }
    return text + "]>";
}

TEST(XMLReaderAmplification, OfEntitiesInEntitiesFails) {
    for (const char* content : {"0123456789", "<b/>", "x<b>y</b>"}) {
        const Counts counts = count(declareLevels(content, 10) + "<r>a&e9;b</r>");
        EXPECT_TRUE(counts.failed) << content;
        EXPECT_LE(counts.bytes, longSize) << content;
        EXPECT_LE(counts.nodes, longSize) << content;
    }
}

TEST(XMLReaderAmplification, InAttributesFails) {
    const Counts counts = count(declareLevels("0123456789", 10) + "<r><b a='&e9;'/></r>");
    EXPECT_TRUE(counts.failed);
}

TEST(XMLReaderAmplification, OfParameterEntitiesFails) {
    std::string text = "<!DOCTYPE r [<!ENTITY % e0 '<!ENTITY x \"0\">'>";
    for (int i = 1; i < 12; ++i) {
        text += "<!ENTITY % e" + std::to_string(i) + " '" +
                repeat("&#37;e" + std::to_string(i - 1) + ";", 10) + "'>";
    }
    const Counts counts = count(text + "%e11;]><r>a</r>");
    EXPECT_TRUE(counts.failed);
}

TEST(XMLReaderAmplification, OfOneLongEntityOverAndOverFails) {
    const std::string declaration = "<!DOCTYPE r [<!ENTITY e '";
    const Counts text = count(declaration + std::string(1U << 16U, 'x') + "'>]><r>" +
                              repeat("&e;", 1U << 16U) + "</r>");
    EXPECT_TRUE(text.failed);
    EXPECT_LE(text.bytes, longSize);
    const Counts nodes =
        count(declaration + repeat("<b/>", 1000) + "'>]><r>" + repeat("&e;", 1U << 18U) + "</r>");
    EXPECT_TRUE(nodes.failed);
    EXPECT_LE(nodes.nodes, longSize);
}

TEST(XMLReaderAmplification, ThatIsModestIsRead) {
    const Counts counts = count("<!DOCTYPE r [<!ENTITY e '" + repeat("<b>x</b>", 10) + "'>]><r>" +
                                repeat("&e;&lt;", 1000) + "</r>");
    EXPECT_FALSE(counts.failed);
    EXPECT_EQ(counts.bytes, 11000U);
    EXPECT_EQ(counts.nodes, 31003U);
}

TEST(XMLReaderThreads, ReadersAreIndependent) {
    std::vector<std::thread> threads;
    std::vector<int> wrong(4);
    for (int& mistakes : wrong) {
        threads.emplace_back([&mistakes] {
            for (int i = 0; i < 100; ++i) {
                mistakes += print("<r>a<b>c</b></r>") != "<r>[a]<b>[c]</b></r>" ? 1 : 0;
                mistakes += print("<r>a<b>c</r>") != "<r>[a]<b>[c]failed" ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, std::vector<int>(4));
}

}  // namespace
