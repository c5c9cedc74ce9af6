// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/xml_text.h"

#include <gtest/gtest.h>

#include "tests/support/named_rows.h"

namespace {

struct XmlTextCase {
    const char* name;
    std::string_view text;
    const char* expected;
};
class AppendXmlTextTest : public testing::TestWithParam<XmlTextCase> {};
TEST_P(AppendXmlTextTest, WritesWhatEveryParserTakes) {
    std::string xml;
    AppendXmlText(xml, GetParam().text);
    EXPECT_EQ(xml, GetParam().expected);
}

using std::string_view_literals::operator""sv;

INSTANTIATE_TEST_SUITE_P(
    XmlText, AppendXmlTextTest,
    testing::Values(XmlTextCase{"Plain", "a b", "a b"},
                    XmlTextCase{"Markup", "<a href=\"x\">&'", "&lt;a href=&quot;x&quot;&gt;&amp;'"},
                    XmlTextCase{"EndOfCharacterData", "]]>", "]]&gt;"},
                    XmlTextCase{"LineBreaks", "a\tb\nc\rd", "a&#9;b&#10;c&#13;d"},
                    XmlTextCase{"ManyBytes", "é漢😀", "é漢😀"},
                    XmlTextCase{"Null", "a\0b"sv,
                                "a\xEF\xBF\xBD"
                                "b"},
                    XmlTextCase{"Control", "\x01\x1B", "\xEF\xBF\xBD\xEF\xBF\xBD"},
                    XmlTextCase{"NoUtf8", "a\xFF", "a\xEF\xBF\xBD"},
                    XmlTextCase{"CutOff", "a\xE6\xBC", "a\xEF\xBF\xBD\xEF\xBF\xBD"},
                    XmlTextCase{"Surrogate", "\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
                    XmlTextCase{"NoCharacter", "\xEF\xBF\xBE\xEF\xBF\xBF",
                                "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"}),
    kNameOfRow);

}  // namespace
