// SPDX-License-Identifier: Apache-2.0

// Drawings that were made to break the command.

#include <unistd.h>

#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tests/apps/limits_run.h"
#include "tests/support/test_texts.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class HostileDrawingsTest : public BoundedToolTest {};

// A small document that expands enormously, and the exit codes of printing it.
struct Bomb {
    const char* name;
    std::string content;
    int pdf, png;
};

void PrintTo(const Bomb& bomb, std::ostream* out) { *out << bomb.name; }

std::vector<Bomb> Bombs() {
    std::string markers = "<marker id='m0'>" + kLeaf + "</marker>";
    std::string patterns = "<pattern id='p0' width='9' height='9'>" + kLeaf + "</pattern>";
    for (int i = 1; i < 30; ++i) {
        const std::string number = std::to_string(i), before = std::to_string(i - 1);
        markers += "<marker id='m" + number + "'><polyline points='" + Repeat("1 2 ", 10) +
                   "' stroke='red' fill='blue' marker='url(#m" + before + ")'/></marker>";
        patterns += "<pattern id='p" + number + "' width='9' height='9'>" +
                    Repeat("<rect width='9' height='9' fill='url(#p" + before + ")'/>", 10) + "</pattern>";
    }
    const std::string points = "<polyline fill='none' stroke='red' points='" + Repeat("1 2 ", 5000) + "'/>";
    const std::string text = "<text y='20' fill='red'>" + Repeat("lol ", 1000) + "</text>";
    return {
        {"Duplicates", Fan(12, 10, "fill='blue'"), 9, 9},
        {"DuplicatesOfPoints", Fan(12, 10, "fill='blue'", {points}), 9, 9},
        {"DuplicatesOfText", Fan(12, 10, "fill='blue'", {text}), 9, 9},
        {"SharingPastCounting", Fan(12, 10, ""), 9, 9},
        {"Sharing", Fan(8, 10, ""), 0, 9},
        {"SharingOfPoints", Fan(7, 10, "", {points}), 0, 9},
        {"SharingOfText", Fan(6, 10, "", {text}), 0, 9},
        {"SharingOfArea", Fan(7, 10, "", {"<rect width='999' height='999' fill='red' fill-opacity='0.5'/>"}),
         0, 9},
        {"Boxes", Fan(12, 10, "width='9' height='9'"), 9, 9},
        {"BoxesOfText", Fan(8, 10, "width='9' height='9'", {text}), 9, 9},
        {"Symbols", Fan(12, 10, "width='9' height='9'", {.element = "symbol"}), 9, 9},
        {"Markers", markers + "<line stroke='blue' fill='red' marker='url(#m29)'/>", 9, 9},
        {"MarkersOnVertices",
         "<marker id='m'><g>" + Repeat(kLeaf, 1000) +
             "</g></marker><polyline fill='none' stroke='red' marker-mid='url(#m)' points='" +
             Repeat("1 2 ", 20'000) + "'/>",
         0, 9},
        {"Patterns", "<defs>" + patterns + "</defs><rect width='90' height='45' fill='url(#p29)'/>", 0, 0},
        {"Themselves",
         "<defs><g id='a'><use xlink:href='#a'/></g><g id='b'><use xlink:href='#c'/></g><g id='c'>"
         "<use xlink:href='#b'/></g><marker id='m'><line marker='url(#m)'/></marker></defs>"
         "<use xlink:href='#a'/><use xlink:href='#b'/><line stroke='red' marker='url(#m)'/>",
         0, 0},
        {"Clips",
         "<defs><clipPath id='c'><use xlink:href='#c' clip-path='url(#c)'/></clipPath></defs>"
         "<g clip-path='url(#c)'>" +
             kLeaf + "</g>",
         0, 0},
    };
}

// Sanitizers make each step several times as slow. A tenth of the default limits shows the same there.
#if defined(ORV_SANITIZED)
const std::string kLimits = " --limit visits=2000000 --limit duplicates=200000";
#else
const std::string kLimits;
#endif

class BombTest : public BoundedToolTest, public testing::WithParamInterface<Bomb> {};

TEST_P(BombTest, EndsInAPageOrInAnErrorThatSaysWhy) {
    const Bomb& bomb = GetParam();
    WriteFile("a.svg", SmallDrawing(bomb.content));
    const ToolRun pdf = RunBounded("a.svg -o a.pdf" + kLimits), png = RunBounded("a.svg -o a.png" + kLimits);
    EXPECT_EQ(pdf.exitCode, bomb.pdf) << pdf.errors;
    EXPECT_EQ(png.exitCode, bomb.png) << png.errors;
    for (const ToolRun& run : {pdf, png})
        EXPECT_THAT(run.errors,
                    run.exitCode == 0 ? testing::Matcher<std::string>(IsEmpty()) : HasSubstr("the limit"));
    const ToolRun dump = RunBounded("inspect a.svg > /dev/null" + kLimits);
    EXPECT_TRUE(dump.exitCode == 0 || dump.exitCode == 9) << dump.errors;
}

INSTANTIATE_TEST_SUITE_P(Hostile, BombTest, testing::ValuesIn(Bombs()),
                         [](const auto& bomb) { return std::string(bomb.param.name); });

TEST_F(HostileDrawingsTest, EntitiesThatGrowAreRefused) {
    std::string entities = "<!ENTITY e0 'aaaaaaaaaaaaaaaa'>";
    for (int i = 1; i < 30; ++i)
        entities +=
            "<!ENTITY e" + std::to_string(i) + " '" + Repeat("&e" + std::to_string(i - 1) + ";", 10) + "'>";
    WriteFile("a.svg", "<!DOCTYPE svg [" + entities + "]><svg width='9' height='9'><desc>&e29;</desc></svg>");
    EXPECT_EQ(RunBounded("a.svg -o b.pdf").exitCode, 4);
    EXPECT_EQ(RunBounded("a.svg --parser dom -o b.pdf").exitCode, 4);
}

TEST_F(HostileDrawingsTest, LargeDrawingsAreNotRefused) {
    std::string uses = "<defs>";
    for (int i = 0; i < 1000; ++i)
        uses += "<g id='d" + std::to_string(i) + "'>" + kLeaf + "<path d='M0 0L3 3L0 3z' fill='red'/></g>";
    uses += "</defs>";
    for (int i = 0; i < 20'000; ++i)
        uses += "<use xlink:href='#d" + std::to_string(i % 1000) + "' x='" + std::to_string(i % 90) +
                "' fill='lime'/>";
    WriteFile("uses.svg", SmallDrawing(uses));
    WriteFile(
        "markers.svg",
        SmallDrawing("<marker id='m'><path d='M0 0L3 3L0 3z' fill='red'/></marker><polyline fill='none' "
                     "stroke='red' marker-mid='url(#m)' points='" +
                     Repeat("1 2 ", 200'000) + "'/>"));
    // The document's own content raises these limits, so low ones suffice.
    for (const char* name : {"uses.svg", "markers.svg"}) {
        const std::string limits = " --limit duplicates=100000 --limit repeats=0";
        EXPECT_EQ(RunBounded(std::string(name) + " -o a.pdf" + limits).exitCode, 0) << name;
        EXPECT_EQ(RunBounded(std::string(name) + " -o a.png" + limits).exitCode, 0) << name;
    }
}

// Code that follows the document's structure must not overflow the stack.
TEST_F(HostileDrawingsTest, AStackOfAMegabyteIsEnough) {
#if defined(ORV_SANITIZED)
    const std::string stack = "16384";  // instrumented frames are many times as large
#else
    const std::string stack = "1024";
#endif
    const std::string deep = "<g id='a' fill='red' transform='scale(1)'>";
    WriteFile("deep.svg", SmallDrawing(Repeat(deep, 1022) + kLeaf + Repeat("</g>", 1022)));
    WriteFile("switch.svg", SmallDrawing(Repeat("<a xlink:href='#a'>", 1022) + kLeaf + Repeat("</a>", 1022)));
    WriteFile("nested.svg", SmallDrawing(Repeat("<svg>", 1022) + kLeaf + Repeat("</svg>", 1022)));
    WriteFile("wide.svg", SmallDrawing(Repeat("<g/>", 100'000)));
    std::string chain = "<defs><g id='d0'>" + kLeaf + "</g>";
    for (int i = 1; i < 20'000; ++i)
        chain += "<use id='d" + std::to_string(i) + "' xlink:href='#d" + std::to_string(i - 1) + "'/>";
    WriteFile("chain.svg", SmallDrawing(chain + "</defs><use xlink:href='#d19999' fill='blue'/>"));
    for (const std::string name : {"deep.svg", "switch.svg", "nested.svg", "wide.svg", "chain.svg"}) {
        for (const std::string arguments :
             {"-o a.pdf", "-o a.png", "-o a.svgout -f svg", "-o a.ps", "--parser dom -o a.pdf"}) {
            const ToolRun run = RunWithStack(stack, name + " " + arguments);
            EXPECT_EQ(run.exitCode, 0) << name << " " << arguments << ": " << run.errors;
        }
        EXPECT_EQ(RunWithStack(stack, "inspect " + name + " > /dev/null").exitCode, 0) << name;
        EXPECT_LE(RunWithStack(stack, "check " + name + " > /dev/null").exitCode, 1) << name;
    }
}

}  // namespace
