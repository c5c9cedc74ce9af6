// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/sheet_options.h"

#include "apps/orvprint/commands/command_options.h"

void AddSheetOptions(CommandOptions& command, SheetWords& arguments) {
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
        .add_option("--scale", arguments.scale,
                    "50%, 1:20, 2:1 or 0.5 of the natural size; none for 100%; fit or fill to the paper "
                    "(default: 100%, reduced if too large for the paper)")
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
            "Position of the page on the paper: centre, left, right, top, bottom, or two of them, such "
            "as top-left")
        ->option_text("PLACE [centre]")
        ->group(kGroup);
    command
        .add_flag("--tile", arguments.isPoster,
                  "Print pages larger than the paper on several sheets, with cutting marks")
        ->group(kGroup);
    command.add_option("--overlap", arguments.overlap, "Overlap of neighbouring sheets, with --tile")
        ->option_text("LENGTH [10mm]")
        ->group(kGroup);
    command.add_option("--nup", arguments.pagesPerSheet, "Print N pages on each sheet, in rows")
        ->option_text("N")
        ->check(command.IsInRange(1U, kMostPagesPerSheet))
        ->group(kGroup);
    command.add_flag("--grey,--gray", arguments.isGrey, "Print in greyscale")->group(kGroup);
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
