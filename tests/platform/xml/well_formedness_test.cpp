// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "tests/platform/xml/tree_text.h"
#include "tests/support/named_rows.h"

namespace {

struct DocumentCase {
    const char* name;
    const char* document;
    const char* tree;
};
class WellFormedTest : public testing::TestWithParam<DocumentCase> {};

TEST_P(WellFormedTest, GivesTheSameElementsThroughBothParsers) {
    const LightResult light = ParseLight(GetParam().document);
    EXPECT_EQ(light.status, 1) << light.error.message;
    EXPECT_EQ(light.error.message, "");
    EXPECT_EQ(light.error.line, 0U);
    EXPECT_EQ(light.Text(), GetParam().tree);

    const DomResult dom = ParseDom(GetParam().document);
    EXPECT_EQ(dom.status, 1) << dom.error.message;
    EXPECT_EQ(dom.error.message, "");
    EXPECT_EQ(dom.Text(), GetParam().tree);
}

INSTANTIATE_TEST_SUITE_P(
    Xml, WellFormedTest,
    testing::Values(
        DocumentCase{"Empty", "<svg/>", "svg"}, DocumentCase{"PairOfTags", "<svg></svg>", "svg"},
        DocumentCase{"Nested", "<a><b><c/></b><d/></a>", "a(b(c)d)"},
        DocumentCase{"PrefixesAreKept", "<s:svg s:x='1' xlink:href='#a'/>", "s:svg{xlink:href=#a s:x=1}"},
        DocumentCase{"UndeclaredPrefixesAreFine", "<p:a><q:b/></p:a>", "p:a(q:b)"},
        DocumentCase{"OwnTextIsJoinedAroundChildren", "<t>a<b>x</b>c<b/>d</t>", "t'acd'(b'x'b)"},
        DocumentCase{"CdataIsText", "<t>a<![CDATA[<&b>]]>c</t>", "t'a<&b>c'"},
        DocumentCase{"EmptyCdata", "<t><![CDATA[]]></t>", "t"},
        DocumentCase{"CommentsDoNotPartText", "<t>a<!-- x -->b</t>", "t'ab'"},
        DocumentCase{"ProcessingInstructionsDoNotPartText", "<t>a<?x y?>b</t>", "t'ab'"},
        DocumentCase{"CharacterReferences", "<t>&#65;&#x42;&#x1F600;</t>", "t'AB\xF0\x9F\x98\x80'"},
        DocumentCase{"PredefinedEntities", "<t a='&lt;&quot;'>&amp;&gt;&apos;</t>", "t{a=<\"}'&>''"},
        DocumentCase{"WhiteSpaceIsKept", "<t> a\n\tb </t>", "t' a\n\tb '"},
        DocumentCase{"LineEndsBecomeLineFeeds", "<t>a\r\nb\rc</t>", "t'a\nb\nc'"},
        DocumentCase{"ReferencedReturnStays", "<t>a&#13;b</t>", "t'a\rb'"},
        DocumentCase{"LiteralBreaksInValuesAreBlanks", "<t a='x\ty\nz\r\nw'/>", "t{a=x y z w}"},
        DocumentCase{"ReferencedBreaksInValuesStay", "<t a='x&#9;y&#10;z&#13;w'/>", "t{a=x\ty\nz\rw}"},
        DocumentCase{"EntityOfTheDocument", "<!DOCTYPE t [<!ENTITY e 'b&#x26;lt;'>]><t v='&e;'>a&e;c</t>",
                     "t{v=b<}'ab<c'"},
        DocumentCase{"EntityWithElements", "<!DOCTYPE t [<!ENTITY e '<g>x</g>'>]><t>a&e;b</t>",
                     "t'ab'(g'x')"},
        DocumentCase{"EntityInsideEntity", "<!DOCTYPE t [<!ENTITY e '1&f;3'><!ENTITY f '2'>]><t>&e;</t>",
                     "t'123'"},
        DocumentCase{"FirstDeclarationCounts", "<!DOCTYPE t [<!ENTITY e '1'><!ENTITY e '2'>]><t>&e;</t>",
                     "t'1'"},
        DocumentCase{"ParameterEntity",
                     "<!DOCTYPE t [<!ENTITY % p \"<!ATTLIST t fill CDATA 'red'>\"> %p;]><t/>", "t{fill=red}"},
        DocumentCase{"DefaultAttribute", "<!DOCTYPE t [<!ATTLIST g x CDATA '5'>]><t><g/><g x='6'/></t>",
                     "t(g{x=5}g{x=6})"},
        DocumentCase{
            "DefaultAttributesAmongWrittenOnes",
            "<!DOCTYPE t [<!ATTLIST g b CDATA 'B' x CDATA '5' fill CDATA 'red'>]><t><g a='A' y='6'/></t>",
            "t(g{fill=red x=5 y=6 a=A b=B})"},
        DocumentCase{"TokenValuesAreTrimmed",
                     "<!DOCTYPE t [<!ATTLIST t c NMTOKENS #IMPLIED>]><t c='  a   b '/>", "t{c=a b}"},
        DocumentCase{"ExternalTypeIsNotLoaded", "<!DOCTYPE svg SYSTEM 'file:///etc/passwd'><svg/>", "svg"},
        DocumentCase{"ExternalEntityIsNotLoaded",
                     "<!DOCTYPE t [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><t>a&e;b</t>", "t'ab'"},
        DocumentCase{"ExternalParameterEntityIsNotLoaded",
                     "<!DOCTYPE t [<!ENTITY % p SYSTEM 'file:///etc/passwd'> %p;]><t>a</t>", "t'a'"},
        DocumentCase{"DeclarationAndWhiteSpace", "<?xml version='1.0'?>\n <svg/> \n", "svg"},
        DocumentCase{"Utf8Mark", "\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?><t>\xC3\xA4</t>",
                     "t'\xC3\xA4'"},
        DocumentCase{"NamesBeyondAscii", "<\xC3\xA4 \xC3\xB6='1'/>", "\xC3\xA4{\xC3\xB6=1}"}),
    kNameOfRow);

struct ErrorCase {
    const char* name;
    std::string document;
    const char* tree;  // kept by the light parser
    std::uint64_t line;
    std::uint64_t column;
    std::uint64_t offset;
};
class NotWellFormedTest : public testing::TestWithParam<ErrorCase> {};

TEST_P(NotWellFormedTest, NamesThePlaceAndKeepsWhatWasReadInTheLightTreeOnly) {
    const LightResult light = ParseLight(GetParam().document);
    EXPECT_EQ(light.status, -1);
    EXPECT_NE(light.error.message, "");
    EXPECT_EQ(light.error.line, GetParam().line) << light.error.message;
    EXPECT_EQ(light.error.column, GetParam().column) << light.error.message;
    EXPECT_EQ(light.error.offset, GetParam().offset) << light.error.message;
    EXPECT_EQ(light.Text(), GetParam().tree);

    DomResult dom = ParseDom(GetParam().document);
    EXPECT_EQ(dom.status, -1);
    EXPECT_FALSE(dom.root);
    EXPECT_EQ(dom.error.message, light.error.message);
    EXPECT_EQ(dom.error.line, GetParam().line);
    EXPECT_EQ(dom.error.column, GetParam().column);
}

INSTANTIATE_TEST_SUITE_P(
    Xml, NotWellFormedTest,
    testing::Values(
        ErrorCase{"Nothing", "", "", 1, 1, 0},                                            //
        ErrorCase{"WhiteSpaceOnly", " \n ", "", 2, 2, 3},                                 //
        ErrorCase{"NoXml", "hello", "", 1, 1, 0},                                         //
        ErrorCase{"Unclosed", "<a><b>t", "a(b't')", 1, 8, 7},                             //
        ErrorCase{"CutInTag", "<a>\n<b x='1'/>\n<c x='2", "a'\n\n'(b{x=1})", 3, 1, 15},   //
        ErrorCase{"Mismatch", "<a>\n  <b></c></a>", "a'\n  '(b)", 2, 8, 11},              //
        ErrorCase{"TextBeforeUnknownEntity", "<t>abc &no; def</t>", "t'abc '", 1, 8, 7},  //
        ErrorCase{"BareAmpersand", "<t>a & b</t>", "t'a '", 1, 7, 6},                     //
        ErrorCase{"RepeatedAttribute", "<t a='1' a='2'/>", "", 1, 10, 9},                 //
        ErrorCase{"LessThanInValue", "<t><g a='<'/></t>", "t", 1, 10, 9},                 //
        ErrorCase{"TwoRoots", "<a/><b/>", "a", 1, 5, 4},                                  //
        ErrorCase{"TextBehindRoot", "<a/>x", "a", 1, 5, 4},                               //
        ErrorCase{"Nul", std::string("<t>a\0b</t>", 10), "t'a'", 1, 5, 4},                //
        ErrorCase{"NulInValue", std::string("<t a='\0'/>", 10), "", 1, 7, 6},             //
        ErrorCase{"ControlCharacter", "<t>a\x01</t>", "t'a'", 1, 5, 4},                   //
        ErrorCase{"ReferenceToControlCharacter", "<t>a&#1;</t>", "t'a'", 1, 5, 4},        //
        ErrorCase{"DeclarationNotFirst", "\n<?xml version='1.0'?><t/>", "", 2, 1, 1},     //
        ErrorCase{"RecursiveEntity", "<!DOCTYPE t [<!ENTITY e '&e;'>]><t>x&e;</t>", "t'x'", 1, 37, 36},
        ErrorCase{"ColumnsCountCharacters", "<t>\xC3\xA4\xC3\xA4 &no;</t>", "t'\xC3\xA4\xC3\xA4 '", 1, 7, 8},
        ErrorCase{"EndOfCdataInText", "<t>a<g/>b]]>c</t>", "t'a'(g)", 1, 12, 11}),
    kNameOfRow);

TEST(NotWellFormed, InvalidUtf8FailsUnderTheDomAndEndsTheLightTree) {
    for (const char* bytes : {"\x80", "\xC0\xAF", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\xC3"}) {
        const std::string document = "<t><g/>" + std::string(bytes) + "</t>";
        EXPECT_EQ(ParseDom(document).status, -1);
        ORVIDOMElement_var element;
        EXPECT_EQ(BuildParser(ORVUnicodeString(document), "SVG", element), -1);
        const LightResult light = ParseLight(document);
        EXPECT_EQ(light.status, -1);
        EXPECT_EQ(light.Text(), "t(g)");
    }
}

// Wherever a document is cut off, both parsers fail, and the light parser keeps no more than the whole tree.
TEST(NotWellFormed, EveryPrefixOfADocumentGivesAPrefixOfItsTree) {
    const std::string document =
        "<?xml version='1.0'?><!DOCTYPE a [<!ENTITY e '<i/>x'><!ATTLIST b y CDATA '1'>]>"
        "<a p='1'><b x='2'>t&e;<![CDATA[c]]></b><!-- k --><c/>&#228;</a>";
    const LightResult whole = ParseLight(document);
    ASSERT_EQ(whole.status, 1) << whole.error.message;
    EXPECT_EQ(whole.Text(), "a{p=1}'\xC3\xA4'(b{x=2 y=1}'txc'(i)c)");
    for (std::size_t size = 0; size < document.size(); ++size) {
        const std::string_view prefix = std::string_view(document).substr(0, size);
        const LightResult light = ParseLight(prefix);
        EXPECT_EQ(light.status, -1) << prefix;
        EXPECT_LE(light.error.offset, size);
        EXPECT_LE(light.Text().size(), whole.Text().size());
        EXPECT_EQ(ParseDom(prefix).status, -1) << prefix;
    }
}

}  // namespace
