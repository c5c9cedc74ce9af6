// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/sheet_options.h"

#include <CLI/CLI.hpp>

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <vector>

#include "apps/orvprint/process/report.h"
#include "platform/system/number_conversion.h"

namespace {

constexpr double kSmallestScale = 1e-4, kLargestScale = 1e4;
constexpr double kLargestStrokeScale = 1000.0;

constexpr const char* kLengthHelp = "a length has a unit: mm, cm, in or pt";

int Refuse(const char* option, const std::string& reason) { return Report(kExitUsage, option, reason); }

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

/// A positive number that is all of the text.
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

/// A number without a sign or unit is a factor. Whoever writes a large one means percent.
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

/// One word for each direction at most: "top-left", "right", "centre".
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
    // What was not said is the middle, also where another place would be usual.
    if (!layout.horizontalAlign) layout.horizontalAlign = 0.5;
    if (!layout.verticalAlign) layout.verticalAlign = 0.5;
    return true;
}

/// Finds out whether the options go together. @return an exit code
int CheckTogether(const SheetArguments& arguments, const ORVSheetLayout& layout) {
    constexpr const char* kNeedsPaper = "needs to know the paper; add, for example, --paper A4";
    const bool isBound =
        layout.scale.kind == ORVSheetScale::Kind::kFit || layout.scale.kind == ORVSheetScale::Kind::kFill;
    if (!layout.paper) {
        if (isBound) return Refuse("--scale", *arguments.scale + " " + kNeedsPaper);
        if (arguments.orientation) return Refuse("--orientation", kNeedsPaper);
        if (arguments.align) return Refuse("--align", kNeedsPaper);
        if (arguments.isPoster) return Refuse("--tile", kNeedsPaper);
        if (layout.pagesPerSheet > 1) return Refuse("--nup", kNeedsPaper);
    }
    if (arguments.isPoster && layout.pagesPerSheet > 1)
        return Report(kExitUsage, "", "--tile and --nup exclude each other");
    if (arguments.isPoster && isBound)
        return Refuse("--scale", *arguments.scale +
                                     " makes one sheet of a page; with --tile give a number, such as 200%");
    if (arguments.overlap && !arguments.isPoster)
        return Refuse("--overlap", "is for posters; add --tile or leave it out");
    if (arguments.isGrey && arguments.isMono)
        return Report(kExitUsage, "", "--grey and --mono exclude each other");
    return kExitDone;
}

}  // namespace

void AddSheetOptions(CLI::App& command, SheetArguments& arguments) {
    constexpr const char* kGroup = "Paper";
    command
        .add_option("--paper", arguments.paper,
                    "Paper by name, such as A4, Letter or iso_a3_297x420mm, or by size, such as 210x297mm")
        ->option_text("NAME|WxHmm")
        ->group(kGroup);
    command.add_option("--orientation", arguments.orientation, "Paper orientation; auto follows the page")
        ->option_text("auto|portrait|landscape")
        ->check(CLI::IsMember({"auto", "portrait", "landscape"}, CLI::ignore_case))
        ->group(kGroup);
    command
        .add_option(
            "--scale", arguments.scale,
            "50%, 1:20, 2:1, 0.5 of the natural size, none for 100%, fit or fill to the paper; without "
            "it, what is too large for the paper is made to fit")
        ->option_text("SCALE")
        ->group(kGroup);
    command
        .add_option("--margin", arguments.margin,
                    "Margin, such as 10mm: one length, two (top and bottom, sides) or four (clockwise from "
                    "the top)")
        ->option_text("LENGTH[,LENGTH...]")
        ->group(kGroup);
    command
        .add_option(
            "--align", arguments.align,
            "Where the page lies on the paper: centre, left, right, top, bottom, or two of them, such "
            "as top-left")
        ->option_text("PLACE [centre]")
        ->group(kGroup);
    command
        .add_flag("--tile", arguments.isPoster,
                  "Print pages that are larger than the paper over several sheets, with marks for cutting")
        ->group(kGroup);
    command.add_option("--overlap", arguments.overlap, "What neighbouring sheets of --tile share")
        ->option_text("LENGTH [10mm]")
        ->group(kGroup);
    command.add_option("--nup", arguments.pagesPerSheet, "Print so many pages on each sheet, by rows")
        ->option_text("N")
        ->check(CLI::Range(1U, kMostPagesPerSheet))
        ->group(kGroup);
    command.add_flag("--grey,--gray", arguments.isGrey, "Print in greys")->group(kGroup);
    command.add_flag("--mono", arguments.isMono, "Print in black and white: lines and text in black")
        ->group(kGroup);
    command.add_option("--stroke-scale", arguments.strokeScale, "Multiply the width of all lines")
        ->option_text("FACTOR")
        ->group(kGroup);
    command
        .add_option("--min-stroke", arguments.leastLineWidth,
                    "Minimum width of lines on paper, such as 0.25mm")
        ->option_text("LENGTH")
        ->group(kGroup);
}

