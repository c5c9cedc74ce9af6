// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "tests/apps/tool_run.h"
#include "tests/support/text_search.h"
#include "tests/support/tiny_fonts.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kStandard =
    "<svg xmlns='http://www.w3.org/2000/svg' width='96' height='48'><style>rect{fill:red}</style>"
    "<rect width='48' height='48'/></svg>";

class StandardTest : public ToolTest {
protected:
    /// Returns what `check` prints for an `svg` element with this content.
    std::string Check(const std::string& content) const {
        const ToolRun run = Run({"check", "--interpreter", "svg2", "-"},
                                "<svg xmlns='http://www.w3.org/2000/svg' "
                                "xmlns:xlink='http://www.w3.org/1999/xlink' width='96' height='48'>" +
                                    content + "</svg>");
        return run.output;
    }
};

TEST_F(StandardTest, TheExamplesPrintWithNothingLost) {
    unsigned int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(Example("standard"))) {
        const std::string path = entry.path();
        const ToolRun check = Run({"check", "--interpreter", "svg2", path});
        EXPECT_EQ(check.exitCode, 0) << check.output;
        EXPECT_EQ(Run({path, "--interpreter", "svg2", "-o", "o.pdf"}).exitCode, 0) << path;
        EXPECT_THAT(RunProgram({"pdfimages", "-list", "o.pdf"}).output, Not(HasSubstr("image "))) << path;
        EXPECT_THAT(ReadFile("o.pdf"), testing::StartsWith("%PDF"));
        const std::string picture = entry.path().stem().string() + ".png";
        EXPECT_TRUE(std::filesystem::exists(ORV_SOURCE_PATH "/docs/gallery/" + picture)) << picture;
        ++count;
    }
    EXPECT_GE(count, 3U);
}

TEST_F(StandardTest, TheOptionChoosesTheInterpreter) {
    WriteFile("a.svg", kStandard);
    const std::vector<std::vector<std::string>> choices{{"--interpreter", "svg2"}, {"--interpreter", "SVG2"}};
    for (const auto& choice : choices) {
        std::vector<std::string> arguments{"info", "a.svg"};
        arguments.insert(arguments.end(), choice.begin(), choice.end());
        EXPECT_THAT(Run(arguments).output, HasSubstr("90 x 45"));
    }
    EXPECT_THAT(Run({"info", "a.svg"}).output, HasSubstr("96 x 48"));
    EXPECT_EQ(Run({"info", "a.svg", "--interpreter", "svg3"}).exitCode, 2);
}

TEST_F(StandardTest, EveryFormatTakesIt) {
    WriteFile("a.svg", kStandard);
    for (const char* format : {"pdf", "ps", "eps", "svg", "png", "tiff", "pwg", "urf"}) {
        const std::string output = std::string("a-out.") + format;
        const ToolRun run = Run({"a.svg", "-o", output, "-f", format, "--interpreter", "svg2"});
        EXPECT_EQ(run.exitCode, 0) << format << ": " << run.errors;
        EXPECT_EQ(run.errors, "") << format;
    }
}

TEST_F(StandardTest, EveryFormatDrawsFilters) {
    WriteFile("f.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' width='96' height='48'><filter id='f'>"
              "<feFlood flood-color='lime'/></filter><rect width='48' height='48' fill='red' "
              "filter='url(#f)'/></svg>");
    const auto print = [&](const char* name) {
        const ToolRun run = Run({"f.svg", "-o", name, "--interpreter", "svg2", "--dpi", "96"});
        EXPECT_EQ(run.exitCode, 0) << name << ": " << run.errors;
        EXPECT_EQ(run.errors, "") << name;
        return ReadFile(name);
    };
    EXPECT_THAT(print("f.pdf"), HasSubstr("/Image"));
    EXPECT_THAT(print("f.svg.svg"), HasSubstr("<feFlood"));
    for (const char* name : {"f.ps", "f.eps", "f.png", "f.tiff", "f.pwg"}) {
        const std::string filtered = print(name);
        EXPECT_GT(filtered.size(), 100U) << name;
    }
    // The pixels have the colour that the filter makes, and nothing of the content is left.
    const ToolRun run = Run({"f.svg", "-o", "-", "-f", "pwg", "--interpreter", "svg2", "--dpi", "96"});
    EXPECT_THAT(run.output, HasSubstr(std::string("\x00\xff\x00", 3)));
    EXPECT_THAT(run.output, Not(HasSubstr(std::string("\xff\x00\x00\xff\x00\x00", 6))));
}

