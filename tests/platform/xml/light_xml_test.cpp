// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/ORVLightXml.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/platform/xml/tree_text.h"
#include "tests/support/named_rows.h"

namespace {

TEST(LightXml, AnswersNamesValuesAndTexts) {
    const LightResult read = ParseLight("<x:svg width='5'>a<g/>b</x:svg>");
    EXPECT_EQ(read.root.GetName(), ORVUnicodeString("x:svg"));
    EXPECT_EQ(read.root.GetAttributeValue("width"), ORVUnicodeString("5"));
    EXPECT_EQ(read.root.GetAttributeValue("height"), ORVUnicodeString());
    EXPECT_EQ(read.root.GetAttributeValue("Width"), ORVUnicodeString());
    EXPECT_EQ(read.root.GetValue(), ORVUnicodeString("ab"));
}

TEST(LightXml, WalksChildrenInDocumentOrder) {
    const LightResult read = ParseLight("<a> <b/>text<c/><!-- x --><d/></a>");
    std::string names;
    for (ORVLightXmlChildHandle handle = read.root.GetChildren(); handle;)
        names += read.root.GetChild(handle).GetName().GetView();
    EXPECT_EQ(names, "bcd");
}

TEST(LightXml, AnElementWithoutChildrenYieldsANullHandle) {
    const LightResult read = ParseLight("<a>only text</a>");
    ORVLightXmlChildHandle handle = read.root.GetChildren();
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(read.root.GetChild(handle).GetNode(), nullptr);
}

TEST(LightXml, ANullElementIsEmpty) {
    const ORVLightXmlElement element;
    EXPECT_EQ(element.GetNode(), nullptr);
    EXPECT_FALSE(element.GetTree());
    EXPECT_TRUE(element.GetName().IsEmpty());
    EXPECT_TRUE(element.GetAttributeValue("x").IsEmpty());
    EXPECT_TRUE(element.GetValue().IsEmpty());
    EXPECT_EQ(element.GetChildren(), nullptr);
}

TEST(LightXml, ParsingAgainReplacesElementAndError) {
    ORVLightXmlParser parser;
    ORVLightXmlElement element;
    ORVLightXmlInputStreamBuffer broken("<a><b>", 6), whole("<c/>", 4), none(nullptr, 0);
    EXPECT_EQ(parser.Parse(broken, element), -1);
    EXPECT_FALSE(parser.GetError().message.empty());
    EXPECT_EQ(TreeText(element.GetNode()), "a(b)");
    EXPECT_EQ(parser.Parse(whole, element), 1);
    EXPECT_TRUE(parser.GetError().message.empty());
    EXPECT_EQ(TreeText(element.GetNode()), "c");
    EXPECT_EQ(parser.Parse(none, element), -1);
    EXPECT_EQ(element.GetNode(), nullptr);
}

TEST(LightXml, AssignMakesADeepCopyOfItsOwn) {
    ORVLightXmlElement copy;
    std::string expected;
    {
        const LightResult read =
            ParseLight("<a><b x='1' zz='2'>t<c><d fill='red'>u</d></c><e/>v</b><f/></a>");
        ORVLightXmlChildHandle handle = read.root.GetChildren();
        const ORVLightXmlElement b = read.root.GetChild(handle);
        expected = TreeText(b.GetNode());
        EXPECT_EQ(copy.Assign(b), 1);
        EXPECT_NE(copy.GetTree().get(), b.GetTree().get());
        EXPECT_NE(copy.GetNode(), b.GetNode());
    }
    EXPECT_EQ(expected, "b{x=1 zz=2}'tv'(c(d{fill=red}'u')e)");
    EXPECT_EQ(TreeText(copy.GetNode()), expected);
    EXPECT_EQ(copy.GetNode()->nextSibling, nullptr);
    EXPECT_EQ(copy.GetTree()->GetRoot(), copy.GetNode());
}

TEST(LightXml, AssignTakesItselfAPartOfItselfAndNothing) {
    LightResult read = ParseLight("<a><b><c/></b></a>");
    EXPECT_EQ(read.root.Assign(read.root), 1);
    EXPECT_EQ(read.Text(), "a(b(c))");
    ORVLightXmlChildHandle handle = read.root.GetChildren();
    const ORVLightXmlElement child = read.root.GetChild(handle);
    EXPECT_EQ(read.root.Assign(child), 1);
    EXPECT_EQ(read.Text(), "b(c)");
    EXPECT_EQ(read.root.Assign(ORVLightXmlElement()), 1);
    EXPECT_EQ(read.root.GetNode(), nullptr);
}

TEST(LightXml, AssignTakesTheElementsOfADomTree) {
    const DomResult dom = ParseDom("<a>t<!-- k --><b>u</b><c/>w</a>");
    ORVLightXmlElement view(dom.root.GetTree(), dom.root.GetNode());
    ORVLightXmlElement copy;
    EXPECT_EQ(copy.Assign(view), 1);
    EXPECT_EQ(TreeText(copy.GetNode(), false), "a'tw'(b'u'c)");
    std::string names;
    for (ORVLightXmlChildHandle handle = view.GetChildren(); handle;)
        names += view.GetChild(handle).GetName();
    EXPECT_EQ(names, "bc");
}

struct EncodingCase {
    const char* name;
    std::string document;
    const char* tree;
};
class DeclaredEncodingTest : public testing::TestWithParam<EncodingCase> {};

TEST_P(DeclaredEncodingTest, IsHonoured) {
    const LightResult read = ParseLight(GetParam().document);
    EXPECT_EQ(read.status, 1) << read.error.message;
    EXPECT_EQ(read.Text(), GetParam().tree);
}

std::string Declared(const char* encoding, const std::string& rest) {
    return std::string("<?xml version='1.0' encoding='") + encoding + "'?>" + rest;
}

std::string Utf16(const std::string& ascii, bool bigEndian) {
    std::string out = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : ascii) {
        if (bigEndian) out += '\0';
        out += c;
        if (!bigEndian) out += '\0';
    }
    return out;
}

