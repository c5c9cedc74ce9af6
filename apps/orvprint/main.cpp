// SPDX-License-Identifier: Apache-2.0

// orvprint: prints SVG drawings, lists their pages, checks them, and shows their print model.

#include <CLI/CLI.hpp>

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "apps/orvprint/commands/batch.h"
#include "apps/orvprint/commands/batch_names.h"
#include "apps/orvprint/commands/batch_options.h"
#include "apps/orvprint/commands/check_command.h"
#include "apps/orvprint/commands/command_options.h"
#include "apps/orvprint/commands/direct_command.h"
#include "apps/orvprint/commands/drawing_list.h"
#include "apps/orvprint/commands/formats_command.h"
#include "apps/orvprint/commands/help.h"
#include "apps/orvprint/commands/html_inspection.h"
#include "apps/orvprint/commands/info_command.h"
#include "apps/orvprint/commands/inspect_command.h"
#include "apps/orvprint/commands/limits_command.h"
#include "apps/orvprint/commands/print_command.h"
#include "apps/orvprint/commands/report_command.h"
#include "apps/orvprint/commands/run_sandbox.h"
#include "apps/orvprint/commands/sheet_options.h"
#include "apps/orvprint/commands/size_options.h"
#include "apps/orvprint/commands/suggestions.h"
#include "apps/orvprint/linked/linked_modules.h"
#include "apps/orvprint/process/CommandHost.h"
#include "apps/orvprint/process/immediate_exit.h"
#include "apps/orvprint/process/model_memory.h"
#include "apps/orvprint/process/report.h"
#include "apps/orvprint/process/signals.h"
#include "apps/orvprint/serve/serve_command.h"
#include "apps/orvprint/serve/via_command.h"

