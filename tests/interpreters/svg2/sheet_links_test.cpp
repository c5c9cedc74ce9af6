// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/document/sheet_links.h"

#include <gtest/gtest.h>

#include <fstream>

#include "platform/system/ORVFileAccessPolicy.h"
#include "tests/support/scratch_folder.h"

namespace {

/// Media and text of each linked style sheet, followed by the references that could not be read.
std::string Found(const std::string& prolog, const std::string& path = "") {
    std::vector<std::string> lost;
    std::string text;
    for (const svg2::OuterSheet& sheet : svg2::ReadOuterSheets(
             prolog + "<svg><?xml-stylesheet href='data:,within'?></svg>", ORVUnicodeString(path), &lost))
        text += "[" + sheet.media + "]" + sheet.text + "\n";
    for (const std::string& reference : lost) text += "lost " + reference + "\n";
    return text;
}

TEST(SheetLinksTest, StandInFrontOfTheRoot) {
    const struct {
        const char *prolog, *found;
    } kRows[] = {
        {"", ""},
        {"<?xml version='1.0'?>\n<?xml-stylesheet href='data:,a' type='text/css'?>", "[]a\n"},
        {"\xEF\xBB\xBF<?xml-stylesheet href=\"data:,a\" media = 'print'?>", "[print]a\n"},
        {"<?xml-stylesheet href='data:,a'?><!-- <?xml-stylesheet href='data:,b'?> -->"
         "<?xml-stylesheet href='data:,c'?>",
         "[]a\n[]c\n"},
        {"<!DOCTYPE svg [<!ENTITY a '>'>] ><?xml-stylesheet href='data:,a'?>", "[]a\n"},
        {"<!DOCTYPE svg><?xml-stylesheet href='data:,a%26amp;&amp;'?>", "[]a&amp;&\n"},
        {"<?xml-stylesheet href='data:,a' alternate='yes'?>", ""},
        {"<?xml-stylesheet href='data:,a' type='text/xsl'?>", ""},
        {"<?xml-stylesheets href='data:,a'?>", ""},
        {"<?xml-stylesheet href='https://example.org/a.css'?>", "lost https://example.org/a.css\n"},
        {"<?xml-stylesheet", ""},
        {"<!-- ", ""},
        {"<!DOCTYPE svg [", ""},
    };
    for (const auto& row : kRows) EXPECT_EQ(Found(row.prolog), row.found) << row.prolog;
}

TEST(SheetLinksTest, FilesLieBesideTheDocument) {
    const ScratchFolder folder;
    std::ofstream(folder.PathOf("a.css")) << "rect{}";
    EXPECT_EQ(Found("<?xml-stylesheet href='a.css'?>", folder.PathOf("a.svg")), "lost a.css\n");
    ORVFolderAccessPolicy policy;
    policy.AllowFolder(ORVUnicodeString(folder.Path().string()));
    ORVFileAccessPolicy::SetCurrent(&policy);
    EXPECT_EQ(Found("<?xml-stylesheet href='a.css'?>", folder.PathOf("a.svg")), "[]rect{}\n");
    EXPECT_EQ(Found("<?xml-stylesheet href='b.css'?>", folder.PathOf("a.svg")), "lost b.css\n");
    ORVFileAccessPolicy::SetCurrent(nullptr);
}

}  // namespace
