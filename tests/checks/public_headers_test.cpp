// SPDX-License-Identifier: Apache-2.0

// Rules for public headers: they include only each other and standard headers, everything in them is
// documented, and global names have a prefix.

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/scratch_folder.h"
#include "tests/support/shell_run.h"

namespace {

namespace fs = std::filesystem;

std::string ReadText(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

// Paths relative to the root, as in #include.
std::set<std::string> PublicHeaders() {
    std::set<std::string> headers;
    std::istringstream list(ORV_PUBLIC_HEADERS);
    for (std::string path; list >> path;) headers.insert(fs::relative(path, ORV_SOURCE_PATH).string());
    return headers;
}

std::vector<std::string> Matches(const std::string& text, const std::regex& pattern) {
    std::vector<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match)
        found.push_back((*match)[1].str());
    return found;
}

TEST(PublicHeadersTest, IncludePublicHeadersOnly) {
    const std::set<std::string> headers = PublicHeaders();
    EXPECT_GT(headers.size(), 60U);
    const std::regex include("#include \"([^\"]+)\"");
    for (const std::string& header : headers)
        for (const std::string& included : Matches(ReadText(fs::path(ORV_SOURCE_PATH) / header), include))
            EXPECT_TRUE(headers.contains(included)) << header << " includes " << included;
}

TEST(PublicHeadersTest, IncludeNoThirdParty) {
    const std::regex include("#include <([^>]*[./][^>]*)>");
    for (const std::string& header : PublicHeaders())
        EXPECT_THAT(Matches(ReadText(fs::path(ORV_SOURCE_PATH) / header), include),
                    testing::AnyOf(testing::IsEmpty(), testing::ElementsAre("sys/types.h")))
            << header;
}

/// Generates the reference of the public headers with Doxygen.
class ReferenceTest : public testing::Test {
protected:
    ReferenceTest()
        : run_("{ cat '" ORV_DOXYFILE "'; echo OUTPUT_DIRECTORY=" + folder_.PathOf("") +
               "; echo GENERATE_TAGFILE=" + folder_.PathOf("tags") + "; } | '" ORV_DOXYGEN "' -") {}

    ScratchFolder folder_;
    ShellRun run_;
};

TEST_F(ReferenceTest, HasNothingUndocumented) {
    EXPECT_EQ(run_.text, "");
    EXPECT_EQ(run_.status, 0);
    EXPECT_TRUE(fs::exists(folder_.Path() / "html/classORVPrintGenerator.html"));
}

// Names without prefix or namespace, kept because modules and hosts use them.
const std::set<std::string> kKnownNames{"BuildParser",
                                        "GetNextNode",
                                        "GetStringWithLocalDecimalChar",
                                        "GetValue",
                                        "ReadMemBMPPixelImage",
                                        "ReadMemoryJPEGPixelImage",
                                        "ReadMemoryPNGPixelImage"};

// The text between two marks in a line; empty if a mark is missing.
std::string Between(const std::string& line, const std::string& before, const std::string& after) {
    const std::size_t start = line.find(before), end = line.find(after);
    if (start == line.npos || end == line.npos) return {};
    return line.substr(start + before.size(), end - start - before.size());
}

// The names of all classes, and of everything outside of classes and namespaces, in Doxygen's tag file.
std::vector<std::string> GlobalNames(const fs::path& tags) {
    std::vector<std::string> names;
    std::ifstream stream(tags);
    std::string kind, name;
    for (std::string line; std::getline(stream, line);) {
        if (const std::string compound = Between(line, "<compound kind=\"", "\">"); !compound.empty())
            kind = compound;
        else if (line.find("<name>") != line.npos)
            name = Between(line, "<name>", "</name>");
        const bool isClass = kind == "class" || kind == "struct";
        if (isClass && line.starts_with("    <filename>")) names.push_back(name);
        if (kind == "file" && line.find("<anchorfile>") != line.npos && line.find(">namespace") == line.npos)
            names.push_back(name);
    }
    return names;
}

TEST_F(ReferenceTest, HasNoOtherGlobalNamesThanThoseOfThePrefix) {
    const std::vector<std::string> names = GlobalNames(folder_.Path() / "tags");
    EXPECT_GT(names.size(), 100U);
    for (const std::string& name : names)
        EXPECT_TRUE(name.starts_with("ORV") || name.starts_with("orvprint::") ||
                    name.starts_with("orvprint_") || kKnownNames.contains(name))
            << name;
}

}  // namespace
