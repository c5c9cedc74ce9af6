// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/batch_names.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(BatchNamesTest, NamesComeWithoutFolderAndEndingOfDrawings) {
    for (const auto& [input, name] : std::vector<std::pair<const char*, const char*>>{{"a.svg", "a"},
                                                                                      {"dir.d/a.svgz", "a"},
                                                                                      {"/x/A.SVG", "A"},
                                                                                      {"a.b.qvxml", "a.b"},
                                                                                      {"a.svg.gz", "a"},
                                                                                      {"a.qvxml.GZ", "a"},
                                                                                      {"a.xml", "a.xml"},
                                                                                      {"a.gz", "a.gz"},
                                                                                      {"a", "a"},
                                                                                      {".svg", ".svg"},
                                                                                      {"-", "-"},
                                                                                      {"svg", "svg"}})
        EXPECT_EQ(BaseName(input), name) << input;
}

TEST(BatchNamesTest, PlansOneOutputForEachInput) {
    std::string error;
    EXPECT_THAT(PlanOutputs({"a.svg", "x/b.svgz"}, "out/", "pdf", false, error),
                ElementsAre("out/a.pdf", "out/b.pdf"));
    EXPECT_THAT(error, IsEmpty());
    EXPECT_THAT(PlanOutputs({"a.svg"}, "/", "pdf", false, error), ElementsAre("/a.pdf"));
    EXPECT_THAT(PlanOutputs({"a.svg", "x/"}, "out", "pdf", false, error), IsEmpty());
    EXPECT_EQ(error, "x/ names no file");
}

}  // namespace
