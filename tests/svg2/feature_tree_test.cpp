// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "generators/common/ORVOutput.h"
#include "generators/flatten/ORVFilterImages.h"
#include "generators/flatten/ORVTileImages.h"
#include "generators/png/ORVPngGenerator.h"
#include "interpreters/svg2/interpreter/factories.h"
#include "platform/print/ORVPrintInputFileStream.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/ORVFileAccessPolicy.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"
#include "tests/support/test_texts.h"

namespace {

namespace fs = std::filesystem;

using Image = ORVRef<const ORVPixelImage>;

/// Name of folders with files that the documents beside them refer to.
constexpr const char* kBesideFolder = "files";

/// Paths of all documents in the tree, relative to it and without extension.
std::vector<std::string> DocumentPaths() {
    std::vector<std::string> paths;
    for (fs::recursive_directory_iterator entry(ORV_FEATURE_TREE), end; entry != end; ++entry) {
        if (entry->is_directory() && entry->path().filename() == kBesideFolder)
            entry.disable_recursion_pending();
        else if (entry->path().extension() == ".svg")
            paths.push_back(fs::relative(entry->path(), ORV_FEATURE_TREE).replace_extension().string());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string NameOfTest(const std::string& path) {
    std::string name = path;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
    return name;
}

Image ReadPng(const std::string& bytes) {
    return Image(ReadMemoryPNGPixelImage(bytes.data(), bytes.size(), 0));
}

/// The first page at 96 dots per inch, or at 48 if it is wider than a reference image may be.
Image DrawPage(const fs::path& file) {
    constexpr double kUnitsPerInch = 90.0, kWidest = 100.5 / 96.0;  // inches
    const ORVRef<ORVPrintInput> input(new ORVPrintInputFileStream(ORVUnicodeString(file.string())));
    const std::unique_ptr<ORVPrintInterpreter> interpreter(fctCreateORVPrintSVG2Interpreter(input.get()));
    float width = 0.0F, height = 0.0F;
    if (interpreter->GetSize(width, height) != 1) return {};
    ORVRasterOptions options;
    options.dotsPerInch = width / kUnitsPerInch > kWidest ? 48.0 : 96.0;
    ORVMemoryOutput output;
    ORVPngGenerator generator(output, options);
    ORVFilterOptions filters;
    filters.dotsPerInch = options.dotsPerInch;
    ORVFilterImages stage(generator, filters);
    ORVTileImages tiles(stage, filters);
    if (interpreter->Print(&tiles, ORVPrintParameters()) != 1) return {};
    return ReadPng(output.GetBytes());
}

/// The number of pixels that differ by more than rounding can explain.
int CountOthers(const ORVPixelImage& a, const ORVPixelImage& b) {
    constexpr int kRounding = 6;
    const auto left = a.GetPixels(), right = b.GetPixels();
    int count = 0;
    for (std::size_t i = 0; i < left.size(); i += 4) {
        bool differs = false;
        for (std::size_t c = i; c < i + 4; ++c) differs = differs || std::abs(left[c] - right[c]) > kRounding;
        count += differs ? 1 : 0;
    }
    return count;
}

/// References are images of pages that were reviewed; feature_tree.py draws missing ones.
class FeatureTreeTest : public testing::TestWithParam<std::string> {};
INSTANTIATE_TEST_SUITE_P(Documents, FeatureTreeTest, testing::ValuesIn(DocumentPaths()),
                         [](const auto& row) { return NameOfTest(row.param); });

TEST_P(FeatureTreeTest, LooksLikeItsReference) {
    const fs::path path = fs::path(ORV_FEATURE_TREE) / GetParam();
    // A document may read files in its own folder.
    ORVFolderAccessPolicy policy;
    policy.AllowFolder(ORVUnicodeString(path.parent_path().string()));
    ORVFileAccessPolicy::SetCurrent(&policy);
    const Image drawn = DrawPage(path.string() + ".svg");
    ORVFileAccessPolicy::SetCurrent(nullptr);
    const Image reference = ReadPng(ReadAll(path.string() + ".png"));
    ASSERT_TRUE(drawn) << "no page";
    ASSERT_TRUE(reference) << "no reference";
    EXPECT_LE(reference->GetWidth(), 100);
    ASSERT_EQ(drawn->GetWidth(), reference->GetWidth());
    ASSERT_EQ(drawn->GetHeight(), reference->GetHeight());
    EXPECT_EQ(CountOthers(*drawn, *reference), 0);
}

TEST(FeatureTreeTest, TheTableOfAgreementHasEachDocument) {
    std::istringstream table(ReadAll(fs::path(ORV_FEATURE_TREE) / "agreement.txt"));
    std::set<std::string> rows;
    for (std::string line; std::getline(table, line);)
        if (!line.empty() && line.front() != '#') rows.insert(line.substr(0, line.find(' ')));
    const std::vector<std::string> paths = DocumentPaths();
    EXPECT_EQ(rows, std::set<std::string>(paths.begin(), paths.end()));
}

}  // namespace
