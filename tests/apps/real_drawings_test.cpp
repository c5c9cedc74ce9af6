// SPDX-License-Identifier: Apache-2.0

// Drawings that other programs write during the test. As standard SVG, they print with the size and content
// that another renderer shows.

#include <ostream>
#include <string>
#include <vector>

#include "tests/apps/looks.h"
#include "tests/apps/tool_run.h"
#include "tests/support/named_rows.h"

namespace {

/// A program that writes SVG, and its input.
struct RealDrawing {
    const char* name;
    std::vector<std::string> command;  ///< writes SVG to standard output
    std::string input;
};

void PrintTo(const RealDrawing& drawing, std::ostream* out) { *out << drawing.name; }

const std::vector<std::string> kGnuplot{"gnuplot", "-d", "-"}, kDot{"dot", "-Tsvg"};

const std::vector<RealDrawing> kDrawings{
    {"GraphvizGraph", kDot,
     "digraph { rankdir=LR; node [shape=box, style=filled, fillcolor=lightblue, fontname=\"DejaVu Sans\"];"
     "a -> b [label=\"first & last\", fontname=\"DejaVu Sans\"]; b -> c [style=dashed]; c -> a [color=red];"
     "d [shape=ellipse, fillcolor=\"#ffcc0080\"]; b -> d; }"},
    {"GraphvizClusters", kDot,
     "digraph { fontname=\"DejaVu Sans\"; node [fontname=\"DejaVu Sans\", shape=record];"
     "subgraph cluster_0 { label=\"inner\"; style=\"rounded,filled\"; fillcolor=\"#eeeeff\"; x [label=\"{<p> "
     "a|b|c}\"]; y }"
     "x:p -> y [arrowhead=diamond]; y -> z [penwidth=3]; z [shape=doublecircle]; }"},
    {"GraphvizGradient", kDot,
     "graph { node [fontname=\"DejaVu Sans\", style=filled, width=3, height=2]; a [fillcolor=\"red:yellow\", "
     "gradientangle=45];"
     "b [style=radial, fillcolor=\"white:blue\"]; a -- b; }"},
    {"GnuplotCurves", kGnuplot,
     "set terminal svg size 480,320 font 'DejaVu Sans,12' background 'white'; set grid; set title 'Curves';"
     "set xlabel 'x'; plot sin(x) lw 2, cos(x)/2 with linespoints pt 7 ps 0.5, x*x/100 with dots\n"},
    {"GnuplotBars", kGnuplot,
     "set terminal svg size 480,320 font 'DejaVu Sans,12' dashed; set style fill pattern border;"
     "set boxwidth 0.8; plot '-' using 1:2 with boxes title 'bars'\n1 3\n2 5\n3 2\n4 4\ne\n"},
    {"GnuplotSurface", kGnuplot,
     "set terminal svg size 480,320 font 'DejaVu Sans,12' enhanced; set pm3d; set isosamples 20;"
     "splot x*x-y*y title 'x^2-y^2'\n"},
    {"GraphOfPoints", {"graph", "-T", "svg", "-m", "2", "-S", "4"}, "0 0\n1 2\n2 1\n3 4\n"},
    {"Barcode", {"zint", "--direct", "--filetype=svg", "-d", "ABC 123"}, ""},
};

class RealDrawingTest : public ToolTest, public testing::WithParamInterface<RealDrawing> {};

TEST_P(RealDrawingTest, PrintsAsItsAuthorSeesIt) {
    const ToolRun drawn = RunProgram(GetParam().command, GetParam().input);
    ASSERT_EQ(drawn.exitCode, 0) << drawn.errors;
    WriteFile("a.svg", drawn.output);

    const ToolRun printed = Run({"a.svg", "--interpreter", "svg2", "--zoom", "1", "-o", "own.png"});
    ASSERT_EQ(printed.exitCode, 0) << printed.errors;
    const ToolRun other =
        RunProgram({"rsvg-convert", "--background-color=white", "-o", "other.png", "a.svg"});
    ASSERT_EQ(other.exitCode, 0) << other.errors;

    const auto imageOf = [&](const char* name) {
        return ORVRef<ORVPixelImage>(ORVPixelImage::CreateFromFile((Folder() / name).string(), 0, 0));
    };
    const ORVRef<ORVPixelImage> ownImage = imageOf("own.png"), otherImage = imageOf("other.png");
    ASSERT_TRUE(ownImage && otherImage);
    // Sizes in pt give fractions of pixels.
    EXPECT_NEAR(ownImage->GetWidth(), otherImage->GetWidth(), 1);
    EXPECT_NEAR(ownImage->GetHeight(), otherImage->GetHeight(), 1);
    const Looks own((Folder() / "own.png").string(), 0);
    const Looks seen((Folder() / "other.png").string(), own.GetRows());
    EXPECT_LT(own.DifferenceFrom(seen), 2.0);
    EXPECT_LT(own.ShareApartFrom(seen, 60.0), 0.005);

    const ToolRun check = Run({"check", "--interpreter", "svg2", "a.svg"});
    EXPECT_EQ(check.exitCode, 0) << check.output;
}

INSTANTIATE_TEST_SUITE_P(Programs, RealDrawingTest, testing::ValuesIn(kDrawings), kNameOfRow);

}  // namespace
