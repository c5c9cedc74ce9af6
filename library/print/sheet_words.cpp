// SPDX-License-Identifier: Apache-2.0
#include "library/print/sheet_words.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <vector>

#include "platform/system/number_conversion.h"

namespace {

constexpr double kSmallestScale = 1e-4, kLargestScale = 1e4;
constexpr double kLargestStrokeScale = 1000.0;

constexpr const char* kLengthHelp = "a length has a unit: mm, cm, in or pt";

/// Reports an invalid option.
class Refusal {
public:
    explicit Refusal(PrintHost& host) : host_(host) {}
    /// @return the result
    int operator()(const char* option, const std::string& reason) const {
        return host_.Report(kResultUsage, option, reason);
    }

private:
    PrintHost& host_;
};

std::string Quoted(const std::string& text) { return "'" + text + "' "; }

bool Equals(std::string_view a, std::string_view b) { return ORVCompareText(a, b) != kTextDiffers; }

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == text.npos) return parts;
        text.remove_prefix(end + 1);
    }
}

/// Parses a text that consists of a positive number.
bool ReadNumber(std::string_view text, double& number) {
    const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), number);
    return status == std::errc{} && end == text.data() + text.size() && number > 0.0 && std::isfinite(number);
}

bool ReadFactor(std::string_view text, double& factor) {
    if (const std::size_t colon = text.find(':'); colon != text.npos) {
        double drawing = 0.0, nature = 0.0;
        if (!ReadNumber(text.substr(0, colon), drawing) || !ReadNumber(text.substr(colon + 1), nature))
            return false;
        factor = drawing / nature;
    } else if (text.ends_with('%')) {
        if (!ReadNumber(text.substr(0, text.size() - 1), factor)) return false;
        factor /= 100.0;
    } else if (!ReadNumber(text, factor)) {
        return false;
    }
    return factor >= kSmallestScale && factor <= kLargestScale;
}

/// A number without sign or unit is a factor, but a large one was probably meant as a percentage.
bool IsProbablyPercent(const std::string& text) {
    constexpr double kGreatestPlainFactor = 20.0;
    double factor = 0.0;
    return ReadNumber(text, factor) && factor > kGreatestPlainFactor;
}

bool ReadScale(const std::string& text, ORVSheetScale& scale) {
    scale.kind = ORVSheetScale::Kind::kFactor;
    scale.factor = 1.0;
    if (Equals(text, "none")) return true;
    if (Equals(text, "fit")) {
        scale.kind = ORVSheetScale::Kind::kFit;
        return true;
    }
    if (Equals(text, "fill")) {
        scale.kind = ORVSheetScale::Kind::kFill;
        return true;
    }
    return ReadFactor(text, scale.factor);
}

bool ReadMargins(const std::string& text, ORVSheetMargins& margins) {
    std::vector<double> lengths;
    for (const std::string_view part : Split(text, ','))
        if (!ORVParsePaperLength(part, lengths.emplace_back())) return false;
    switch (lengths.size()) {
        case 1: margins = {lengths[0], lengths[0], lengths[0], lengths[0]}; return true;
        case 2: margins = {lengths[0], lengths[1], lengths[0], lengths[1]}; return true;
        case 4: margins = {lengths[0], lengths[1], lengths[2], lengths[3]}; return true;
        default: return false;
    }
}

/// Parses at most one word per direction: "top-left", "right", "centre".
bool ReadAlign(const std::string& text, ORVSheetLayout& layout) {
    struct Word {
        std::string_view text;
        double value;
        std::optional<double> ORVSheetLayout::*direction;
    };
    constexpr std::array kWords{
        Word{"left", 0.0, &ORVSheetLayout::horizontalAlign},
        Word{"right", 1.0, &ORVSheetLayout::horizontalAlign},
        Word{"top", 0.0, &ORVSheetLayout::verticalAlign},
        Word{"bottom", 1.0, &ORVSheetLayout::verticalAlign},
    };
    for (const std::string_view part : Split(text, '-')) {
        if (Equals(part, "centre") || Equals(part, "center")) continue;
        const Word* known = nullptr;
        for (const Word& word : kWords)
            if (Equals(word.text, part)) known = &word;
        if (!known || (layout.*known->direction).has_value()) return false;
        layout.*known->direction = known->value;
    }
    // A direction that is not given is centred, even where the default would differ.
    if (!layout.horizontalAlign) layout.horizontalAlign = 0.5;
    if (!layout.verticalAlign) layout.verticalAlign = 0.5;
    return true;
}