INSTANTIATE_TEST_SUITE_P(
    Light, DeclaredEncodingTest,
    testing::Values(
        EncodingCase{"Utf8", Declared("UTF-8", "<t>\xC3\xA4</t>"), "t'\xC3\xA4'"},
        EncodingCase{"Latin1", Declared("ISO-8859-1", "<t a='\xE4'>\xF6</t>"), "t{a=\xC3\xA4}'\xC3\xB6'"},
        EncodingCase{"Ascii", Declared("US-ASCII", "<t>a</t>"), "t'a'"},
        EncodingCase{"Utf16Little", Utf16("<t>a</t>", false), "t'a'"},
        EncodingCase{"Utf16Big", Utf16("<t>a</t>", true), "t'a'"},
        EncodingCase{"Latin9", Declared("ISO-8859-15", "<t>\xA4</t>"), "t'\xE2\x82\xAC'"},
        EncodingCase{"Windows", Declared("windows-1252", "<t>\x80\x93</t>"), "t'\xE2\x82\xAC\xE2\x80\x9C'"},
        EncodingCase{"Cyrillic", Declared("KOI8-R", "<\xC1>\xC2</\xC1>"), "\xD0\xB0'\xD0\xB1'"},
        EncodingCase{"ShiftJis", Declared("Shift_JIS", "<t>\x82\xA0\x83\x5C</t>"),
                     "t'\xE3\x81\x82\xE3\x82\xBD'"},
        EncodingCase{"EucJp", Declared("EUC-JP", "<t>\xA4\xA2\x8F\xB0\xA1</t>"),
                     "t'\xE3\x81\x82\xE4\xB8\x82'"},
        EncodingCase{"ChineseOfTwoAndFourBytes", Declared("GB18030", "<t>\xD6\xD0\x94\x39\xFC\x36</t>"),
                     "t'\xE4\xB8\xAD\xF0\x9F\x98\x80'"},
        EncodingCase{"OtherNameOfUtf8", Declared("utf8", "<t>\xF0\x9F\x98\x80</t>"), "t'\xF0\x9F\x98\x80'"},
        EncodingCase{"MarkBeatsForeignDeclaration",
                     "\xEF\xBB\xBF" + Declared("windows-1252", "<t>\xC3\xA4</t>"), "t'\xC3\xA4'"}),
    kNameOfRow);

