// SPDX-License-Identifier: Apache-2.0

// The fast reader for plain documents may reject any document, which only costs time. A document that it
// accepts must be well formed and give the same events as with the conforming parser.

#include "platform/xml/plain_document.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "tests/platform/xml/event_text.h"
#include "tests/support/named_rows.h"
#include "tests/support/random_texts.h"
#include "tests/support/test_texts.h"

namespace {

struct PlainCase {
    const char* name;
    std::string document;
};

class TakenTest : public testing::TestWithParam<PlainCase> {};

TEST_P(TakenTest, GivesTheEventsOfTheConformingParser) {
    const auto plain = PlainEvents(GetParam().document);
    ASSERT_TRUE(plain) << "was refused";
    const auto conforming = ConformingEvents(GetParam().document);
    ASSERT_TRUE(conforming);
    EXPECT_EQ(*plain, *conforming);
}

std::string Attributes(int count) {
    std::string text = "<g";
    for (int i = 0; i < count; ++i) text += " u" + std::to_string(i) + "='" + std::to_string(i) + "'";
    return text + "/>";
}

INSTANTIATE_TEST_SUITE_P(
    Plain, TakenTest,
    testing::Values(
        PlainCase{"Empty", "<svg/>"}, PlainCase{"BlanksInTags", "<svg\n a = 'b'\t>\n</svg\r\n>"},
        PlainCase{"Declaration", "<?xml version=\"1.0\" encoding='UTF-8' standalone = 'no' ?>\n<svg/>\n"},
        PlainCase{"ByteOrderMark", "\xEF\xBB\xBF<?xml version='1.0'?><svg/>"},
        PlainCase{"DocumentType",
                  "<!DOCTYPE svg PUBLIC \"-//W3C//DTD SVG 1.1//EN\" \"http://www.w3.org/x.dtd\" ><svg/>"},
        PlainCase{"SystemType", "<!DOCTYPE svg SYSTEM 'a<b>'><svg/>"},
        PlainCase{"NamedType", "<!DOCTYPE svg><svg/>"},
        PlainCase{"MarkupAround", "<!--a--><?b c?><svg/><!-- - --><?d?>\n "},
        PlainCase{"BreaksBehindTheRoot", "<svg/>\r\n\r"},
        PlainCase{"ProcessingInstructions",
                  "<a><?p?><?p ?>x<?xml-stylesheet a?><?p ?"
                  "?></a>"},
        PlainCase{"TargetThatBeginsLikeXml", "<?xmlx y?><a/>"},
        PlainCase{"CommentsOfDashes", "<a><!-->x--><!--->--><!-- - - --><!----></a>"},
        PlainCase{"CommentWithBreaks", "<a><!--x\r\ny\rz\n--></a>"},
        PlainCase{"Cdata", "<a>x<![CDATA[<]]]]>y<![CDATA[]]><![CDATA[\r\n&amp;\r]]></a>"},
        PlainCase{"BracketsInText", "<a>]] ]> > ]</a>"}, PlainCase{"BreaksInText", "<a>\r\n\r\r\nx\ry\n</a>"},
        PlainCase{"References",
                  "<a v='&lt;&gt;&amp;&quot;&apos;&#65;&#x4e;&#xE9;&#x20aC;&#x1F600;'>"
                  "&lt;&gt;&amp;&quot;&apos;&#65;&#x4e;&#xE9;&#x20AC;&#x1F600;&#000065;</a>"},
        PlainCase{"LargestCharacters", "<a>&#xD7FF;&#xE000;&#xFFFD;&#x10000;&#x10FFFF;&#9;&#10;&#13;</a>"},
        PlainCase{"BlanksInValues", "<a v='x\ty\nz\r\nw\r'/>"},
        PlainCase{"ReferencedBlanksInValues", "<a v='&#9;&#10;&#13;&#32;'/>"},
        PlainCase{"QuotesInValues", "<a v='\"' w=\"'\" x='>' y=''/>"},
        PlainCase{"LongValue", "<a d='" + std::string(100, '1') + "\n" + std::string(5000, '2') +
                                   "&amp;' e='" + std::string(300, 'x') + "'/>"},
        PlainCase{"LongValueWithTheOtherQuote", "<a d='" + std::string(100, '"') + "'/>"},
        PlainCase{"ValuesRoundTheLongLength", "<a a='" + std::string(47, 'x') + "' b='" +
                                                  std::string(48, 'x') + "' c='" + std::string(49, 'x') +
                                                  "'/>"},
        PlainCase{"Prefixes", "<s:svg xmlns:s='u' s:x='1' x='2' _a.b-c='3' :d='4'/>"},
        PlainCase{"PlacesBehindBreaks", "<a>\n\r\r\n\n <b/>\r<c/>\r\n<d\r\n/><e a='\n'/><f/></a>"},
        PlainCase{"PlacesBehindOtherCharacters",
                  "<a v='\xC3\xA4'>\t\xE2\x82\xAC<b/>\xF0\x9F\x98\x80<c/></a>"},
        PlainCase{"PlacesBehindMarks", "\xEF\xBB\xBF<!--\r\n\xC3\xA4--><a><![CDATA[\n]]><?p \r?><b/></a>"},
        PlainCase{"OtherCharacters", "<a v='\xC3\xA4'>\xE2\x82\xAC\xF0\x9F\x98\x80\xEF\xBF\xBD\x7F</a>"},
        PlainCase{"DeepestNesting", Nested(1024)}, PlainCase{"ManyUnknownAttributes", Attributes(16)}),
    kNameOfRow);

class RefusedTest : public testing::TestWithParam<PlainCase> {};

TEST_P(RefusedTest, IsLeftToTheConformingParser) { EXPECT_FALSE(PlainEvents(GetParam().document)); }

INSTANTIATE_TEST_SUITE_P(
    NotPlain, RefusedTest,
    testing::Values(PlainCase{"Nothing", ""}, PlainCase{"NoRoot", "<!-- x -->"}, PlainCase{"Text", "hello"},
                    PlainCase{"OtherVersion", "<?xml version='1.1'?><a/>"},
                    PlainCase{"OtherEncoding", "<?xml version='1.0' encoding='ISO-8859-1'?><a/>"},
                    PlainCase{"InternalType", "<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>"},
                    PlainCase{"EmptyInternalType", "<!DOCTYPE a []><a/>"},
                    PlainCase{"NamesBeyondAscii", "<\xC3\xA4/>"},
                    PlainCase{"AttributesBeyondAscii", "<a b\xC3\xA4='1'/>"},
                    PlainCase{"ManyUnknownAttributes", Attributes(17)}, PlainCase{"TooDeep", Nested(1025)}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    NotWellFormed, RefusedTest,
    testing::Values(
        PlainCase{"Unclosed", "<a><b></b>"}, PlainCase{"Mismatch", "<a></b>"},
        PlainCase{"LongerEndTag", "<a></ab>"}, PlainCase{"ShorterEndTag", "<ab></a>"},
        PlainCase{"AttributeInEndTag", "<a></a b='1'>"}, PlainCase{"TwoRoots", "<a/><b/>"},
        PlainCase{"TextBehindTheRoot", "<a/>x"}, PlainCase{"CdataBehindTheRoot", "<a/><![CDATA[]]>"},
        PlainCase{"TypeBehindTheRoot", "<a/><!DOCTYPE a>"},
        PlainCase{"TwoTypes", "<!DOCTYPE a><!DOCTYPE a><a/>"},
        PlainCase{"DeclarationNotFirst", " <?xml version='1.0'?><a/>"},
        PlainCase{"DeclarationInside", "<a><?xml version='1.0'?></a>"},
        PlainCase{"ReservedTarget", "<a><?XmL?></a>"},
        PlainCase{"PartsOfTheDeclarationExchanged", "<?xml encoding='UTF-8' version='1.0'?><a/>"},
        PlainCase{"JoinedPartsOfTheDeclaration", "<?xml version='1.0'encoding='UTF-8'?><a/>"},
        PlainCase{"StandalonePerhaps", "<?xml version='1.0' standalone='maybe'?><a/>"},
        PlainCase{"PublicTypeWithoutSystem", "<!DOCTYPE a PUBLIC 'x'><a/>"},
        PlainCase{"PublicTypeWithBrace", "<!DOCTYPE a PUBLIC '{' 'y'><a/>"},
        PlainCase{"JoinedAttributes", "<a b='1'c='2'/>"}, PlainCase{"NoEquals", "<a b '1'/>"},
        PlainCase{"NoQuotes", "<a b=1/>"}, PlainCase{"UnclosedValue", "<a b='1/>"},
        PlainCase{"KnownAttributeTwice", "<a x='1' y='2' x='3'/>"},
        PlainCase{"UnknownAttributeTwice", "<a u='1' v='2' u='3'/>"},
        PlainCase{"LessThanInValue", "<a b='<'/>"},
        PlainCase{"LessThanInLongValue", "<a b='" + std::string(90, 'x') + "<'/>"},
        PlainCase{"BareAmpersand", "<a>&</a>"}, PlainCase{"BareAmpersandInValue", "<a b='&'/>"},
        PlainCase{"UnknownEntity", "<a>&no;</a>"}, PlainCase{"UnfinishedReference", "<a>&#65</a>"},
        PlainCase{"EmptyReference", "<a>&#;</a>"}, PlainCase{"EmptyHexadecimalReference", "<a>&#x;</a>"},
        PlainCase{"CapitalXInReference", "<a>&#X41;</a>"}, PlainCase{"HugeReference", "<a>&#4294967361;</a>"},
        PlainCase{"ReferenceToNul", "<a>&#0;</a>"}, PlainCase{"ReferenceToControl", "<a>&#31;</a>"},
        PlainCase{"ReferenceToSurrogate", "<a>&#xD800;</a>"},
        PlainCase{"ReferenceToNoCharacter", "<a>&#xFFFE;</a>"},
        PlainCase{"ReferenceBeyondUnicode", "<a>&#x110000;</a>"}, PlainCase{"EndOfCdataInText", "<a>]]></a>"},
        PlainCase{"DashesInComment", "<a><!-- -- --></a>"},
        PlainCase{"CommentEndingInThreeDashes", "<a><!-- ---></a>"},
        PlainCase{"UnclosedComment", "<a><!-- </a>"}, PlainCase{"UnclosedInstruction", "<a><?x </a>"},
        PlainCase{"InstructionWithoutTarget", "<a><? x?></a>"},
        PlainCase{"JoinedInstruction", "<a><?x+y?></a>"}, PlainCase{"NameThatBeginsWithADigit", "<1/>"},
        PlainCase{"BlankBeforeTheName", "< a/>"}, PlainCase{"SlashNotAtTheEnd", "<a / >"},
        PlainCase{"ControlCharacter", "<a>\x01</a>"},
        PlainCase{"ControlCharacterInComment", "<a><!--\x1F--></a>"},
        PlainCase{"Nul", std::string("<a>\0</a>", 8)}, PlainCase{"OverlongUtf8", "<a>\xC0\xAF</a>"},
        PlainCase{"SurrogateInUtf8", "<a>\xED\xA0\x80</a>"},
        PlainCase{"NoCharacterInUtf8", "<a>\xEF\xBF\xBE</a>"},
        PlainCase{"OtherNoCharacterInUtf8", "<a>\xEF\xBF\xBF</a>"},
        PlainCase{"SecondByteOrderMark", "\xEF\xBB\xBF\xEF\xBB\xBF<a/>"}),
    kNameOfRow);

TEST(PlainDocumentTest, ByteOrderMarkOfTextIsNoMark) {
    // Text that has already been decoded has no byte order mark; such a document is left to the conforming
    // parser.
    EXPECT_FALSE(PlainEvents("\xEF\xBB\xBF<a/>", XmlEncoding::kUtf8));
}

/// Returns what the fast reader gets wrong; empty if it rejects the text or agrees with the conforming
/// parser.
std::string Compare(const std::string& text) {
    const auto plain = PlainEvents(text);
    if (!plain) return {};
    const auto conforming = ConformingEvents(text);
    if (!conforming) return "is not well formed, but was taken: " + text;
    return *plain == *conforming ? std::string() : *plain + "\nis not\n" + *conforming;
}

TEST(PlainDocumentTest, RandomContent) {
    const std::vector<std::string> pieces{"<a>",
                                          "</a>",
                                          "<b/>",
                                          "<a ",
                                          " x='1'",
                                          " x=\"2\"",
                                          " u='&#9;\n'",
                                          " v = '\r\n'",
                                          ">",
                                          "/>",
                                          "<!--",
                                          "-->",
                                          "-",
                                          "<![CDATA[",
                                          "]]>",
                                          "]",
                                          "<?p",
                                          "?>",
                                          "&lt;",
                                          "&#x41;",
                                          "&#10;",
                                          "&",
                                          ";",
                                          "\r",
                                          "\n",
                                          "\r\n",
                                          " ",
                                          "\xC3\xA4",
                                          "\xEF\xBF\xBF",
                                          "text",
                                          "'",
                                          "\"",
                                          "\x01",
                                          "<!DOCTYPE a>",
                                          "=",
                                          "xml"};
    CheckRandomTexts(pieces, [](const std::string& content) {
        if (std::string wrong = Compare(content); !wrong.empty()) return wrong;
        return Compare("<?xml version='1.0'?><!DOCTYPE a SYSTEM 'a'><a>" + content + "</a>\r\n");
    });
}

TEST(PlainDocumentTest, DamagedDrawings) {
    std::mt19937 random(7);
    constexpr std::string_view kBytes = "<>&;'\"=/!?-[]x1 \n\r\t\xC3\x01";
    std::size_t taken = 0;
    for (const auto& entry : std::filesystem::directory_iterator(ORV_EXAMPLES_PATH)) {
        if (entry.path().extension() != ".svg") continue;
        const std::string whole = ReadAll(entry.path());
        EXPECT_TRUE(PlainEvents(whole)) << entry.path();
        EXPECT_EQ(Compare(whole), "");
        for (int i = 0; i < 60; ++i) {
            std::string damaged = whole;
            const std::size_t place = random() % damaged.size();
            const char byte = kBytes[random() % kBytes.size()];
            switch (random() % 3) {
                case 0: damaged[place] = byte; break;
                case 1: damaged.insert(place, 1, byte); break;
                default: damaged.erase(place, 1 + random() % 9); break;
            }
            ASSERT_EQ(Compare(damaged), "") << entry.path();
            if (PlainEvents(damaged)) ++taken;
        }
    }
    EXPECT_GT(taken, 50U);
}

}  // namespace
