// SPDX-License-Identifier: Apache-2.0

// Makes seeds for the fuzzers: attribute values and small drawings taken from larger ones, and small images.
//
//     orv_make_seeds FOLDER TARGETS DRAWING...
//
// TARGETS is the table of targets; FOLDER gets a folder per target.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/support/documents.h"
#include "interpreters/svg/geometry/base64.h"
#include "interpreters/svg/geometry/path_scanner.h"
#include "platform/xml/ORVLightXml.h"
#include "tests/platform/visualization/written_images.h"
#include "tests/support/tiny_fonts.h"

namespace {

namespace fs = std::filesystem;

// Enough to start with: more seeds of the same kind would add little.
constexpr std::size_t kMostSeeds = 60;

/// Seeds of all targets, without duplicates.
class Seeds {
public:
    explicit Seeds(const std::string& table) {
        std::ifstream stream(table);
        for (std::string line; std::getline(stream, line);) {
            std::istringstream words(line);
            std::string target, dictionary;
            std::size_t longest = 0;
            if (words >> target >> dictionary >> longest && target.front() != '#') longest_[target] = longest;
        }
    }

    void Add(const std::string& target, std::string_view bytes) {
        if (bytes.size() <= longest_.at(target)) seeds_[target].emplace(bytes);
    }

