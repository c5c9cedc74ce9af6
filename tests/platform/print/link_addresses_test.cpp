// SPDX-License-Identifier: Apache-2.0
#include "platform/print/link_addresses.h"

#include <gtest/gtest.h>

#include "tests/support/named_rows.h"

namespace {

struct AddressCase {
    const char* name;
    const char* address;
    bool runsScript;
};
class LinkAddressTest : public testing::TestWithParam<AddressCase> {};

TEST_P(LinkAddressTest, TellsWhatWouldRun) {
    EXPECT_EQ(ORVIsScriptAddress(GetParam().address), GetParam().runsScript) << GetParam().address;
}

INSTANTIATE_TEST_SUITE_P(Script, LinkAddressTest,
                         testing::Values(AddressCase{"JavaScript", "javascript:alert(1)", true},
                                         AddressCase{"VbScript", "vbscript:x", true},
                                         AddressCase{"Data", "data:text/html,x", true},
                                         AddressCase{"Alone", "data:", true},
                                         AddressCase{"LargeLetters", "JavaSCRIPT:x", true},
                                         AddressCase{"BlanksBefore", "  javascript:x", true},
                                         AddressCase{"LineBreaksInside", "java\tscr\r\nipt:x", true},
                                         AddressCase{"BlankBeforeTheColon", "vbscript :x", true},
                                         AddressCase{"ControlCharacters", "\x01\x1F\x7Fjavascript:x", true},
                                         AddressCase{"ByteOrderMark", "\uFEFFjavascript:x", true},
                                         AddressCase{"NoBreakSpace", "\u00A0data:x", true}),
                         kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Harmless, LinkAddressTest,
    testing::Values(AddressCase{"Empty", "", false}, AddressCase{"Web", "https://example.org/a:b", false},
                    AddressCase{"Mail", "mailto:a@b", false}, AddressCase{"File", "page.html", false},
                    AddressCase{"NameOfAFile", "javascript.html", false},
                    AddressCase{"InAQuery", "page.html?x=javascript:y", false},
                    AddressCase{"QueryAtOnce", "javascript?x:y", false},
                    AddressCase{"InAPath", "../javascript:x", false},
                    AddressCase{"InAFragment", "#data:x", false},
                    AddressCase{"LongerScheme", "javascripts:x", false},
                    AddressCase{"ShorterScheme", "dat:x", false}, AddressCase{"NoScheme", ":x", false},
                    AddressCase{"NoColon", "data", false}),
    kNameOfRow);

}  // namespace