int ReadSheetArguments(const SheetArguments& arguments, std::optional<ORVSheetOptions>& options) {
    ORVSheetOptions read;
    ORVSheetLayout& layout = read.layout;
    if (arguments.paper && !ORVFindPaper(*arguments.paper, layout.paper.emplace()))
        return Refuse("--paper", Quoted(*arguments.paper) +
                                     "is neither the name of a paper, such as A4 or Letter, nor a "
                                     "size, such as 210x297mm, 8.5x11in");
    if (arguments.orientation && Equals(*arguments.orientation, "portrait"))
        layout.orientation = ORVSheetOrientation::kPortrait;
    if (arguments.orientation && Equals(*arguments.orientation, "landscape"))
        layout.orientation = ORVSheetOrientation::kLandscape;
    if (arguments.scale && IsProbablyPercent(*arguments.scale))
        return Refuse("--scale", Quoted(*arguments.scale) + "is a factor, not a percentage; write " +
                                     *arguments.scale + "% for percent or " + *arguments.scale +
                                     ":1 to enlarge so many times");
    if (arguments.scale && !ReadScale(*arguments.scale, layout.scale))
        return Refuse("--scale", Quoted(*arguments.scale) +
                                     "is not a scale; use 50%, 1:20, 2:1, 0.5, fit, fill or none (numbers "
                                     "from 0.0001 to 10000)");
    if (arguments.margin && !ReadMargins(*arguments.margin, layout.margins.emplace()))
        return Refuse("--margin", Quoted(*arguments.margin) +
                                      "is not one, two or four lengths, such as 10mm or 15mm,10mm; " +
                                      kLengthHelp);
    if (arguments.align && !ReadAlign(*arguments.align, layout))
        return Refuse("--align",
                      Quoted(*arguments.align) +
                          "is not an alignment; use centre, left, right, top, bottom, or two of them, "
                          "such as top-left");
    layout.isPoster = arguments.isPoster;
    if (arguments.overlap && !ORVParsePaperLength(*arguments.overlap, layout.overlap.emplace()))
        return Refuse("--overlap",
                      Quoted(*arguments.overlap) + "is not a length, such as 10mm; " + kLengthHelp);
    layout.pagesPerSheet = arguments.pagesPerSheet.value_or(1);
    if (arguments.isGrey) read.colourMode = ORVColourMode::kGrey;
    if (arguments.isMono) read.colourMode = ORVColourMode::kMono;
    if (arguments.strokeScale) read.strokeScale = *arguments.strokeScale;
    if (!(read.strokeScale > 0.0) || !(read.strokeScale <= kLargestStrokeScale))
        return Refuse("--stroke-scale", "is a factor greater than 0 and at most 1000");
    if (arguments.leastLineWidth && !ORVParsePaperLength(*arguments.leastLineWidth, read.leastLineWidth))
        return Refuse("--min-stroke",
                      Quoted(*arguments.leastLineWidth) + "is not a length, such as 0.25mm; " + kLengthHelp);

    if (const int code = CheckTogether(arguments, layout); code != kExitDone) return code;
    if (const std::string reason = ORVCheckSheetLayout(layout); !reason.empty())
        return Report(kExitUsage, "", reason);
    const bool isAsked = arguments.paper || arguments.scale || arguments.margin || arguments.isGrey ||
                         arguments.isMono || arguments.strokeScale || arguments.leastLineWidth;
    if (isAsked) options = read;
    return kExitDone;
}
