// SPDX-License-Identifier: Apache-2.0
#include "library/print/size_words.h"

#include <limits>
#include <string>

#include "library/check/css_colour.h"

namespace {

constexpr double kUserUnitsPerInch = 90.0;

/// Pixels per inch in the drawing's dialect.
double PxPerInch(bool isStandard) {
    constexpr double kStandard = 96.0;
    return isStandard ? kStandard : kUserUnitsPerInch;
}

/// The first size option given; empty for none.
std::string FindSize(const SizeWords& words) {
    if (words.width) return "--width";
    if (words.height) return "--height";
    return words.zoom ? "--zoom" : "";
}

/// Checks that the options can be combined.
/// @return a result
int CheckTogether(const SizeWords& words, PrintHost& host, const PageOptions& options) {
    if (words.zoom && (words.width || words.height))
        return host.Report(kResultUsage, "",
                           std::string("--zoom and --") + (words.width ? "width" : "height") +
                               " cannot be combined: each says how large a page becomes");
    const std::string size = FindSize(words);
    if (!size.empty() && !words.otherSize.empty())
        return host.Report(
            kResultUsage, "",
            size + " and " + words.otherSize + " cannot be combined: each says how large a page becomes");
    if (!options.elementId.empty() && options.sheet &&
        (options.sheet->layout.isPoster || options.sheet->layout.pagesPerSheet > 1))
        return host.Report(kResultUsage, "",
                           std::string("--export-id makes one page and cannot be combined with ") +
                               (options.sheet->layout.isPoster ? "--tile" : "--nup"));
    return kResultDone;
}

}  // namespace

int ReadSizeWords(const SizeWords& words, bool isStandard, PrintHost& host, PageOptions& options) {
    if (const int code = CheckTogether(words, host, options); code != kResultDone) return code;
    constexpr double kAny = std::numeric_limits<double>::infinity();
    const double userUnitsPerPx = kUserUnitsPerInch / PxPerInch(isStandard);
    if (words.width || words.height || words.zoom) {
        if (!options.sheet) options.sheet.emplace();
        ORVSheetScale& scale = options.sheet->layout.scale;
        scale.kind = words.zoom ? ORVSheetScale::Kind::kFactor : ORVSheetScale::Kind::kWithin;
        scale.factor = words.zoom.value_or(1.0);
        scale.width = words.width.value_or(kAny) * userUnitsPerPx;
        scale.height = words.height.value_or(kAny) * userUnitsPerPx;
        options.dotsPerInch = PxPerInch(isStandard);
    }
    if (words.background) {
        ORVPrintColour colour;
        if (!ReadCssColour(*words.background, colour))
            return host.Report(kResultUsage, "--background",
                               "'" + *words.background +
                                   "' is not a colour, such as white, '#ffeedd' or 'rgb(255 238 221)'");
        if (!options.sheet) options.sheet.emplace();
        options.sheet->background = colour;
    }
    return kResultDone;
}
