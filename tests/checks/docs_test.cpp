// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>
#include <string>

#include "generators/sheet/paper_sizes.h"
#include "interpreters/svg/style/property_table.h"
#include "library/check/findings.h"
#include "platform/xml/vocabulary.h"
#include "tests/support/test_texts.h"

namespace {

std::string ReadSource(const std::string& path) { return ReadAll(std::string(ORV_SOURCE_PATH) + "/" + path); }

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

// README quotes code only from the examples, which are compiled and run. The link before each block names its
// file.
TEST(DocsTest, WhatReadmeQuotesStandsInTheExamples) {
    const std::string readme = ReadSource("README.md"), opening = "```cpp\n";
    std::set<std::string> quoted;
    for (std::size_t at = readme.find(opening); at != readme.npos; at = readme.find(opening, at + 1)) {
        const std::size_t start = at + opening.size(), name = readme.rfind("](examples/", at) + 2;
        const std::string path = readme.substr(name, readme.find(')', name) - name);
        const std::string block = readme.substr(start, readme.find("```", start) - start);
        EXPECT_GT(block.size(), 200U);
        EXPECT_NE(ReadSource(path).find(block), std::string::npos) << path << " has no such text:\n" << block;
        quoted.insert(path);
    }
    EXPECT_EQ(quoted, (std::set<std::string>{"examples/list_shapes.cpp", "examples/print_file.cpp",
                                             "examples/read_model.cpp"}));
}

// `./dev NAME` runs the function dev_NAME of the script.
TEST(DocsTest, EveryCommandForDevelopersExists) {
    const std::string script = ReadSource("dev");
    const std::regex command(R"(\./dev ([a-z]+(?:-[a-z]+)*))");
    std::set<std::string> names;
    for (const char* path :
         {"dev", "README.md", "ARCHITECTURE.md", "CONTRIBUTING.md", "docs/batch.md", "docs/gallery.md",
          "docs/performance.md", "docs/reliability.md", "docs/serve.md"}) {
        const std::string text = ReadSource(path);
        for (std::sregex_iterator match(text.begin(), text.end(), command), end; match != end; ++match)
            names.insert((*match)[1]);
    }
    EXPECT_GT(names.size(), 20U);
    for (const std::string& name : names) {
        std::string routine = "\ndev_" + name + "() {";
        std::replace(routine.begin(), routine.end(), '-', '_');
        EXPECT_NE(script.find(routine), std::string::npos) << "./dev " << name;
    }
}

}  // namespace
