// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/batch_options.h"

#include <set>

#include "apps/orvprint/commands/command_options.h"
#include "apps/orvprint/commands/content_hash.h"

void AddBatchOptions(CommandOptions& command, CLI::Option* keepGoing, BatchOptions& options) {
    auto* folder =
        command.add_option("--out-dir", options.folder, "Write each input to its own file, DIR/NAME.FORMAT");
    folder->option_text("DIR");
    command.add_option("-j,--jobs", options.jobs, "Number of parallel conversions, with --out-dir")
        ->option_text("N [cores]")
        ->check(command.IsInRange(1U, 1024U))
        ->needs(folder);
    command.add_flag("--quiet", options.isQuiet, "Show no progress bar, no summary and no hints");
    command
        .add_flag("--keep-folders", options.keepsFolders,
                  "Write DIR/FOLDER/NAME.FORMAT, keeping the input's folders")
        ->needs(folder)
        ->option_text(" ");
    command
        .add_option_function<std::string>(
            "--shard",
            [&options](const std::string& text) {
                if (!options.shard.Parse(text))
                    throw CLI::ValidationError("--shard", "'" + text + "' is no part such as 2/8");
            },
            "Convert only the I-th of N parts of the inputs, chosen by their names")
        ->option_text("I/N")
        ->needs(folder);
    command
        .add_option("--report", options.report, "Append a line of JSON for each drawing; see orvprint report")
        ->option_text("FILE")
        ->needs(folder);
    command
        .add_option("--resume", options.resume,
                    "Skip drawings that FILE, a report, lists as done, unless they have changed")
        ->option_text("FILE")
        ->needs(folder);
    command
        .add_option("--retry", options.retries,
                    "Retry a drawing up to N times if a file, time or memory made it fail")
        ->option_text("N [0]")
        ->check(command.IsInRange(0U, 100U))
        ->needs(folder);
    keepGoing->description("Print what precedes an XML error; with --out-dir, continue after a failed input");
}

void AddListOptions(CommandOptions& command, DrawingLists& lists) {
    CLI::Option* from =
        command.add_option("--files-from", lists.paths,
                           "Also convert the drawings named in LIST, one per line; - for standard input");
    from->option_text("LIST")->take_all()->allow_extra_args(false);
    command.add_flag("-0,--null", lists.endsWithZero, "Names in LIST are separated by zero bytes")
        ->needs(from)
        ->option_text(" ");
}

std::string HashOfOptions(const CLI::App& app) {
    const std::set<std::string> others{"inputs",         "--files-from", "--null",  "--out-dir",
                                       "--keep-folders", "--jobs",       "--quiet", "--shard",
                                       "--report",       "--resume",     "--retry", "--keep-going"};
    std::string text = "orvprint " ORVPRINT_VERSION;
    for (const CLI::Option* option : app.get_options()) {
        if (option->count() == 0 || others.contains(option->get_name())) continue;
        text.append(1, '\0').append(option->get_name());
        for (const std::string& value : option->results()) text.append(1, '\0').append(value);
    }
    return HashOfText(text);
}