TEST_F(StandardTest, TilesThatAreRepeatedVeryOftenBecomeImages) {
    const auto imagesIn = [&](const std::string& side) {
        WriteFile("a.svg",
                  "<svg xmlns='http://www.w3.org/2000/svg' width='" + side + "' height='" + side +
                      "'><linearGradient id='g'><stop stop-color='red'/><stop offset='1'/></linearGradient>"
                      "<pattern id='p' width='4' height='4' patternUnits='userSpaceOnUse'>"
                      "<rect width='3' height='3' fill='url(#g)'/></pattern>"
                      "<rect width='100%' height='100%' fill='url(#p)'/></svg>");
        EXPECT_EQ(Run({"a.svg", "--interpreter", "svg2", "-o", "o.svg", "--force"}).exitCode, 0);
        return CountOf(ReadFile("o.svg"), "<image");
    };
    EXPECT_EQ(imagesIn("400"), 0U);
    EXPECT_EQ(imagesIn("404"), 1U);
}

TEST_F(StandardTest, PartsOfLowerResolutionAreReported) {
    const struct {
        const char *content, *pixels, *message;
    } rows[] = {
        {"<rect width='400' height='400' opacity='.5'/>", "image-pixels=10000",
         "orvprint: standard input: 1 transparent part was drawn at a lower resolution, 24 dots per inch, to "
         "limit memory and time\n"},
        {"<rect width='400' height='400' opacity='.5'/>", "image-pixels=10000000", ""},
        {"<rect width='100' height='100' opacity='.5'/><rect x='200' width='200' height='200' opacity='.5'/>",
         "image-pixels=10000",
         "orvprint: standard input: 2 transparent parts were drawn at a lower resolution, 48 or more dots "
         "per "
         "inch, to limit memory and time\n"},
    };
    for (const auto& row : rows) {
        const ToolRun run =
            Run({"-", "-o", "o.ps", "--interpreter", "svg2", "--limit", row.pixels},
                std::string("<svg xmlns='http://www.w3.org/2000/svg' width='400' height='400'>") +
                    row.content + "</svg>");
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.errors, row.message);
    }
}

TEST_F(StandardTest, InspectWritesFilters) {
    const ToolRun run = Run({"inspect", "--json", "-", "--interpreter", "svg2"},
                            "<svg xmlns='http://www.w3.org/2000/svg' width='96' height='48'>"
                            "<rect width='48' height='48' filter='blur(2px)'/></svg>");
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    const json filter = json::parse(run.output)["pages"][0]["content"][0];
    EXPECT_EQ(filter["kind"], "filter");
    EXPECT_EQ(filter["steps"][0]["operation"], "blur");
    EXPECT_EQ(filter["steps"][0]["inputs"], json::parse("[\"source\"]"));
    EXPECT_EQ(filter["content"][0]["kind"], "shape");
}

TEST_F(StandardTest, InspectWritesWhatIsDrawn) {
    const ToolRun run = Run({"inspect", "--json", "-", "--interpreter", "svg2"}, kStandard);
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    const json dump = json::parse(run.output);
    EXPECT_EQ(dump["result"], 1);
    EXPECT_EQ(dump["pages"][0]["size"], json::parse("[90, 45]"));
    EXPECT_EQ(dump["pages"][0]["content"][0]["fill"]["colour"], "#ff0000ff");
}

