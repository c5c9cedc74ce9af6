// orvprint: prints SVG drawings, tells their pages, shows their print model.

#include <CLI/CLI.hpp>

#include <sys/stat.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <new>
#include <string>

#include "apps/orvprint/info_command.h"
#include "apps/orvprint/inspect_command.h"
#include "apps/orvprint/print_command.h"
#include "apps/orvprint/report.h"
#include "apps/orvprint/sheet_options.h"

namespace {

constexpr const char* kDescription =
    "Prints SVG drawings to PDF or PNG.\n"
    "\n"
    "  orvprint drawing.svg -o drawing.pdf\n"
    "  orvprint sheet-1.svg sheet-2.svg -o set.pdf\n"
    "  orvprint drawing.svg -o drawing.png --dpi 300\n";

constexpr const char* kExitCodes =
    "Exit codes: 0 done, 2 command line, 3 input unreadable, 4 not well-formed XML, 5 no page,\n"
    "6 no such page, 7 unknown format, 8 output not writable, 9 printing failed or limit reached,\n"
    "10 interpreter module missing.\n";

void AddReadOptions(CLI::App& command, ReadOptions& options) {
    command.add_option("--parser", options.parser, "XML parser: light or dom")
        ->check(CLI::IsMember({"light", "dom"}))
        ->option_text("light|dom [light]");
    command
        .add_option("--fragment", options.fragment,
                    "Only the N-th svg element of an XML document, or the one with this id")
        ->option_text("N|ID");
    command
        .add_option("--allow-dir", options.allowedFolders,
                    "Documents may name pictures in DIR and below, too (repeatable); their own folder they "
                    "always may")
        ->option_text("DIR")
        ->check(CLI::ExistingDirectory)
        ->take_all()
        ->allow_extra_args(false);
    command.add_option("--max-primitives", options.primitiveLimit, "Primitives that a drawing may hold")
        ->option_text("N")
        ->check(CLI::Range(std::uint64_t{1}, std::uint64_t{1'000'000'000'000}));
}

void AddFragmentOptions(CLI::App& command, ReadOptions& options) {
    command.add_flag("--qvxml", options.qvxml,
                     "The input is an XML document with svg elements inside (as are all .qvxml files)");
    command.add_flag("--keep-going", options.keepGoing,
                     "Print what stands before an error in the XML (--parser light)");
}

int Run(int argc, char** argv) {
    CLI::App app(kDescription, "orvprint");
    app.footer(kExitCodes);
    app.set_version_flag("--version", "orvprint " ORVPRINT_VERSION);
    app.require_subcommand(0, 1);
    app.positionals_at_end(false);

    PrintOptions print;
    std::string pages;
    app.add_option("inputs", print.inputs, "Drawings to print, - for standard input")->option_text("FILE...");
    app.add_option("-o,--output", print.output, "Where the output goes, - for standard output")
        ->option_text("FILE");
    app.add_option("-f,--format", print.format,
                   "Output format: pdf or png; otherwise the ending of FILE tells")
        ->option_text("pdf|png");
    app.add_option("--pages", pages, "Pages to print, such as 1,3-5")->option_text("LIST");
    app.add_option("--dpi", print.dotsPerInch, "Resolution of pictures, dots an inch")
        ->check(CLI::Range(1.0, 10000.0))
        ->option_text("N [90]");
    SheetArguments sheet;
    AddSheetOptions(app, sheet);
    AddReadOptions(app, print.read);
    AddFragmentOptions(app, print.read);

    ReadOptions infoOptions;
    std::string infoInput;
    bool infoAsJson = false;
    CLI::App* info = app.add_subcommand("info", "Tell the pages of a drawing, with sizes and titles");
    info->add_option("input", infoInput, "Drawing, - for standard input")->required()->option_text("FILE");
    info->add_flag("--json", infoAsJson, "As JSON");
    AddReadOptions(*info, infoOptions);
    AddFragmentOptions(*info, infoOptions);

    ReadOptions inspectOptions;
    std::string inspectInput;
    bool inspectAsJson = false;
    CLI::App* inspect = app.add_subcommand("inspect", "Write the print model of a drawing as JSON");
    inspect->add_option("input", inspectInput, "Drawing, - for standard input")
        ->required()
        ->option_text("FILE");
    inspect->add_flag("--json", inspectAsJson, "As JSON (the only form)");
    AddReadOptions(*inspect, inspectOptions);

    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& wish) {
        return app.exit(wish);  // --help, --version
    } catch (const CLI::ParseError& error) {
        return Report(kExitUsage, "", std::string(error.what()) + " (see orvprint --help)");
    }

    if (info->parsed()) {
        ApplyReadOptions(infoOptions);
        return RunInfo(infoInput, infoOptions, infoAsJson);
    }
    if (inspect->parsed()) {
        ApplyReadOptions(inspectOptions);
        return RunInspect(inspectInput, inspectOptions);
    }
    if (print.inputs.empty()) return Report(kExitUsage, "", "no input; name a drawing (see orvprint --help)");
    if (print.output.empty()) return Report(kExitUsage, "", "no output; say where it goes with -o FILE");
    std::string error;
    if (app.count("--pages") > 0 && !print.pages.Parse(pages, error))
        return Report(kExitUsage, "--pages", error);
    if (const int code = ReadSheetArguments(sheet, print.sheet); code != kExitDone) return code;
    ApplyReadOptions(print.read);
    return RunPrint(print);
}

}  // namespace

int main(int argc, char** argv) {
    // A reader that goes away is a failed output, not the end of the process.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return Run(argc, argv);
    } catch (const std::bad_alloc&) {
        return Report(kExitFailed, "", "memory is spent");
    } catch (const std::exception& error) {
        return Report(kExitFailed, "", error.what());
    }
}
