// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/svg_writer.h"

#include <gtest/gtest.h>

#include "generators/common/ORVOutput.h"
#include "tests/support/named_rows.h"
#include "tests/support/sample_images.h"

namespace {

struct TransformCase {
    const char* name;
    ORVMathAffine2D map;
    const char* expected;
};
class AppendSvgTransformTest : public testing::TestWithParam<TransformCase> {};
TEST_P(AppendSvgTransformTest, SaysWhatTheMapDoes) {
    std::string text;
    AppendSvgTransform(text, GetParam().map, 3);
    EXPECT_EQ(text, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Transform, AppendSvgTransformTest,
    testing::Values(
        TransformCase{"Identity", {}, ""},
        TransformCase{"SmallerThanCanBeWritten", ORVMathAffine2D::Translation(1e-4, -1e-4), ""},
        TransformCase{"Translation", ORVMathAffine2D::Translation(5.25, -3.0),
                      " transform=\"translate(5.25 -3)\""},
        TransformCase{"Scaling", ORVMathAffine2D::Scaling(2.0, 0.5), " transform=\"matrix(2 0 0 .5 0 0)\""},
        TransformCase{
            "QuarterTurn", {6e-17, -1.0, 1.0, 6e-17, 10.0, 0.0}, " transform=\"matrix(0 1 -1 0 10 0)\""},
        TransformCase{"All", {1.0, 3.0, 2.0, 4.0, 5.0, 6.0}, " transform=\"matrix(1 2 3 4 5 6)\""}),
    kNameOfRow);

std::string Written(const std::vector<std::pair<std::string, std::string>>& elements) {
    ORVMemoryOutput output;
    SvgWriter writer(output);
    for (const auto& [style, rest] : elements) {
        std::string changed = rest;
        writer.AddElement("path", style, changed);
    }
    EXPECT_TRUE(writer.Flush());
    return output.GetBytes();
}

TEST(SvgWriterTest, NeighboursOfOneStyleShareIt) {
    EXPECT_EQ(Written({{" fill=\"red\"", " d=\"1\"/>"},
                       {" fill=\"red\"", " d=\"2\"/>"},
                       {" fill=\"red\"", " d=\"3\"/>"},
                       {" fill=\"blue\"", " d=\"4\"/>"}}),
              "<g fill=\"red\">\n<path d=\"1\"/><path d=\"2\"/><path d=\"3\"/></g>\n"
              "<path fill=\"blue\" d=\"4\"/>");
}

TEST(SvgWriterTest, WhatHasNoStyleNeedsNoGroup) {
    EXPECT_EQ(Written({{"", " d=\"1\"/>"}, {"", " d=\"2\"/>"}}), "<path d=\"1\"/><path d=\"2\"/>");
}

TEST(SvgWriterTest, OtherElementsEndAGroup) {
    ORVMemoryOutput output;
    SvgWriter writer(output);
    for (int i = 0; i < 2; ++i) {
        std::string rest = "/>";
        writer.AddElement("a", " s", rest);
    }
    writer.Put("<b/>");
    std::string rest = "/>";
    writer.AddElement("a", " s", rest);
    EXPECT_TRUE(writer.Flush());
    EXPECT_EQ(output.GetBytes(), "<g s>\n<a/><a/></g>\n<b/><a s/>");
}

TEST(SvgWriterTest, WritesBase64InPieces) {
    std::string bytes;
    for (int i = 0; i < 20'000; ++i) bytes += static_cast<char>(i * 7 % 251);
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{2}, std::size_t{3},
                                   std::size_t{4096}, std::size_t{4097}, std::size_t{20'000}}) {
        for (const std::size_t piece : {std::size_t{1}, std::size_t{5}, std::size_t{10'000}}) {
            ORVMemoryOutput output;
            SvgWriter writer(output);
            for (std::size_t at = 0; at < size; at += piece)
                writer.PutBase64(
                    {reinterpret_cast<const std::uint8_t*>(bytes.data()) + at, std::min(piece, size - at)});
            writer.PutEndOfBase64();
            EXPECT_TRUE(writer.Flush());
            EXPECT_EQ(output.GetBytes(), ToBase64(bytes.substr(0, size))) << size << " by " << piece;
        }
    }
}

}  // namespace
