#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/built_model.h"
#include "tests/support/model_json.h"

namespace {

namespace fs = std::filesystem;

std::string ReadAll(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

std::vector<std::string> DocumentNames() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(ORV_DOCUMENTS_PATH))
        if (entry.path().extension() == ".svg") names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

/// A document NAME.svg has the models NAME.light.json and NAME.dom.json. They are written by
/// `orvprint inspect NAME.svg --json --parser light|dom` and read before they are kept.
class DocumentsTest : public testing::TestWithParam<std::string> {};
INSTANTIATE_TEST_SUITE_P(Documents, DocumentsTest, testing::ValuesIn(DocumentNames()), [](const auto& row) {
    std::string name = row.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST_P(DocumentsTest, HasTheReviewedModel) {
    const std::string path = std::string(ORV_DOCUMENTS_PATH) + "/" + GetParam();
    for (const Backend backend : kBackends) {
        const BuiltModel built(ReadAll(path + ".svg"), {backend, false, path + ".svg"});
        const std::string dump = path + (backend == Backend::kDom ? ".dom.json" : ".light.json");
        const nlohmann::json expected = nlohmann::json::parse(ReadAll(dump));
        nlohmann::json actual = ModelToJson(built.GetModel(), built.GetResult());
        actual["pageCount"] = built.GetPageCount();
        actual["infos"] = nlohmann::json::array();
        EXPECT_EQ(DifferencesOf(expected, actual), "") << dump;
    }
}

TEST(DocumentsTest, AreAllThere) { EXPECT_GE(DocumentNames().size(), 10U); }

}  // namespace