/// Checks that the options can be combined.
/// @return a result
int CheckTogether(const SheetWords& words, const ORVSheetLayout& layout, const Refusal& refuse) {
    constexpr const char* kNeedsPaper = "needs to know the paper; add, for example, --paper A4";
    const bool isBound =
        layout.scale.kind == ORVSheetScale::Kind::kFit || layout.scale.kind == ORVSheetScale::Kind::kFill;
    if (!layout.paper) {
        if (isBound) return refuse("--scale", *words.scale + " " + kNeedsPaper);
        if (words.orientation) return refuse("--orientation", kNeedsPaper);
        if (words.align) return refuse("--align", kNeedsPaper);
        if (words.isPoster) return refuse("--tile", kNeedsPaper);
        if (layout.pagesPerSheet > 1) return refuse("--nup", kNeedsPaper);
    }
    if (words.isPoster && layout.pagesPerSheet > 1) return refuse("", "--tile and --nup exclude each other");
    if (words.isPoster && isBound)
        return refuse("--scale",
                      *words.scale + " makes one sheet of a page; with --tile give a number, such as 200%");
    if (words.overlap && !words.isPoster)
        return refuse("--overlap", "is for posters; add --tile or leave it out");
    if (words.isGrey && words.isMono) return refuse("", "--grey and --mono exclude each other");
    return kResultDone;
}

}  // namespace

int ReadSheetWords(const SheetWords& words, PrintHost& host, std::optional<ORVSheetOptions>& options) {
    const Refusal refuse(host);
    ORVSheetOptions read;
    ORVSheetLayout& layout = read.layout;
    if (words.paper && !ORVFindPaper(*words.paper, layout.paper.emplace()))
        return refuse("--paper", Quoted(*words.paper) +
                                     "is neither the name of a paper, such as A4 or Letter, nor a "
                                     "size, such as 210x297mm, 8.5x11in");
    if (words.orientation && Equals(*words.orientation, "portrait"))
        layout.orientation = ORVSheetOrientation::kPortrait;
    if (words.orientation && Equals(*words.orientation, "landscape"))
        layout.orientation = ORVSheetOrientation::kLandscape;
    if (words.scale && IsProbablyPercent(*words.scale))
        return refuse("--scale", Quoted(*words.scale) + "is a factor, not a percentage; write " +
                                     *words.scale + "% for percent or " + *words.scale +
                                     ":1 to enlarge so many times");
    if (words.scale && !ReadScale(*words.scale, layout.scale))
        return refuse("--scale", Quoted(*words.scale) +
                                     "is not a scale; use 50%, 1:20, 2:1, 0.5, fit, fill or none (numbers "
                                     "from 0.0001 to 10000)");
    if (words.margin && !ReadMargins(*words.margin, layout.margins.emplace()))
        return refuse("--margin", Quoted(*words.margin) +
                                      "is not one, two or four lengths, such as 10mm or 15mm,10mm; " +
                                      kLengthHelp);
    if (words.align && !ReadAlign(*words.align, layout))
        return refuse("--align",
                      Quoted(*words.align) +
                          "is not an alignment; use centre, left, right, top, bottom, or two of them, "
                          "such as top-left");
    layout.isPoster = words.isPoster;
    if (words.overlap && !ORVParsePaperLength(*words.overlap, layout.overlap.emplace()))
        return refuse("--overlap", Quoted(*words.overlap) + "is not a length, such as 10mm; " + kLengthHelp);
    layout.pagesPerSheet = words.pagesPerSheet.value_or(1);
    if (words.isGrey) read.colourMode = ORVColourMode::kGrey;
    if (words.isMono) read.colourMode = ORVColourMode::kMono;
    if (words.strokeScale) read.strokeScale = *words.strokeScale;
    if (!(read.strokeScale > 0.0) || !(read.strokeScale <= kLargestStrokeScale))
        return refuse("--stroke-scale", "is a factor greater than 0 and at most 1000");
    if (words.leastLineWidth && !ORVParsePaperLength(*words.leastLineWidth, read.leastLineWidth))
        return refuse("--min-stroke",
                      Quoted(*words.leastLineWidth) + "is not a length, such as 0.25mm; " + kLengthHelp);

    if (const int code = CheckTogether(words, layout, refuse); code != kResultDone) return code;
    if (const std::string reason = ORVCheckSheetLayout(layout); !reason.empty()) return refuse("", reason);
    const bool isAsked = words.paper || words.scale || words.margin || words.isGrey || words.isMono ||
                         words.strokeScale || words.leastLineWidth;
    if (isAsked) options = read;
    return kResultDone;
}