TEST_F(StandardTest, InspectWritesEveryKindOfCall) {
    const ToolRun run =
        Run({"inspect", "-", "--interpreter", "svg2"},
            "<svg xmlns='http://www.w3.org/2000/svg' width='96' height='96'><title>T</title>"
            "<radialGradient id='g' fr='.1'><stop/><stop offset='1' stop-color='red'/></radialGradient>"
            "<mask id='m'><rect width='9' height='9'/></mask><clipPath id='c'><circle r='5'/></clipPath>"
            "<a href='https://example.org/'><g mask='url(#m)' style='mix-blend-mode:hue' opacity='.5'>"
            "<rect clip-path='url(#c)' width='9' height='9' fill='url(#g)' stroke='blue' stroke-width='2' "
            "stroke-dasharray='1 2' stroke-dashoffset='1' fill-rule='evenodd'/></g></a>"
            "<svg width='5' height='5'><text font-family='DejaVu Sans' stroke='red'>a</text></svg>"
            "<image width='9' href='data:image/bmp;base64,"
            "Qk06AAAAAAAAADYAAAAoAAAAAQAAAAEAAAABABgAAAAAAAQAAAAAAAAAAAAAAAAAAAAAAAAAAAD/AA=='/></svg>");
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    const json page = json::parse(run.output)["pages"][0];
    EXPECT_EQ(page["title"], "T");
    const json& content = page["content"];
    ASSERT_EQ(content.size(), 3U) << content;
    EXPECT_EQ(content[0]["link"], "https://example.org/");
    const json& layer = content[0]["content"][0];
    EXPECT_EQ(layer["opacity"], 0.5);
    EXPECT_EQ(layer["blend"], "hue");
    EXPECT_EQ(layer["content"][0]["of"], "luminance");
    const json& shape = layer["content"][1]["content"][0];
    EXPECT_EQ(layer["content"][1]["kind"], "clip");
    EXPECT_EQ(shape["fill"]["gradient"]["kind"], "radial");
    EXPECT_EQ(shape["fill"]["gradient"]["stops"][1]["colour"], "#ff0000ff");
    EXPECT_EQ(shape["fill"]["evenOdd"], true);
    EXPECT_EQ(shape["stroke"]["dashes"], json::parse("[1, 2]"));
    EXPECT_EQ(shape["stroke"]["dashOffset"], 1);
    EXPECT_EQ(content[1]["content"][0]["text"], "a");
    EXPECT_EQ(content[2]["pixels"], json::parse("[1, 1]"));
}

TEST_F(StandardTest, ErrorsNameTheirPlace) {
    const ToolRun broken = Run({"-", "-o", "x.pdf", "--interpreter", "svg2"}, "<svg><g></svg>");
    EXPECT_EQ(broken.exitCode, 4);
    EXPECT_THAT(broken.errors, HasSubstr(":1:"));
    EXPECT_EQ(Run({"-", "-o", "x.pdf", "--interpreter", "svg2"}, "<html/>").exitCode, 5);
}

TEST_F(StandardTest, DrawingsInsideDocumentsPrint) {
    const ToolRun run = Run({"info", "--qvxml", "-", "--interpreter", "svg2"},
                            "<r><svg xmlns='http://www.w3.org/2000/svg' width='96' height='96'/>"
                            "<svg xmlns='http://www.w3.org/2000/svg' width='192' height='96'/></r>");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("180 x 90"));
}