namespace {

constexpr const char* kDescription =
    "Prints SVG drawings.\n"
    "\n"
    "  orvprint drawing.svg -o drawing.pdf\n"
    "  orvprint sheet-1.svg sheet-2.svg -o set.pdf\n"
    "  orvprint drawing.svg -o drawing.png --dpi 300\n"
    "  orvprint *.svg --out-dir pdf -f pdf\n"
    "  orvprint info drawing.svg\n";

constexpr const char* kExitCodes =
    "Exit codes: 0 done, 1 something found (check, --strict), 2 command line, 3 input unreadable,\n"
    "4 not well-formed XML, 5 no page, 6 no such page, 7 unknown format, 8 output not writable,\n"
    "9 printing failed or limit reached, 10 interpreter module missing, 11 some inputs of a batch failed.\n"
    "More in the manual: man orvprint.\n";

void AddReadOptions(CommandOptions& command, ReadOptions& options) {
    command
        .add_option("--interpreter", options.interpreter,
                    "Dialect: SVG, or SVG2 for standard SVG (default: ORVPRINT_INTERPRETER, else SVG)")
        ->envname("ORVPRINT_INTERPRETER")
        ->transform(CLI::IsMember({"SVG", "SVG2"}, CLI::ignore_case))
        ->option_text("SVG|SVG2");
    command
        .add_option("--language", options.languages,
                    "Languages for systemLanguage, such as de,en (default: from the locale); svg2 only")
        ->option_text("LIST")
        ->check([](const std::string& text) {
            const bool isRead = text.find_first_not_of(", ") != std::string::npos &&
                                std::all_of(text.begin(), text.end(), [](char c) {
                                    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' ||
                                           c == ',' || c == ' ';
                                });
            return isRead ? std::string() : "'" + text + "' is not a list of languages, such as de,en-GB";
        });
    command.add_option("--font-size", options.fontSize, "Font size in px of text without one; svg2 only")
        ->option_text("PX [12]")
        ->check(command.IsInRange(0.1, 10000.0));
    command.add_option("--parser", options.parser, "XML parser: light or dom")
        ->check(CLI::IsMember({"light", "dom"}))
        ->option_text("light|dom [light]");
    command
        .add_option("--fragment", options.fragment,
                    "Print only the N-th svg element, or the one with this id")
        ->option_text("N|ID");
    CLI::Option* allowed = command
                               .add_option("--allow-dir", options.allowedFolders,
                                           "Also read images from DIR and its subfolders (repeatable)")
                               ->option_text("DIR")
                               ->check(CLI::ExistingDirectory)
                               ->take_all()
                               ->allow_extra_args(false);
    CLI::Option* noFiles = command.add_flag("--no-file-images", options.withoutFileImages,
                                            "Read no files named by drawings, such as images");
    if (noFiles != allowed) noFiles->excludes(allowed);
    noFiles->option_text(" ");  // CLI11 would list the options that it excludes
    allowed->option_text("DIR");
    command.add_option("--limit", options.limits, "Set a resource limit; see orvprint limits (repeatable)")
        ->option_text("NAME=N")
        ->take_all()
        ->allow_extra_args(false);
    command
        .add_option_function<std::uint64_t>(
            "--max-primitives",
            [&options](std::uint64_t count) {
                options.limits.push_back("primitives=" + std::to_string(count));
            },
            "Same as --limit primitives=N")
        ->option_text("N")
        ->check(command.IsInRange(std::uint64_t{1}, std::uint64_t{1'000'000'000'000}));
    command
        .add_option("--time-limit", options.timeLimit, "Abort a drawing after N seconds (default: no limit)")
        ->option_text("N")
        ->check(command.IsInRange(0.001, 1e9));
    CLI::Option* without =
        command.add_flag("--no-sandbox", options.withoutSandbox, "Keep rights that printing does not need");
    CLI::Option* required = command.add_flag("--require-sandbox", options.requiresSandbox,
                                             "Fail where the system refuses part of the sandbox");
    if (required != without) required->excludes(without);
    required->option_text(" ");  // CLI11 would list the excluded options in the help's first column
    without->option_text(" ");
}

CLI::Option* AddIgnoreOption(CommandOptions& command, std::vector<std::string>& names) {
    return command.add_option("--ignore", names, "Ignore findings of this kind (repeatable)")
        ->option_text("CODE")
        ->take_all()
        ->allow_extra_args(false);
}

/// The kinds of findings given with --ignore.
/// @return an exit code; a failure has been reported
int ParseKinds(const std::vector<std::string>& names, std::set<FindingCode>& kinds) {
    for (const std::string& name : names) {
        const FindingKind* kind = FindFindingKind(name);
        if (!kind)
            return Report(kExitUsage, "--ignore " + name,
                          "is not a kind of finding; docs/check.md lists them");
        kinds.insert(kind->code);
    }
    return kExitDone;
}

// CLI11 looks options up by name in a noexcept function, so running out of memory there would terminate the
// process. Options that depend on another one therefore get it as an object.
/// @return the option --keep-going
CLI::Option* AddFragmentOptions(CommandOptions& command, ReadOptions& options) {
    command.add_flag("--qvxml", options.qvxml,
                     "Read XML documents that contain drawings, as .qvxml files are");
    command.add_flag("--detect-qvxml", options.detectsQvxml,
                     "As --qvxml, for inputs whose root is not an svg element");
    return command.add_flag("--keep-going", options.keepGoing, "Print what precedes an XML error");
}

/// The command that a word which names no file was probably meant to be; empty if there is none, or if the
/// word may well be a file name.
std::string MeantCommand(const CommandOptions& options, const std::string& word) {
    if (word.find_first_of("./") != std::string::npos || access(word.c_str(), F_OK) == 0) return {};
    // The subcommand's name in other programs.
    for (const char* other : {"convert", "export", "render", "to", "to-pdf", "help"})
        if (word == other) return word == "help" ? "--help" : "print";
    std::vector<std::string> names{"print"};
    names.insert(names.end(), options.CommandNames().begin(), options.CommandNames().end());
    return FindNearest(word, names);
}

/// What is wrong with the command line. The library that parses it names some errors in terms of its types.
std::string WhatIsWrong(const CLI::Error& error) {
    std::string text = error.what();
    const std::size_t colon = text.find(": 1 required ");
    if (colon != std::string::npos && text.ends_with(" missing"))
        return text.substr(0, colon) + ": a value is missing";
    if (text.starts_with("input") && text.ends_with(" is required")) return "no input; name a drawing";
    return text;
}

/// The other commands that have an option, for the end of a message; empty if there are none.
std::string HintOnCommands(const CLI::App& app, const std::string& option) {
    std::string names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        if (command->get_option_no_throw(option))
            names.append(names.empty() ? "" : ", ").append(command->get_name());
    return names.empty() ? names : "; it is an option of orvprint " + names;
}

/// What misspelt options were probably meant to be, for the end of a message.
std::string HintOnOptions(CLI::App& app, int argc, char** argv) {
    const CLI::App* command = &app;
    for (const CLI::App* other : app.get_subcommands([](const CLI::App*) { return true; }))
        if (argc > 1 && other->get_name() == argv[1]) command = other;
    std::vector<std::string> known;
    for (const CLI::Option* option : command->get_options())
        for (const std::string& name : option->get_lnames()) known.push_back("--" + name);
    for (int i = 1; i < argc; ++i) {
        std::string word(argv[i]);
        if (word == "--") break;
        if (!word.starts_with("--")) continue;
        word.resize(std::min(word.find('='), word.size()));
        if (std::find(known.begin(), known.end(), word) != known.end()) continue;
        if (std::string commands = HintOnCommands(app, word); !commands.empty()) return commands;
        if (const std::string nearest = FindNearest(word, known); !nearest.empty())
            return "; did you mean " + nearest + "?";
    }
    return {};
}

/// A printing option that was given to a command which ignores it; empty if there is none.
std::string OptionBeforeCommand(const CLI::App& app) {
    if (app.get_subcommands().empty()) return {};
    for (const CLI::Option* option : app.get_options())
        if (option->nonpositional() && option->count() > 0) return option->get_name();
    return {};
}

/// Runs the command line.
/// @param given  the options and commands to register; if these are not all and the command line cannot be
///         parsed with them, the result is std::nullopt and nothing was done
std::optional<int> RunGiven(int argc, char** argv, const GivenWords& given) {
    CLI::App parser(kDescription, "orvprint");
    parser.require_subcommand(0, 1);
    parser.positionals_at_end(false);
    if (given.AreAll()) {
        parser.footer(kExitCodes);
        parser.set_version_flag("--version", "orvprint " ORVPRINT_VERSION);
    } else {
        parser.set_help_flag();
    }
    CommandOptions app(&parser, given);

    PrintOptions print;
    std::string pages;
    app.add_option("inputs", print.inputs, "Drawings to print, - for standard input")->option_text("FILE...");
    std::vector<std::string> outputs;  // job options, if there is a printer
    app.add_option(
           "-o,--output", outputs,
           "Output file, - for standard output (default for one drawing: NAME.pdf in the current folder)")
        ->option_text("FILE")
        ->take_all()
        ->allow_extra_args(false);
    bool mayReplace = false;
    app.add_flag("--force", mayReplace, "Without -o: overwrite an existing file");
    app.add_option("-f,--format", print.format,
                   "Output format (default: from the extension of FILE; pdf with --out-dir)")
        ->option_text(OutputFormatNames("|"));
    const CLI::Option* pagesOption =
        app.add_option("-P,--pages", pages, "Pages to print, such as 1,3-5")->option_text("LIST");
    app.add_option("--dpi", print.dotsPerInch, "Resolution of raster output in dots per inch")
        ->check(app.IsInRange(1.0, 10000.0))
        ->option_text("N [90]");
    app.add_option("--flatten-dpi", print.flattenDotsPerInch,
                   "Resolution of filters, and of transparent parts in ps and eps")
        ->check(app.IsInRange(1.0, 10000.0))
        ->option_text("N [300]");
    CLI::Option* strict =
        app.add_flag("--strict", print.strict, "Print nothing if orvprint check reports a finding");
    std::vector<std::string> ignoredKinds;
    AddIgnoreOption(app, ignoredKinds)->needs(strict);
    SheetWords sheet;
    AddSheetOptions(app, sheet);
    SizeArguments size;
    AddSizeOptions(app, size, print);
    AddReadOptions(app, print.read);
    CLI::Option* keepGoing = AddFragmentOptions(app, print.read);
    BatchOptions batch;
    AddBatchOptions(app, keepGoing, batch);
    DirectArguments direct;
    AddDirectOptions(app, direct);
    DrawingLists lists;
    AddListOptions(app, lists);
    std::string service;
    app.add_option("--via", service, "Print through a running orvprint serve, at this socket or HOST:PORT")
        ->option_text("SOCKET");

    ReadOptions infoOptions;
    std::vector<std::string> infoInputs;
    bool infoAsJson = false;
    CommandOptions* info =
        app.add_subcommand("info", "List the pages of a drawing with their sizes and titles");
    info->add_option("inputs", infoInputs, "Drawings, - for standard input")
        ->required()
        ->option_text("FILE...");
    info->add_flag("--json", infoAsJson, "Write JSON");
    AddReadOptions(*info, infoOptions);
    AddFragmentOptions(*info, infoOptions);

    ReadOptions inspectOptions;
    std::string inspectInput;
    bool inspectAsJson = false;
    CommandOptions* inspect =
        app.add_subcommand("inspect", "Show the print model of a drawing, as JSON or HTML");
    inspect->add_option("input", inspectInput, "Drawing, - for standard input")
        ->required()
        ->option_text("FILE");
    CLI::Option* asJson = inspect->add_flag("--json", inspectAsJson, "Write JSON (the default)");
    std::string inspectPage;
    CLI::Option* asPage = inspect->add_option(
        "--html", inspectPage, "Write a web page: the drawing beside its primitives; - for standard output");
    asPage->option_text("FILE");
    if (asPage != asJson) asPage->excludes(asJson);
    AddReadOptions(*inspect, inspectOptions);

    CheckOptions check;
    std::vector<std::string> kindsNotChecked;
    CommandOptions* checking = app.add_subcommand("check", "Report what will not print as expected");
    checking->add_option("inputs", check.inputs, "Drawings, - for standard input")
        ->required()
        ->option_text("FILE...");
    checking->add_flag("--json", check.asJson, "Write JSON");
    checking->add_flag("--verbose", check.verbose, "List every finding, not only the first of each kind");
    AddIgnoreOption(*checking, kindsNotChecked);
    AddReadOptions(*checking, check.read);
    checking->add_flag("--qvxml", check.read.qvxml,
                       "Read XML documents that contain drawings, as .qvxml files are");
    ReportOptions report;
    CommandOptions* reporting = app.add_subcommand("report", "Summarise reports of batches");
    reporting->add_option("files", report.files, "Reports written by --report, of all parts and attempts")
        ->required()
        ->option_text("FILE...");
    reporting->add_option("--merged", report.merged, "Write the merged report, a line for each drawing")
        ->option_text("FILE");
    reporting->add_option("--html", report.html, "Write a page with the summary and the drawings that failed")
        ->option_text("FILE");
    reporting->add_flag("--json", report.asJson, "Write the summary as JSON");
    ServeSettings serve;
    CommandOptions* serving =
        app.add_subcommand("serve", "Print drawings sent over HTTP, until a signal ends it");
    AddReadOptions(*serving, serve.read);
    AddServeOptions(*serving, serve);
    const CommandOptions* formats = app.add_subcommand("formats", "List the output formats");
    const CommandOptions* printers = app.add_subcommand("printers", "List the printers");
    const CommandOptions* limits =
        app.add_subcommand("limits", "List the resource limits for untrusted input");
    if (given.AreAll()) PrepareHelp(parser);

    try {
        parser.parse(argc, argv);
    } catch (const CLI::Error& error) {
        if (!given.AreAll()) return std::nullopt;
        if (error.get_exit_code() == 0) return parser.exit(error);  // --help, --version
        const std::string hint = HintOnOptions(parser, argc, argv);
        return Report(kExitUsage, "", WhatIsWrong(error) + hint + " (see orvprint --help)");
    }

    if (const std::string name = OptionBeforeCommand(parser); !name.empty())
        return Report(kExitUsage, name, "precedes the command; put options after the command");
    if (info->parsed()) {
        if (const int code = ApplyReadOptions(infoOptions); code != kExitDone) return code;
        if (const int code = EnterSandboxFor(infoOptions, {.inputs = infoInputs}); code != kExitDone)
            return code;
        infoOptions.endsWithInput = infoInputs.size() == 1;
        return RunInfo(infoInputs, infoOptions, infoAsJson);
    }
    if (inspect->parsed()) {
        if (const int code = ApplyReadOptions(inspectOptions); code != kExitDone) return code;
        if (const int code =
                EnterSandboxFor(inspectOptions, {.inputs = {inspectInput}, .output = inspectPage});
            code != kExitDone)
            return code;
        if (!inspectPage.empty()) return RunHtmlInspection(inspectInput, inspectOptions, inspectPage);
        return RunInspect(inspectInput, inspectOptions);
    }
    if (checking->parsed()) {
        if (const int code = ParseKinds(kindsNotChecked, check.ignored); code != kExitDone) return code;
        if (const int code = ApplyReadOptions(check.read); code != kExitDone) return code;
        if (const int code = EnterSandboxFor(check.read, {.inputs = check.inputs}); code != kExitDone)
            return code;
        return RunCheck(check);
    }
    if (reporting->parsed()) return RunReport(report);
    if (serving->parsed()) {
        if (const int code = ApplyReadOptions(serve.read); code != kExitDone) return code;
        return RunServe(std::move(serve));
    }
    if (formats->parsed()) return RunFormats();
    if (limits->parsed()) return RunLimits();
    if (printers->parsed()) return RunPrinters();
    for (const std::string& list : lists.paths)
        if (const int code = ReadDrawingList(list, lists.endsWithZero ? '\0' : '\n', print.inputs);
            code != kExitDone)
            return code;
    if (print.inputs.empty()) return Report(kExitUsage, "", "no input; name a drawing (see orvprint --help)");
    if (const std::string command = MeantCommand(app, print.inputs.front()); !command.empty())
        return Report(kExitUsage, print.inputs.front(),
                      "is neither a file nor a command; did you mean orvprint " + command + "?");
    const bool isDirect = !direct.printer.empty();
    if (isDirect && (!batch.folder.empty() || !print.format.empty()))
        return Report(kExitUsage, "--printer", "cannot be combined with --out-dir or --format");
    if (isDirect) {
        direct.options = outputs;
    } else if (outputs.size() > 1) {
        return Report(kExitUsage, "--output", "takes one file; -o NAME=VALUE needs a printer, given with -d");
    } else if (!outputs.empty()) {
        print.output = outputs.front();
    }
    if (print.output.empty() && batch.folder.empty() && !isDirect) {
        if (print.inputs.size() > 1 || print.inputs.front() == "-")
            return Report(kExitUsage, "", "no output; give it with -o FILE or --out-dir DIR");
        print.output = BaseName(print.inputs.front()) + "." + (print.format.empty() ? "pdf" : print.format);
        print.keepsFiles = !mayReplace;
    }
    if (!print.output.empty() && !batch.folder.empty())
        return Report(kExitUsage, "",
                      "-o and --out-dir cannot be combined: one file for all inputs, or one for each");
    std::string error;
    if (pagesOption->count() > 0 && !print.pages.Parse(pages, error))
        return Report(kExitUsage, "--pages", error);
    if (const int code = ParseKinds(ignoredKinds, print.ignored); code != kExitDone) return code;
    DirectPrinting printing(direct);
    if (isDirect)
        if (const int code = printing.Prepare(sheet, print); code != kExitDone) return code;
    print.tellsLoss = !batch.isQuiet && (print.output != "-" || isDirect) && isatty(STDERR_FILENO) == 1;
    if (!service.empty()) {
        HttpWords words;
        if (const int code = MakeQuery(parser, print, words); code != kExitDone) return code;
        return PrintVia(service, print, words);
    }
    if (const int code = ReadSheetWords(sheet, Host(), print.sheet); code != kExitDone) return code;
    if (const int code = ReadSizeArguments(size, print); code != kExitDone) return code;
    if (const int code = ApplyReadOptions(print.read); code != kExitDone) return code;
    if (batch.folder.empty()) {
        print.read.endsWithInput = print.inputs.size() == 1;
        return isDirect ? printing.Run(std::move(print)) : RunPrint(print);
    }
    batch.keepGoing = print.read.keepGoing;
    batch.optionsHash = HashOfOptions(parser);
    return RunBatch(print, batch);
}

int Run(int argc, char** argv) {
    // "help COMMAND" is "COMMAND --help". A file of this name prints, as it does where it is no command.
    if (argc > 1 && std::string_view(argv[1]) == "help" && access(argv[1], F_OK) != 0) {
        static char helpOption[] = "--help";
        std::rotate(argv + 1, argv + 2, argv + argc);
        argv[argc - 1] = helpOption;
    }
    // Printing has a subcommand of its own, too, which may be omitted.
    if (argc > 1 && std::string_view(argv[1]) == "print") {
        argv[1] = argv[0];
        --argc;
        ++argv;
    }
    if (const std::optional<int> code = RunGiven(argc, argv, GivenWords(argc, argv))) return *code;
    return *RunGiven(argc, argv, GivenWords::All());
}

}  // namespace

int main(int argc, char** argv) {
    SetUpMemoryForModels();
    ExitImmediatelyWhenOutOfMemory();
    EndCleanlyOnSignals();
    UseLinkedModules();
    // A closed pipe or a file size limit makes writing fail instead of terminating the process.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return Run(argc, argv);
    } catch (const std::bad_alloc&) {
        return ReportOutOfMemory("");
    } catch (const std::exception& error) {
        return Report(kExitFailed, "", error.what());
    }
}
