// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/size_options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "apps/orvprint/process/report.h"
#include "library/check/css_colour.h"

namespace {

constexpr double kGreatestSide = 1e6;  // px; what a format holds is less
constexpr double kSmallestZoom = 1e-4, kGreatestZoom = 1e4;
constexpr double kUserUnitsPerInch = 90.0;

/// What a drawing's dialect takes for an inch.
double PxPerInch(const PrintOptions& options) {
    constexpr double kStandard = 96.0;
    return options.read.interpreter == "SVG2" ? kStandard : kUserUnitsPerInch;
}

/// "nan" is in every range of the library's.
CLI::Validator IsWithin(double least, double most, const char* what) {
    return {[=](const std::string& text) {
                char* end = nullptr;
                const double number = std::strtod(text.c_str(), &end);
                const bool isNumber = end != text.c_str() && *end == '\0';
                return isNumber && number >= least && number <= most ? std::string()
                                                                     : "'" + text + "' is not a " + what;
            },
            ""};
}

/// Options that say in another way how large a page becomes, and so say nothing beside the size.
constexpr const char* kOtherSizes[] = {"--dpi",    "--paper", "--orientation", "--scale",
                                       "--margin", "--align", "--tile",        "--nup"};

/// The options of a list that were given.
const CLI::Option* FindGiven(const std::vector<const CLI::Option*>& options) {
    const auto given = std::find_if(options.begin(), options.end(),
                                    [](const CLI::Option* option) { return option->count() > 0; });
    return given == options.end() ? nullptr : *given;
}

/// Finds out whether the options go together. @return an exit code
int CheckTogether(const SizeArguments& arguments, const PrintOptions& options) {
    if (arguments.zoom && (arguments.width || arguments.height))
        return Report(kExitUsage, "",
                      std::string("--zoom and --") + (arguments.width ? "width" : "height") +
                          " cannot be combined: each says how large a page becomes");
    const CLI::Option* size = FindGiven(arguments.sizes);
    const CLI::Option* other = FindGiven(arguments.otherSizes);
    if (size && other)
        return Report(kExitUsage, "",
                      size->get_name() + " and " + other->get_name() +
                          " cannot be combined: each says how large a page becomes");
    if (!options.elementId.empty() && options.sheet &&
        (options.sheet->layout.isPoster || options.sheet->layout.pagesPerSheet > 1))
        return Report(kExitUsage, "",
                      std::string("--export-id makes one page and cannot be combined with ") +
                          (options.sheet->layout.isPoster ? "--tile" : "--nup"));
    return kExitDone;
}

}  // namespace

void AddSizeOptions(CLI::App& command, SizeArguments& arguments, PrintOptions& options) {
    constexpr const char* kSide = "number of pixels from 1 to 1000000";
    CLI::Option* width = command.add_option("--width", arguments.width,
                                            "Width of the page in pixels (px of the drawing where the format "
                                            "has no pixels); with --height, the page fits into both");
    width->option_text("PX")->check(IsWithin(1.0, kGreatestSide, kSide));
    CLI::Option* height = command.add_option("--height", arguments.height, "Height of the page, as --width");
    height->option_text("PX")->check(IsWithin(1.0, kGreatestSide, kSide));
    CLI::Option* zoom =
        command.add_option("--zoom", arguments.zoom, "Pixels for each px of the drawing, such as 2");
    zoom->option_text("FACTOR")->check(IsWithin(kSmallestZoom, kGreatestZoom, "factor from 0.0001 to 10000"));
    arguments.sizes = {width, height, zoom};
    for (const char* name : kOtherSizes)
        if (const CLI::Option* other = command.get_option_no_throw(name))
            arguments.otherSizes.push_back(other);
    command
        .add_option("--background", arguments.background,
                    "Colour under each page, as in CSS: white, '#fed', 'rgb(0 0 0 / 20%)'")
        ->option_text("COLOUR");
    command
        .add_option("--export-id", options.elementId,
                    "Print only the element with this id, on a page of its size")
        ->option_text("ID")
        ->check([](const std::string& text) {
            return text.empty() ? std::string("an id has one character at least") : std::string();
        });
}

int ReadSizeArguments(const SizeArguments& arguments, PrintOptions& options) {
    if (const int code = CheckTogether(arguments, options); code != kExitDone) return code;
    constexpr double kAny = std::numeric_limits<double>::infinity();
    const double userUnitsPerPx = kUserUnitsPerInch / PxPerInch(options);
    if (arguments.width || arguments.height || arguments.zoom) {
        if (!options.sheet) options.sheet.emplace();
        ORVSheetScale& scale = options.sheet->layout.scale;
        scale.kind = arguments.zoom ? ORVSheetScale::Kind::kFactor : ORVSheetScale::Kind::kWithin;
        scale.factor = arguments.zoom.value_or(1.0);
        scale.width = arguments.width.value_or(kAny) * userUnitsPerPx;
        scale.height = arguments.height.value_or(kAny) * userUnitsPerPx;
        options.dotsPerInch = PxPerInch(options);
    }
    if (arguments.background) {
        ORVPrintColour colour;
        if (!ReadCssColour(*arguments.background, colour))
            return Report(kExitUsage, "--background",
                          "'" + *arguments.background +
                              "' is not a colour, such as white, '#ffeedd' or 'rgb(255 238 221)'");
        if (!options.sheet) options.sheet.emplace();
        options.sheet->background = colour;
    }
    return kExitDone;
}
