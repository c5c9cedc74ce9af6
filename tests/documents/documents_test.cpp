// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/built_model.h"
#include "tests/support/model_json.h"
#include "tests/support/test_texts.h"

namespace {

namespace fs = std::filesystem;

bool IsDocument(const fs::path& file) { return file.extension() == ".svg" || file.extension() == ".qvxml"; }

std::vector<std::string> DocumentNames() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(ORV_DOCUMENTS_PATH))
        if (IsDocument(entry.path())) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

/// The expected models of NAME.svg or NAME.qvxml are in NAME.light.json and NAME.dom.json; for a QVXML
/// document, they contain all its fragments. They are written by `orvprint inspect`, and reviewed before they
/// are committed.
class DocumentsTest : public testing::TestWithParam<std::string> {};
INSTANTIATE_TEST_SUITE_P(Documents, DocumentsTest, testing::ValuesIn(DocumentNames()), [](const auto& row) {
    std::string name = fs::path(row.param).stem().string();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST_P(DocumentsTest, HasTheReviewedModel) {
    const fs::path file = fs::path(ORV_DOCUMENTS_PATH) / GetParam();
    for (const Backend backend : kBackends) {
        const BuiltModel built(ReadAll(file), {backend, file.extension() == ".qvxml", file.string()});
        fs::path dump = file;
        dump.replace_extension(backend == Backend::kDom ? ".dom.json" : ".light.json");
        const nlohmann::json expected = nlohmann::json::parse(ReadAll(dump), nullptr, false);
        nlohmann::json actual = ModelToJson(built.GetModel(), built.GetResult());
        actual["pageCount"] = built.GetPageCount();
        actual["infos"] = nlohmann::json::array();
        EXPECT_EQ(DifferencesOf(expected, actual), "") << dump;
    }
}

TEST(DocumentsTest, AreAllThere) { EXPECT_GE(DocumentNames().size(), 10U); }

}  // namespace
