#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "apps/orvprint/check/findings.h"
#include "generators/sheet/paper_sizes.h"
#include "interpreters/svg/style/property_table.h"
#include "platform/xml/vocabulary.h"

namespace {

std::string ReadSource(const std::string& path) {
    std::ifstream stream(std::string(ORV_SOURCE_PATH) + "/" + path);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

bool Lists(const std::string& text, std::string_view name) {
    return text.find("`" + std::string(name) + "`") != std::string::npos;
}

TEST(DocsTest, EveryPropertyIsListed) {
    const std::string guide = ReadSource("docs/supported-svg.md");
    for (const PropertyRow& row : GetProperties()) EXPECT_TRUE(Lists(guide, row.name)) << row.name;
}

TEST(DocsTest, EveryAttributeIsListed) {
    const std::string guide = ReadSource("docs/supported-svg.md");
    for (unsigned i = 0; i < static_cast<unsigned>(AttributeName::kCount); ++i) {
        const std::string_view name = GetNameText(static_cast<AttributeName>(i));
        EXPECT_TRUE(Lists(guide, name)) << name;
    }
}

TEST(DocsTest, EveryElementIsListed) {
    const std::string guide = ReadSource("docs/supported-svg.md");
    for (auto element = ElementName::kA; element <= ElementName::kUse;
         element = static_cast<ElementName>(static_cast<unsigned>(element) + 1))
        EXPECT_TRUE(Lists(guide, GetNameText(element))) << GetNameText(element);
}

TEST(DocsTest, EveryKindOfFindingIsListed) {
    const std::string guide = ReadSource("docs/check.md");
    for (const FindingKind& kind : GetFindingKinds())
        EXPECT_NE(guide.find("| `" + std::string(kind.name) + "` | "), std::string::npos) << kind.name;
}

TEST(DocsTest, EveryPaperIsListed) {
    const std::string guide = ReadSource("docs/paper.md");
    for (const ORVPaperName& name : ORVPaperNames()) {
        const std::string row =
            "| `" + std::string(name.common) + "` | `" + std::string(name.standard) + "` |";
        EXPECT_NE(guide.find(row), std::string::npos) << name.common;
    }
}

}  // namespace
