// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/size_options.h"

#include <algorithm>
#include <cstdlib>

#include "apps/orvprint/commands/command_options.h"
#include "apps/orvprint/process/CommandHost.h"

namespace {

/// CLI11's own range check accepts "nan".
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

/// The options of a list that were given.
const CLI::Option* FindGiven(const std::vector<const CLI::Option*>& options) {
    const auto given = std::find_if(options.begin(), options.end(),
                                    [](const CLI::Option* option) { return option->count() > 0; });
    return given == options.end() ? nullptr : *given;
}

}  // namespace

void AddSizeOptions(CommandOptions& command, SizeArguments& arguments, PrintOptions& options) {
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
    SizeWords words = arguments;
    if (const CLI::Option* other = FindGiven(arguments.otherSizes)) words.otherSize = other->get_name();
    return ReadSizeWords(words, IsStandard(options.read), Host(), options);
}