    void Write(const fs::path& folder) const {
        for (const auto& [target, longest] : longest_) {
            fs::create_directories(folder / target);
            const auto found = seeds_.find(target);
            if (found == seeds_.end()) continue;
            // Takes them at even intervals; they are sorted by their bytes.
            const std::vector<std::string> all(found->second.begin(), found->second.end());
            const std::size_t count = std::min(all.size(), kMostSeeds);
            for (std::size_t i = 0; i < count; ++i) {
                const std::string& seed = all[i * all.size() / count];
                std::ofstream file(folder / target / std::to_string(i), std::ios::binary);
                file.write(seed.data(), static_cast<std::streamsize>(seed.size()));
            }
        }
    }

private:
    std::map<std::string, std::size_t> longest_;
    std::map<std::string, std::set<std::string>> seeds_;
};

const std::map<std::string_view, std::string> kTargetsOfAttributes{{"x", "lengths"},
                                                                   {"y", "lengths"},
                                                                   {"width", "lengths"},
                                                                   {"height", "lengths"},
                                                                   {"r", "lengths"},
                                                                   {"font-size", "lengths"},
                                                                   {"stroke-width", "lengths"},
                                                                   {"letter-spacing", "lengths"},
                                                                   {"fill", "colours"},
                                                                   {"stroke", "colours"},
                                                                   {"color", "colours"},
                                                                   {"transform", "transforms"},
                                                                   {"viewBox", "view_boxes"},
                                                                   {"points", "point_lists"},
                                                                   {"style", "styles"},
                                                                   {"stroke-dasharray", "styles"}};

void AddPath(std::string_view data, Seeds& seeds) {
    for (const char* choices : {"110", "102", "111"})
        seeds.Add("paths", std::string(choices) + std::string(data));
    PathScanner scanner(data);
    for (char letter = 0; scanner.NextCommand(letter);) {
        if (letter != 'a' && letter != 'A') continue;
        std::string arc = "10 20";
        for (std::string_view argument; scanner.NextArgument(argument);) arc.append(" ").append(argument);
        seeds.Add("arcs", arc);
    }
}

void AddImage(std::string_view reference, Seeds& seeds) {
    const std::size_t comma = reference.find(";base64,");
    if (!reference.starts_with("data:") || comma == reference.npos) return;
    const std::string_view text = reference.substr(comma + 8);
    seeds.Add("base64", text);
    std::string bytes;
    if (!DecodeBase64(text, bytes)) return;
    seeds.Add(reference.find("jpeg") < comma ? "jpeg" : reference.find("bmp") < comma ? "bmp" : "png", bytes);
}

void AddValues(const ORVXmlNode& element, Seeds& seeds) {
    for (std::uint32_t i = 0; i < element.attributeCount; ++i) {
        const ORVXmlAttribute attribute = element.GetAttribute(i);
        if (const auto found = kTargetsOfAttributes.find(attribute.name); found != kTargetsOfAttributes.end())
            seeds.Add(found->second, attribute.value);
        if (attribute.name == "style") seeds.Add("standard_styles", attribute.value);
        if (attribute.name == "d") AddPath(attribute.value, seeds);
        if (attribute.name == "xlink:href") AddImage(attribute.value, seeds);
    }
}

void AddDrawing(const std::string& document, Seeds& seeds) {
    for (const char* target : {"light_xml", "dom_xml", "plain_xml", "check"}) seeds.Add(target, document);
    for (const char* choices : {"00", "01", "10"}) seeds.Add("document", choices + document);
    for (const char* choices : {"0", "1"}) {
        seeds.Add("standard_document", choices + document);
        seeds.Add("standard_pixels", choices + document);
    }
    for (const char* choices : {"0", "1"}) {
        seeds.Add("qvxml", choices + document);
        seeds.Add("qvxml", choices + ("<report>" + document + "</report>"));
    }
    // Choices of PrintInFormat: parser, resolution, colours, date, sheet layout, and the size at which the
    // output fails.
    static const std::string kChoices[] = {"000000",      "110000",      "0110110000",  "10202010000",
                                           "00003000000", "01014000010", "00105111010", "00000\x05"};
    for (const char* target : {"pdf_generator", "postscript_generator", "svg_generator", "png_generator",
                               "tiff_generator", "pwg_generator"})
        for (const std::string& choices : kChoices) seeds.Add(target, choices + document);
}

// Adds the drawing, one drawing for each child of its root, and the attribute values.
void AddDrawings(const std::string& document, Seeds& seeds) {
    AddDrawing(document, seeds);
    ORVLightXmlElement root;
    ORVLightXmlParser().Parse({document.data(), document.size()}, root);
    if (!root.GetNode()) return;
    const std::string head = WriteStartTag(*root.GetNode());
    const std::string tail = "</" + std::string(root.GetNode()->GetName()) + ">";
    for (const ORVXmlNode* child = root.GetNode()->firstChild; child; child = child->nextSibling) {
        if (!child->IsElement()) continue;
        std::string drawing = head;
        drawing += WriteElement(*child);
        drawing += tail;
        AddDrawing(drawing, seeds);
    }

    std::vector<const ORVXmlNode*> pending{root.GetNode()};
    while (!pending.empty()) {
        const ORVXmlNode* const node = pending.back();
        pending.pop_back();
        AddValues(*node, seeds);
        for (const ORVXmlNode* child = node->firstChild; child; child = child->nextSibling)
            if (child->IsElement()) pending.push_back(child);
    }
}

void AddBytes(const char* target, const ByteList& bytes, Seeds& seeds) {
    seeds.Add(target, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

// Adds every kind of PNG, JPEG and BMP image, a few pixels each.
void AddImages(Seeds& seeds) {
    const auto sample = [](int x, int y, int channel) {
        return static_cast<unsigned>(3 * x + 5 * y + channel);
    };
    constexpr int kColourTypes[][2] = {{0, 1}, {0, 2}, {0, 4}, {0, 8}, {0, 16}, {2, 8}, {2, 16}, {3, 1},
                                       {3, 2}, {3, 4}, {3, 8}, {4, 8}, {4, 16}, {6, 8}, {6, 16}};
    for (const auto& [type, depth] : kColourTypes)
        for (const bool interlaced : {false, true}) {
            PngToWrite png{5, 4, depth, type, interlaced, {}};
            const unsigned mask = type == 3 ? 1U : (1U << static_cast<unsigned>(depth)) - 1U;
            png.sample = [&sample, mask](int x, int y, int channel) { return sample(x, y, channel) & mask; };
            if (type == 3) png.palette = {255, 0, 0, 0, 255, 0}, png.paletteAlpha = {7};
            AddBytes("png", WritePng(png), seeds);
        }
    for (const int components : {1, 3, 4})
        for (const bool progressive : {false, true}) {
            JpegToWrite jpeg{9, 8, components};
            // Grey, RGB stored as YCbCr, and CMYK, by libjpeg's numbers.
            jpeg.inputSpace = components == 1 ? 1 : components == 3 ? 2 : 4;
            jpeg.storedSpace = components == 1 ? 1 : components == 3 ? 3 : 4;
            jpeg.progressive = progressive;
            for (int i = 0; i < 9 * 8 * components; ++i)
                jpeg.samples.push_back(static_cast<std::uint8_t>(7 * i));
            AddBytes("jpeg", WriteJpeg(jpeg), seeds);
        }
    for (const unsigned bits : {1U, 4U, 8U, 16U, 24U, 32U})
        for (const int height : {3, -3}) {
            BmpToWrite bmp = BmpToWrite::Info(5, height, bits);
            if (bits <= 8)
                for (unsigned i = 0; i < 1U << bits; ++i) bmp.U32(i * 0x010203U);
            AddBytes("bmp", bmp.With(ByteList((std::size_t{5} * bits + 31) / 32 * 4 * 3, 0x35)), seeds);
        }
    // Runs of equal pixels, an end of line and the end of the image.
    for (const unsigned bits : {4U, 8U}) {
        BmpToWrite bmp = BmpToWrite::Info(5, 2, bits, bits == 8 ? 1 : 2, 2);
        bmp.U32(0).U32(0xFFFFFF);
        AddBytes("bmp", bmp.With({5, 1, 0, 0, 0, 3, 1, 0, 1, 0, 2, 0, 0, 1}), seeds);
    }
}

// Adds GIF, plain and interlaced, and WebP: lossless, lossy and animated.
void AddModuleImages(Seeds& seeds) {
    // NOLINTBEGIN(bugprone-suspicious-missing-comma): long files take several lines
    constexpr std::string_view kFiles[] = {
        "R0lGODlhBAACAPAAAACAAP//ACH5BAAAAAAALAAAAAAEAAIAAAIDDI5RADs=",
        "R0lGODlhEAAQAPAAAACAAP//ACH5BAAAAAAALAAAAAAQABAAQAIVjG+gy+0PowQIzYuzqwfypIXiSI4FADs=",
        "UklGRi4AAABXRUJQVlA4TCIAAAAvA0AAABcgEEhSn3wNAUGR/6MJCIr8H23+g38KXC0xov8R",
        "UklGRlgAAABXRUJQVlA4IEwAAABQAgCdASoQAAgAAMASJagCdLoB+AADdFaxXtAA/v+ifv/uLX/DJt//cxr/8wJW/8qH"
        "9p69p6/mD/+F0f/G4Jn+L/+K3/Fb/+JxAAAA",
        "UklGRoQAAABXRUJQVlA4WAoAAAACAAAADwAADwAAQU5JTQYAAAD/////AABBTk1GKAAAAAAAAAAAAA8AAA8AAGQAAABW"
        "UDhMDwAAAC8PwAMAB1DAiP4HIqL/AQBBTk1GKAAAAAAAAAAAAA8AAA8AAGQAAABWUDhMDwAAAC8PwAMABxDR//4HIqL/"
        "AQA="};
    // NOLINTEND(bugprone-suspicious-missing-comma)
    for (const std::string_view file : kFiles) {
        std::string bytes;
        if (DecodeBase64(file, bytes)) seeds.Add("module_images", bytes);
    }
}

// Adds seeds for what only standard SVG has.
void AddStandard(Seeds& seeds) {
    for (const char* styles :
         {"fill:var(--b, red)!important;stroke:context-fill\n",
          "\n.f>rect:not(.g):nth-child(2n+1){fill:hsl(9,9%,9%)}",
          "\n@media print{#e *{clip-path:url(#b)}} g ~ use,[lang|='en']{mask:url(#c)}",
          "marker-mid:url(#d);mix-blend-mode:multiply\n:root{--a:var(--b)} *{opacity:.5;transform:scale(2)}"})
        seeds.Add("standard_styles", styles);
    for (const char* paints :
         {"url(#a)\nurl(#b) red\n2%\n1,2 3\n50%\nrgb(1 2 "
          "3/.5)\n1\n.3\n.1\nuserSpaceOnUse\nrotate(9)\nreflect\n"
          "5\n0 0 9 9\nM0 0a9 9 0 0 1 5 5z",
          "context-fill\nlinear-gradient(red)\ncalc(1px + 2%)\n0 0\n-1\ninherit\n1e9\n-5\n\n\nscale(0)\n\n0",
          "url(#c)\nnone\n\n\n.2\n#1234\n\n0\n2\n\nmatrix(1 2 3 4 5 6)\nrepeat\n.1\n\nM0 0Q1 2 3 4T5 6"})
        seeds.Add("standard_paints", paints);
    for (const char* texts :
         {"1 2 3\n4 5\n9\n50\ntext-anchor:middle\nM0 0h90\n5%\nHello world",
          "\n\n\n\nwriting-mode:tb;letter-spacing:2px;direction:rtl\nM0 0c9 9 9 9 20 0\n\n  a  b\n c",
          "50%\n\n\n\nfont:italic bold 9px/2 serif;text-decoration:underline\n\n\nfi"})
        seeds.Add("standard_texts", texts);
}

/// Adds drawings whose pixels take more than one way: tiles, filters, layers, overlapping outlines.
void AddStages(Seeds& seeds) {
    for (const char* content :
         {"<pattern id='p' width='7.3' height='5' patternUnits='userSpaceOnUse'><g opacity='.5'><circle "
          "r='4'/>"
          "</g></pattern><rect width='50' height='50' fill='url(#p)'/><path d='M9 9h50v9z' "
          "stroke='url(#p)'/>",
          "<pattern id='q' width='.1' height='.1'><image width='3' height='3' href='a.png'/><rect width='9' "
          "height='9' filter='blur(1)'/></pattern><pattern id='p' width='.3' height='.3' "
          "patternTransform='rotate(9)'><rect width='30' height='30' fill='url(#q)'/></pattern>"
          "<circle r='60' fill='url(#p)'/>",
          "<g fill='none' stroke='red' stroke-width='3'><path d='M5 5L90 9Z'/><path d='M5 "
          "20H90V20.5H5Z'/><path "
          "d='M5 30C9 60 60 60 90 30C60 60 9 60 5 30z' stroke-linejoin='round'/></g>",
          "<path d='M9 9H50V90H9ZM50 9V90H90V9Z'/><path fill-rule='evenodd' d='M0 0L9 9V0ZM0 0L9 9H0Z'/>",
          "<mask id='m'><rect width='50' height='50' fill='gray'/></mask><g mask='url(#m)' "
          "style='mix-blend-mode:multiply' opacity='.5'><circle r='50' fill='lime'/></g>"})
        for (const char* choices : {"0", "1"})
            seeds.Add("standard_pixels",
                      std::string(choices) +
                          "<svg xmlns='http://www.w3.org/2000/svg' width='100' height='100'>" + content +
                          "</svg>");
}

/// Adds drawings that embed a font.
void AddFonts(Seeds& seeds) {
    for (const char* font : {tiny_fonts::kTrueType, tiny_fonts::kOpenType, tiny_fonts::kWoff,
                             tiny_fonts::kWoff2, tiny_fonts::kVaried, tiny_fonts::kPainted})
        for (const char* choices : {"0", "1"})
            seeds.Add("standard_document",
                      std::string(choices) +
                          "<svg xmlns='http://www.w3.org/2000/svg'><style>@font-face{"
                          "font-family:t;font-weight:1 999;src:url(data:;base64," +
                          font + ")}</style><text y='9' font-family='t' font-size='9'>ABCDE</text></svg>");
}

std::string ContentOf(const char* path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::fprintf(stderr, "usage: orv_make_seeds FOLDER TARGETS DRAWING...\n");
        return 2;
    }
    Seeds seeds(argv[2]);
    for (int i = 3; i < argc; ++i) AddDrawings(ContentOf(argv[i]), seeds);
    AddImages(seeds);
    AddModuleImages(seeds);
    AddStandard(seeds);
    AddFonts(seeds);
    AddStages(seeds);
    seeds.Write(argv[1]);
    return 0;
}
