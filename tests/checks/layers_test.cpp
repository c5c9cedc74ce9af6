// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

using Layers = std::set<std::string>;

Layers Below(const Layers& some, const Layers& others) {
    Layers all = some;
    all.insert(others.begin(), others.end());
    return all;
}

const Layers kPlatform{"platform/system",        "platform/mathematics", "platform/xml",
                       "platform/visualization", "platform/model",       "platform/print"};
// The parts of the platform that generators may include: never the model.
const Layers kDrawing{"platform/system", "platform/mathematics", "platform/visualization", "platform/print"};
const Layers kSvg{"interpreters/svg/state",      "interpreters/svg/values",   "interpreters/svg/definitions",
                  "interpreters/svg/style",      "interpreters/svg/geometry", "interpreters/svg/structure",
                  "interpreters/svg/interpreter"};
const Layers kSvg2{
    "interpreters/svg2/values",  "interpreters/svg2/document", "interpreters/svg2/css",
    "interpreters/svg2/tree",    "interpreters/svg2/paint",    "interpreters/svg2/text",
    "interpreters/svg2/filters", "interpreters/svg2/drawing",  "interpreters/svg2/interpreter"};
const Layers kLibrary{"library/check", "library/text",   "library/dump",
                      "library/input", "library/report", "library/print"};
const Layers kPixels = Below(kDrawing, {"generators/common", "generators/raster"});

// The layers that each layer may include, besides itself. A folder without a row belongs to the layer of its
// parent folder.
const std::map<std::string, Layers> kMayKnow{
    {"platform/system", {}},
    {"platform/mathematics", {"platform/system"}},
    {"platform/xml", {"platform/system", "platform/mathematics"}},
    {"platform/visualization", {"platform/system", "platform/mathematics"}},
    {"platform/model", {"platform/system", "platform/mathematics", "platform/visualization"}},
    {"platform/print",
     {"platform/system", "platform/mathematics", "platform/xml", "platform/visualization", "platform/model"}},

    {"interpreters/svg/state", kPlatform},
    {"interpreters/svg/values", Below(kPlatform, {"interpreters/svg/state"})},
    {"interpreters/svg/definitions", Below(kPlatform, {"interpreters/svg/state", "interpreters/svg/values"})},
    {"interpreters/svg/style",
     Below(kPlatform, {"interpreters/svg/state", "interpreters/svg/values", "interpreters/svg/definitions"})},
    {"interpreters/svg/geometry",
     Below(kPlatform, {"interpreters/svg/state", "interpreters/svg/values", "interpreters/svg/definitions",
                       "interpreters/svg/style"})},
    {"interpreters/svg/structure",
     Below(kPlatform, {"interpreters/svg/state", "interpreters/svg/values", "interpreters/svg/definitions",
                       "interpreters/svg/style", "interpreters/svg/geometry"})},
    {"interpreters/svg/interpreter",
     Below(kPlatform, {"interpreters/svg/state", "interpreters/svg/values", "interpreters/svg/definitions",
                       "interpreters/svg/style", "interpreters/svg/geometry", "interpreters/svg/structure"})},

    {"interpreters/svg2/values", kPlatform},
    {"interpreters/svg2/document", Below(kPlatform, {"interpreters/svg2/values"})},
    {"interpreters/svg2/css", Below(kPlatform, {"interpreters/svg2/values", "interpreters/svg2/document"})},
    {"interpreters/svg2/tree",
     Below(kPlatform, {"interpreters/svg2/values", "interpreters/svg2/document", "interpreters/svg2/css"})},
    {"interpreters/svg2/paint", Below(kPlatform, {"interpreters/svg2/values", "interpreters/svg2/document",
                                                  "interpreters/svg2/css", "interpreters/svg2/tree"})},
    {"interpreters/svg2/text", Below(kPlatform, {"interpreters/svg2/values", "interpreters/svg2/document",
                                                 "interpreters/svg2/css", "interpreters/svg2/tree"})},
    {"interpreters/svg2/filters",
     Below(kPlatform, {"interpreters/svg2/values", "interpreters/svg2/document", "interpreters/svg2/css",
                       "interpreters/svg2/tree", "interpreters/svg2/paint"})},
    {"interpreters/svg2/drawing",
     Below(kPlatform, {"interpreters/svg2/values", "interpreters/svg2/document", "interpreters/svg2/css",
                       "interpreters/svg2/tree", "interpreters/svg2/paint", "interpreters/svg2/text",
                       "interpreters/svg2/filters"})},
    {"interpreters/svg2/interpreter",
     Below(kPlatform, {"interpreters/svg2/values", "interpreters/svg2/document", "interpreters/svg2/css",
                       "interpreters/svg2/tree", "interpreters/svg2/paint", "interpreters/svg2/text",
                       "interpreters/svg2/filters", "interpreters/svg2/drawing"})},

    {"generators/common", kDrawing},
    // Filters only process pixels; the raster generators determine what is drawn and where it goes.
    {"generators/filters",
     {"platform/system", "platform/mathematics", "platform/print", "generators/common"}},
    {"generators/raster", Below(kDrawing, {"generators/common"})},
    {"generators/cairo", Below(kDrawing, {"generators/common"})},
    {"generators/pdf", Below(kDrawing, {"generators/common"})},
    {"generators/svg", Below(kDrawing, {"generators/common"})},
    {"generators/sheet", Below(kDrawing, {"generators/common"})},
    {"generators/flatten", Below(kPixels, {"generators/filters"})},
    {"generators/png", kPixels},
    {"generators/tiff", kPixels},
    {"generators/pwg", kPixels},
    {"generators/postscript", Below(kDrawing, {"generators/common", "generators/cairo"})},
    // The table of formats.
    {"generators", Below(kDrawing, {"generators/common", "generators/pdf", "generators/svg", "generators/png",
                                    "generators/tiff", "generators/pwg", "generators/postscript"})},

    // The only folder outside the modules that includes the interpreters: the check of documents uses their
    // tables and parsers, so that its findings agree with what is printed. It includes no other part of the
    // library.
    {"library/check", Below(kPlatform, Below(kSvg, kSvg2))},
    {"library/text", {"platform/system"}},
    {"library/dump", Below(kPlatform, {"library/text"})},
    {"library/input", kPlatform},
    {"library/report", Below(kPlatform, {"library/check", "library/dump", "library/input"})},
    {"library/print",
     Below(kDrawing, {"platform/xml", "generators", "generators/common", "generators/flatten",
                      "generators/sheet", "library/check", "library/input"})},
    {"library/api", Below(kPlatform, Below(kLibrary, {"generators", "generators/common"}))},

    // The filter includes nothing, since it runs the command instead of reading drawings itself.
    {"apps/cups", {}},
    {"apps/orvprint/sandbox", {"platform/system"}},
    {"apps/orvprint/process",
     {"platform/system", "platform/visualization", "generators/common", "library/text", "library/input"}},
    {"apps/orvprint/input", Below(kPlatform, {"apps/orvprint/process", "library/input"})},
    {"apps/orvprint/printing", {}},
    // Modules that are linked into the command are declared here by their exported names, not included.
    {"apps/orvprint/linked",
     {"platform/system", "platform/visualization", "generators/common", "generators/postscript",
      "apps/orvprint/process", "apps/orvprint/printing", "apps/orvprint/serve"}},
    {"apps/orvprint/commands",
     Below(kPlatform,
           Below(kLibrary, {"apps/orvprint/printing", "generators", "generators/common", "generators/flatten",
                            "generators/sheet", "generators/svg", "apps/orvprint/sandbox",
                            "apps/orvprint/process", "apps/orvprint/input"}))},
    {"apps/orvprint/serve",
     Below(kPlatform, Below(kLibrary, {"generators", "generators/common", "apps/orvprint/process",
                                       "apps/orvprint/input", "apps/orvprint/commands"}))},
    {"apps/orvprint",
     {"generators/common", "apps/orvprint/process", "apps/orvprint/commands", "apps/orvprint/serve",
      "apps/orvprint/linked"}},
};