TEST(DeclaredEncoding, IsIgnoredByTheDomParser) {
    EXPECT_EQ(ParseDom(Declared("ISO-8859-1", "<t>\xC3\xA4</t>")).Text(), "t'\xC3\xA4'");
    EXPECT_EQ(ParseDom(Declared("windows-1252", "<t>\xC3\xA4</t>")).Text(), "t'\xC3\xA4'");
    EXPECT_EQ(ParseDom(Declared("no-such-thing", "<t>\xC3\xA4</t>")).Text(), "t'\xC3\xA4'");
    EXPECT_EQ(ParseDom(Declared("ISO-8859-1", "<t>\xE4</t>")).status, -1);
}

TEST(DeclaredEncoding, ThatNobodyKnowsIsAnError) {
    const LightResult read = ParseLight(Declared("no-such-thing", "<t/>"));
    EXPECT_EQ(read.status, -1);
    EXPECT_EQ(read.root.GetNode(), nullptr);
    EXPECT_EQ(read.error.message, "unknown encoding");
    EXPECT_EQ(read.error.line, 1U);
}

TEST(DeclaredEncoding, InvalidBytesEndTheTreeThere) {
    const std::string head = Declared("GB18030", "<t>\n<g/>\xD6\xD0");
    const LightResult read = ParseLight(head + "\xFF\xFF</t>");
    EXPECT_EQ(read.status, -1);
    EXPECT_EQ(read.Text(), "t'\n\xE4\xB8\xAD'(g)");
    EXPECT_EQ(read.error.line, 2U);
    EXPECT_EQ(read.error.column, 6U);
    EXPECT_EQ(read.error.offset, head.size());
}

TEST(DeclaredEncoding, ErrorsNameThePlaceInTheOriginalBytes) {
    const std::string head = Declared("windows-1252", "<t>\n\x80\x80\x80");
    const LightResult read = ParseLight(head + "&no;</t>");
    EXPECT_EQ(read.status, -1);
    EXPECT_EQ(read.error.line, 2U);
    EXPECT_EQ(read.error.column, 4U);
    EXPECT_EQ(read.error.offset, head.size());
}

TEST(LightXml, TellsThePlacesOfItsElements) {
    const std::string text = "<?xml version='1.0'?>\n<a>\xC3\xA4<b\n x='1'/>\n\n  <c/><!--\n--></a>";
    ORVLightXmlElement root;
    std::vector<ORVXmlPlace> places;
    ASSERT_EQ(ORVLightXmlParser().Parse({text.data(), text.size()}, root, &places), 1);
    ASSERT_EQ(places.size(), 3U);
    const std::uint32_t expected[3][2] = {{2, 1}, {2, 5}, {5, 3}};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(places[i].line, expected[i][0]) << i;
        EXPECT_EQ(places[i].column, expected[i][1]) << i;
        EXPECT_EQ(text[places[i].offset], '<');
    }
    EXPECT_EQ(text.substr(places[2].offset, 4), "<c/>");
}

TEST(LightXml, TellsPlacesInConvertedDocumentsOnce) {
    const std::string text = "<?xml version='1.0' encoding='ISO-8859-15'?>\n<a>\xA4<b/></a>";
    ORVLightXmlElement root;
    std::vector<ORVXmlPlace> places;
    ASSERT_EQ(ORVLightXmlParser().Parse({text.data(), text.size()}, root, &places), 1);
    ASSERT_EQ(places.size(), 2U);
    EXPECT_EQ(places[1].line, 2U);
    EXPECT_EQ(places[1].column, 5U);
}

}  // namespace
