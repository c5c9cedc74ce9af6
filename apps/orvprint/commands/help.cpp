// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/help.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>

namespace {

struct GroupRow {
    std::string_view group;
    std::string_view options;  // long names, each surrounded by spaces
};

// In the order of the help. Options not listed here come last, under "Options".
constexpr std::array kGroups{
    GroupRow{
        "Input",
        " interpreter language font-size parser qvxml detect-qvxml fragment allow-dir no-file-images limit "
        "max-primitives "
        "time-limit keep-going strict "
        "ignore "
        "no-sandbox require-sandbox "},
    GroupRow{"Output",
             " output force via format pages dpi width height zoom background export-id flatten-dpi "},
    GroupRow{"Several inputs", " out-dir files-from null keep-folders jobs shard report resume retry quiet "},
    GroupRow{"Paper", " paper orientation scale margin align tile overlap nup "},
    GroupRow{"Colours and lines", " grey mono stroke-scale min-stroke "},
};

void GroupOptions(CLI::App& command) {
    for (CLI::Option* option : command.get_options()) {
        if (option->get_lnames().empty()) continue;
        const std::string name = " " + option->get_lnames().front() + " ";
        for (const GroupRow& row : kGroups)
            if (row.options.find(name) != std::string_view::npos) option->group(std::string(row.group));
    }
}

class HelpFormatter final : public CLI::Formatter {
public:
    std::string make_usage(const CLI::App* app, std::string name) const override {
        if (app->get_parent()) return CLI::Formatter::make_usage(app, name);
        return "Usage: " + name + " [print] [OPTIONS] FILE... [-o OUTPUT]\n       " + name +
               " [print] [OPTIONS] FILE... --out-dir DIR -f FORMAT\n       " + name +
               " COMMAND [OPTIONS] [FILE]\n";
    }

    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override {
        return make_description(app) + make_usage(app, name) + make_positionals(app) + MakeGroups(app) +
               make_subcommands(app, mode) + "\n" + make_footer(app);
    }

private:
    std::string MakeGroups(const CLI::App* app) const {
        const auto rowOf = [](const std::string& group) {
            return std::find_if(kGroups.begin(), kGroups.end(),
                                [&](const GroupRow& row) { return row.group == group; });
        };
        std::vector<std::string> groups = app->get_groups();
        std::stable_sort(
            groups.begin(), groups.end(),
            [&](const std::string& left, const std::string& right) { return rowOf(left) < rowOf(right); });
        std::string text;
        for (const std::string& group : groups) {
            const std::vector<const CLI::Option*> options = app->get_options([&](const CLI::Option* option) {
                return option->get_group() == group && option->nonpositional();
            });
            if (!group.empty() && !options.empty()) text += make_group(group, false, options);
        }
        return text;
    }
};

}  // namespace

void PrepareHelp(CLI::App& app) {
    const auto formatter = std::make_shared<HelpFormatter>();
    std::vector<CLI::App*> commands = app.get_subcommands({});
    commands.push_back(&app);
    for (CLI::App* command : commands) {
        GroupOptions(*command);
        command->formatter(formatter);
    }
}