// The layer of a path such as "platform/xml/ORVXmlNode.h"; empty if there is none.
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
    for (const char* folder : {"platform", "interpreters", "generators", "library", "apps"})
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

Layers ReachedFrom(const std::string& layer) {
    Layers reached, open = kMayKnow.at(layer);
    while (!open.empty()) {
        const std::string next = open.extract(open.begin()).value();
        if (reached.insert(next).second) open.insert(kMayKnow.at(next).begin(), kMayKnow.at(next).end());
    }
    return reached;
}

TEST(LayersTest, TheTableHasNoCircle) {
    for (const auto& [layer, known] : kMayKnow) EXPECT_FALSE(ReachedFrom(layer).contains(layer)) << layer;
}

// The command and the rest of the library use interpreters only as modules. They must not include them
// through the check's headers either.
TEST(LayersTest, TheCheckKeepsTheInterpreterToItself) {
    std::set<std::string> reached;
    std::vector<std::string> open;
    for (const fs::path& source : Sources()) {
        const std::string path = fs::relative(source, ORV_SOURCE_PATH).string();
        const bool isAbove = path.starts_with("apps/") || path.starts_with("library/");
        if (isAbove && LayerOf(path) != "library/check") open.push_back(path);
    }
    while (!open.empty()) {
        const std::string path = open.back();
        open.pop_back();
        if (!reached.insert(path).second) continue;
        EXPECT_FALSE(path.starts_with("interpreters/")) << path << " is included above the module";
        for (const std::string& include : IncludesOf(fs::path(ORV_SOURCE_PATH) / path))
            open.push_back(include);
    }
    EXPECT_TRUE(reached.contains("library/check/document_check.h"));
}

TEST(LayersTest, IncludesGoByPathFromTheRoot) {
    for (const fs::path& source : Sources())
        for (const std::string& include : IncludesOf(source))
            EXPECT_TRUE(fs::exists(fs::path(ORV_SOURCE_PATH) / include)) << source << " includes " << include;
}

// A source that includes its own header first shows that the header is self-contained.
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
        if (!fs::relative(source, ORV_SOURCE_PATH).string().starts_with("interpreters/")) continue;
        std::ifstream stream(source);
        for (std::string line; std::getline(stream, line);)
            if (line.starts_with("#include <")) {
                EXPECT_EQ(line.find_first_of("./"), std::string::npos) << source << ": " << line;
            }
    }
}

}  // namespace