TEST_F(StandardTest, CheckReportsWhatIsNotDrawn) {
    const struct {
        const char *content, *kind;
    } kRows[] = {
        {"<rect width='1' height='1' filter='url(#none)'/>", "missing-reference (1)"},
        {"<rect width='1' height='1' filter='blur(1) url(#none) url(a.svg#f)'/>", "missing-reference (1)"},
        {"<rect width='1' height='1' filter='blur(1) url(a.svg#f)'/>", "unreachable-reference (1)"},
        {"<text font-family='DejaVu Sans'><tspan filter='blur(1)'>a</tspan></text>", "ignored-property (1)"},
        {"<filter id='f'><feOffset in='BackgroundImage'/></filter>", "attribute-without-effect (1)"},
        {"<filter id='f'><feImage href='#none'/></filter>", "missing-reference (1)"},
        {"<filter id='f'><feImage href='none.png'/></filter>", "image-missing (1)"},
        {"<filter id='f'><feUnheard/></filter>", "unknown-element (1)"},
        {"<foreignObject/>", "foreign-object (1)"},
        {"<switch><foreignObject/><rect systemLanguage='xx'/></switch>", "foreign-object (1)"},
        {"<script/>", "script (1)"},
        {"<rect><animate/></rect>", "animation (1)"},
        {"<font/>", "svg-font (1)"},
        {"<unheard/>", "unknown-element (1)"},
        {"<use href='#none'/>", "missing-reference (1)"},
        {"<use href='other.svg#x'/>", "unreachable-reference (1)"},
        {"<text font-family='DejaVu Sans'><tref href='#none'/></text>", "missing-reference (1)"},
        {"<text font-family='DejaVu Sans'><tref href='other.svg#x'/></text>", "unreachable-reference (1)"},
        {"<linearGradient href='#none'/>", "missing-reference (1)"},
        {"<radialGradient href='other.svg#x'/>", "unreachable-reference (1)"},
        {"<pattern href='#none'/>", "missing-reference (1)"},
        {"<path marker-start='url(#none)'/>", "missing-reference (1)"},
        {"<rect id='r'/><line marker-mid='url(#r)'/>", "missing-reference (1)"},
        {"<g marker-end='url(#none)'><rect/></g>", "missing-reference (1)"},
        {"<g xmlns:xi='http://www.w3.org/2001/XInclude'><xi:include href='a.txt'/></g>",
         "unprinted-element (1)"},
        {"<text font-family='DejaVu Sans'><include xmlns='http://www.w3.org/2001/XInclude'/></text>",
         "unprinted-element (1)"},
        {"<g id='g'><use href='#g'/></g>", "bad-reference (1)"},
        {"<rect fill='url(#none)'/>", "missing-reference (1)"},
        {"<rect clip-path='url(#none)'/>", "missing-reference (1)"},
        {"<rect mask='url(#none)'/>", "missing-reference (1)"},
        {"<image href='https://example.org/a.png'/>", "image-remote (1)"},
        {"<image href='none.png'/>", "image-missing (1)"},
        {"<image href='data:image/gif;base64,R0lGODlh'/>", "image-broken (1)"},
        {"<style>@import 'a.css';</style>", "style-sheet (1)"},
        {"<style>@container (width > 1px){rect{fill:red}}</style>", "style-sheet (1)"},
        {"<style>g{@scope (a){rect{fill:red}}}</style>", "style-sheet (1)"},
        {"<style>rect,%{fill:red}</style>", "cannot be read as selectors"},
        {"<style>rect:unheard{fill:red}</style>", "cannot be read as selectors"},
        {"<style>@keyframes a{from{fill:red}}</style>", "animation (1)"},
        {"<style>@font-face{font-family:a;src:url(a.ttf)}</style>", "style-sheet (1)"},
        {"<style>@font-face{font-family:a;src:url(data:font/ttf;base64,AAEAAAAB)}</style>",
         "holds no font that can be used"},
        {"<style>@font-face{font-family:a;src:url(a.ttf),local('DejaVu Sans')}</style>",
         "its next source is taken"},
        {"<style>@font-face{font-family:a;src:local('DejaVu Sans');size-adjust:90%}</style>",
         "ignored-property (1)"},
        {"<text font-family='DejaVu Sans' style='font-size-adjust:ic-height 1'>a</text>",
         "ignored-property (1)"},
        {"<path stroke-linejoin='arcs'/>", "ignored-property (1)"},
        {"<path stroke-linejoin='miter-clip'/>", "ignored-property (1)"},
        {"<g style='text-decoration-color:red'/>", "ignored-property (1)"},
        {"<g style='text-decoration:underline red'/>", "ignored-property (1)"},
        {"<g style='text-underline-offset:3px'/>", "ignored-property (1)"},
        {"<g alignment-baseline='top'/>", "ignored-property (1)"},
        {"<g style='font-variant-alternates:swash(a)'/>", "ignored-property (1)"},
        {"<text font-family='No Such Font'>a</text>", "font-missing (1)"},
        {"<g style='text-transform:full-width'/>", "bad-value (1)"},
        {"<style>text{text-transform:uppercase full-size-kana}</style>", "bad-value (1)"},
        {"<rect fill='reddish'/>", "bad-colour (1)"},
        {"<rect style='stroke:color-mix(in srgb, red, blue)'/>", "bad-colour (1)"},
        {"<style>rect{fill:reddish}</style>", "bad-colour (1)"},
        {"<rect stroke-width='wide'/>", "bad-value (1)"},
        {"<rect style='opacity:/* half */ 1x'/>", "bad-value (1)"},
        {"<rect style='width:wide'/>", "bad-value (1)"},
        {"<rect width='5foo'/>", "bad-length (1)"},
        {"<text x='1 2 x' font-family='DejaVu Sans'>a</text>", "bad-length (1)"},
        {"<linearGradient fx='x'/>", "bad-length (1)"},
        {"<g transform='rotate(x)'/>", "bad-transform (1)"},
        {"<g style='transform:rotate(5)'/>", "bad-transform (1)"},
        {"<pattern patternTransform='scale'/>", "bad-transform (1)"},
        {"<path d='M0 0 L5 5 x'/>", "bad-path-data (1)"},
        {"<polygon points='1 2 3'/>", "bad-points (1)"},
        {"<symbol viewBox='0 0 5'/>", "bad-view-box (1)"},
        {"<text>a</text>", "font-unspecified (1)"},
        {"<a href='javascript:x()'><rect width='1' height='1'/></a>", "script-link (1)"},
    };
    for (const auto& row : kRows) EXPECT_THAT(Check(row.content), HasSubstr(row.kind)) << row.content;
}

