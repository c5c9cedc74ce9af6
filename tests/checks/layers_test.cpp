#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

// Who may know whom, besides itself.
const std::map<std::string, std::set<std::string>> kMayKnow{
    {"platform/system", {}},
    {"platform/mathematics", {"platform/system"}},
    {"platform/xml", {"platform/system", "platform/mathematics"}},
    {"platform/visualization", {"platform/system", "platform/mathematics"}},
    {"platform/model", {"platform/system", "platform/mathematics", "platform/visualization"}},
    {"platform/print",
     {"platform/system", "platform/mathematics", "platform/xml", "platform/visualization", "platform/model"}},
    {"plugin",
     {"platform/system", "platform/mathematics", "platform/xml", "platform/visualization", "platform/model",
      "platform/print"}},
    {"generators", {"platform/system", "platform/mathematics", "platform/visualization", "platform/print"}},
    {"apps",
     {"platform/system", "platform/mathematics", "platform/xml", "platform/visualization", "platform/model",
      "platform/print", "generators", "apps/orvprint/check"}},
    // The one folder outside the module that knows the interpreter: the check of documents asks its tables
    // and readers, so that what it says cannot drift from what is printed. It knows nothing else of the
    // command.
    {"apps/orvprint/check",
     {"platform/system", "platform/mathematics", "platform/xml", "platform/visualization", "platform/model",
      "platform/print", "plugin"}},
};

// The layer of a path such as "platform/xml/ORVXmlNode.h"; empty when it belongs to none.
std::string LayerOf(const std::string& path) {
    std::string innermost;
    for (const auto& [layer, known] : kMayKnow)
        if (path.starts_with(layer + "/") && layer.size() > innermost.size()) innermost = layer;
    return innermost;
}

std::vector<std::string> IncludesOf(const fs::path& file) {
    std::vector<std::string> includes;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        const std::string start = "#include \"";
        if (line.starts_with(start))
            includes.push_back(line.substr(start.size(), line.rfind('"') - start.size()));
    }
    return includes;
}

std::vector<fs::path> Sources() {
    std::vector<fs::path> sources;
    for (const char* folder : {"platform", "plugin", "generators", "apps"})
        for (const auto& entry : fs::recursive_directory_iterator(fs::path(ORV_SOURCE_PATH) / folder))
            if (entry.path().extension() == ".h" || entry.path().extension() == ".cpp")
                sources.push_back(entry.path());
    return sources;
}

TEST(LayersTest, NobodyKnowsWhatStandsAbove) {
    std::size_t checked = 0;
    for (const fs::path& source : Sources()) {
        const std::string path = fs::relative(source, ORV_SOURCE_PATH).string(), layer = LayerOf(path);
        ASSERT_FALSE(layer.empty()) << path << " belongs to no layer";
        for (const std::string& include : IncludesOf(source)) {
            const std::string other = LayerOf(include);
            ASSERT_FALSE(other.empty()) << path << " includes " << include << ", which is in no layer";
            EXPECT_TRUE(other == layer || kMayKnow.at(layer).contains(other))
                << path << " includes " << include;
            ++checked;
        }
    }
    EXPECT_GT(checked, 300U);
}

// The rest of the command meets the interpreter as a module only, also by way of the check's headers.
TEST(LayersTest, TheCheckKeepsTheInterpreterToItself) {
    std::set<std::string> reached;
    std::vector<std::string> open;
    for (const fs::path& source : Sources()) {
        const std::string path = fs::relative(source, ORV_SOURCE_PATH).string();
        if (LayerOf(path) == "apps") open.push_back(path);
    }
    while (!open.empty()) {
        const std::string path = open.back();
        open.pop_back();
        if (!reached.insert(path).second) continue;
        EXPECT_NE(LayerOf(path), "plugin") << path << " is included by the command";
        for (const std::string& include : IncludesOf(fs::path(ORV_SOURCE_PATH) / path))
            open.push_back(include);
    }
    EXPECT_TRUE(reached.contains("apps/orvprint/check/document_check.h"));
}

TEST(LayersTest, IncludesGoByPathFromTheRoot) {
    for (const fs::path& source : Sources())
        for (const std::string& include : IncludesOf(source))
            EXPECT_TRUE(fs::exists(fs::path(ORV_SOURCE_PATH) / include)) << source << " includes " << include;
}

// A source that includes its own header first shows that the header stands on its own.
TEST(LayersTest, ASourceIncludesItsOwnHeaderFirst) {
    for (const fs::path& source : Sources()) {
        fs::path header = source;
        header.replace_extension(".h");
        if (source.extension() != ".cpp" || !fs::exists(header)) continue;
        const std::vector<std::string> includes = IncludesOf(source);
        ASSERT_FALSE(includes.empty()) << source;
        EXPECT_EQ(includes.front(), fs::relative(header, ORV_SOURCE_PATH).string());
    }
}

TEST(LayersTest, TheModuleKnowsNoThirdParty) {
    for (const fs::path& source : Sources()) {
        if (LayerOf(fs::relative(source, ORV_SOURCE_PATH).string()) != "plugin") continue;
        std::ifstream stream(source);
        for (std::string line; std::getline(stream, line);)
            if (line.starts_with("#include <")) {
                EXPECT_EQ(line.find_first_of("./"), std::string::npos) << source << ": " << line;
            }
    }
}

}  // namespace