TEST_F(StandardTest, CheckNamesTheSheetOfAValue) {
    EXPECT_THAT(
        Check("<style>a{fill:red}</style>\n<style>a{fill:reddish}</style>\n<style>a{fill:red}</style>"),
        HasSubstr(":2:"));
    EXPECT_THAT(Check("<rect/>\n<style>/* copied */ a{fill:reddish}</style>"), HasSubstr(":2:"));
}

TEST_F(StandardTest, CheckReportsALossOnce) {
    for (const char* content :
         {"<path stroke-linejoin='arcs'/>", "<g style='text-decoration-color:red'/>",
          "<g alignment-baseline='top'/>", "<g style='font-variant-alternates:swash(a)'/>",
          "<g style='inline-size:9px'/>",
          "<text font-family='DejaVu Sans' style='font-size-adjust:ic-height 1'>a</text>",
          "<g color-interpolation='linearRGB'/>"})
        EXPECT_THAT(Check(content), HasSubstr("1 finding of 1 kind")) << content;
}

TEST_F(StandardTest, CheckNamesTheSheetOfAFont) {
    EXPECT_THAT(Check("<style>@font-face{font-family:a;src:local('DejaVu Sans')}</style>\n"
                      "<style>@font-face{font-family:a;src:url(a.ttf)}</style>"),
                HasSubstr(":2:"));
}

TEST_F(StandardTest, CheckFindsNothingInFontsOfDocuments) {
    const auto check = [&](const char* font) {
        return Check(std::string("<style>@font-face{font-family:t;src:url(data:;base64,") + font +
                     ")}</style><text font-family='t'>A</text>");
    };
    EXPECT_THAT(check(tiny_fonts::kSvgGlyphs), HasSubstr("nothing found"));
    EXPECT_THAT(check(tiny_fonts::kPainted), HasSubstr("nothing found"));
    EXPECT_THAT(check(tiny_fonts::kWoff2), HasSubstr("nothing found"));
}

// Also those beside them that have one colour.
TEST_F(StandardTest, GlyphsInColoursRemainTextAndVectors) {
    for (const char* font : {tiny_fonts::kLayered, tiny_fonts::kPainted, tiny_fonts::kSvgGlyphs}) {
        WriteFile("a.svg", std::string("<svg xmlns='http://www.w3.org/2000/svg' width='96' height='48'>"
                                       "<style>@font-face{font-family:t;src:url(data:;base64,") +
                               font +
                               ")}</style><text y='40' font-size='30' font-family='t'>ABA</text></svg>");
        ASSERT_EQ(Run({"a.svg", "--interpreter", "svg2", "-o", "a.pdf"}).exitCode, 0);
        EXPECT_THAT(RunProgram({"pdftotext", "a.pdf", "-"}).output, testing::StartsWith("ABA"));
        EXPECT_THAT(RunProgram({"pdfimages", "-list", "a.pdf"}).output, Not(HasSubstr("image ")));
    }
    // The names of elements in a font are not those of the page.
    ASSERT_EQ(Run({"a.svg", "--interpreter", "svg2", "-f", "svg", "-o", "b.svg"}).exitCode, 0);
    EXPECT_EQ(CountOf(ReadFile("b.svg"), "<circle"), 2U);
    EXPECT_THAT(ReadFile("b.svg"), Not(HasSubstr("glyph2")));
}

TEST_F(StandardTest, CheckFindsNothingInWhatIsDrawn) {
    for (const char* content : {
             "<linearGradient id='g'><stop/></linearGradient><rect fill='url(#g)'/>",
             "<style>rect{fill:red}</style><rect/>",
             "<style>a:hover,a::before,a::-moz-selection{fill:red}</style>",
             "<style>@charset 'utf-8'; @layer a; @supports "
             "(fill:red){g{rect{fill:red}}}</style><g><rect/></g>",
             "<text font-family='DejaVu Sans'><tspan dy='1'>a</tspan></text>",
             "<text font-family='DejaVu Sans' font-variant='small-caps' unicode-bidi='embed' "
             "style='font-feature-settings:\"liga\" 0;font-variant-caps:unicase'>a</text>",
             "<text id='t' font-family='DejaVu Sans'>a<tref href='#t'/></text>",
             "<text font-family='DejaVu Sans'>a<a href='https://example.org/'>b</a></text>",
             "<marker id='m'/><linearGradient id='g'/><pattern id='p'/><path marker='url(#m)'/>"
             "<radialGradient href='#g'/><pattern href='#p'/>",
             "<g marker-end='url(#none)'><text font-family='DejaVu Sans'>a</text></g>",
             "<g xmlns:e='urn:e'><e:include/></g>",
             "<g xmlns:e='urn:e'><g xmlns:e='http://www.w3.org/2001/XInclude'/><e:include/></g>",
             "<rect fill='' stroke='inherit' stroke-width='var(--w)' style='fill:var(--f);--f:reddish;"
             "stroke-miterlimit:0;text-rendering:auto;text-transform:uppercase;cursor:pointer;color:oklch(50%"
             " .1 "
             "20)'/>",
             "<text x='1 2,3' dx='1em,5%' rotate='0 5' font-family='DejaVu Sans'>a</text>",
             "<path d='' transform=''/><path d='none'/><polygon points='1,2 3,4'/><rect rx='auto' "
             "width='auto'/>",
             "<marker refX='center' refY='50%' viewBox='0 0 1 1' markerWidth='2'/>",
             "<switch><foreignObject/><rect/></switch>",
             "<style>@font-face{font-family:a;src:local('DejaVu Sans');font-weight:400 900}</style>"
             "<text font-family='a'>a</text>",
             "<text font-family='DejaVu Sans' font-size-adjust='0.5'>a</text>",
             "<text font-family='DejaVu Sans' font-size-adjust='from-font'>a</text>",
             "<text font-family='DejaVu Sans' style='text-decoration:underline dotted 2px'>a</text>",
             "<clipPath id='c'><rect/></clipPath><rect clip-path='url(#c)' mask='none' filter='none'/>",
             "<filter id='f'><feOffset in='SourceAlpha'/></filter><g filter='blur(1) url(#f)'/>",
         })
        EXPECT_THAT(Check(content), HasSubstr("nothing found")) << content;
}

TEST_F(StandardTest, CheckFindsNothingInWhatIsHidden) {
    for (const char* content : {
             "<g display='none'><text>a</text><image/><unheard/><rect fill='url(#none)'/></g>",
             "<g visibility='hidden'><text>a</text><image/></g>",
             "<g systemLanguage='xx'><text>a</text><foreignObject/></g>",
             "<switch><g/><a><text>a</text></a></switch>",
             "<switch><foreignObject requiredExtensions='x'/><g/></switch>",
             "<g display='none'><g id='g'><text>a</text></g></g><use href='#none' display='none'/>",
         })
        EXPECT_THAT(Check(content), HasSubstr("nothing found")) << content;
}

TEST_F(StandardTest, CheckFindsWhatIsHiddenWhereItStandsButShownElsewhere) {
    constexpr const char* kHiddenLayer =
        "<g xmlns:i='http://www.inkscape.org/namespaces/inkscape' i:groupmode='layer' i:label='a' "
        "display='none'><text>a</text></g>";
    for (const char* content : {
             "<g display='none'><g id='g'><text>a</text></g></g><use href='#g'/>",
             "<switch><g/><g id='g'><text>a</text></g></switch><use href='#g'/>",
             "<g display='none'><pattern id='p'><text>a</text></pattern></g>",
             "<g visibility='hidden'><text visibility='visible'>a</text></g>",
             kHiddenLayer,
         })
        EXPECT_THAT(Check(content), HasSubstr("font-unspecified (1)")) << content;
}

TEST_F(StandardTest, LinksThatExecuteCodeAreLeftOut) {
    const ToolRun run = Run({"-", "-o", "-", "-f", "pdf", "--interpreter", "svg2"},
                            "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>"
                            "<a href='java\tscript:x()'><rect width='1' height='1'/></a></svg>");
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_THAT(run.output, Not(HasSubstr("script:")));
}

}  // namespace
