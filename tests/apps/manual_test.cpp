// SPDX-License-Identifier: Apache-2.0

// The manual and the shell completion list everything that the command knows, and nothing else.

#include <regex.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <sstream>

#include "tests/apps/tool_run.h"
#include "tests/support/test_texts.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using Names = std::set<std::string>;

constexpr const char* kManual = ORV_SOURCE_PATH "/docs/man/orvprint.1";
constexpr const char* kCompletion = ORV_SOURCE_PATH "/packaging/completion/orvprint.bash";

Names Without(const Names& names, const Names& others) {
    Names rest;
    std::set_difference(names.begin(), names.end(), others.begin(), others.end(),
                        std::inserter(rest, rest.end()));
    return rest;
}

/// Returns the first group of every match of a pattern.
Names MatchesIn(const std::string& text, const char* pattern) {
    regex_t expression;
    EXPECT_EQ(regcomp(&expression, pattern, REG_EXTENDED | REG_NEWLINE), 0) << pattern;
    Names names;
    std::array<regmatch_t, 2> match;
    int flags = 0;
    for (const char* at = text.c_str(); regexec(&expression, at, match.size(), match.data(), flags) == 0;) {
        names.insert(std::string(at + match[1].rm_so, at + match[1].rm_eo));
        at += match[0].rm_eo;
        flags = at[-1] == '\n' ? 0 : REG_NOTBOL;
    }
    regfree(&expression);
    return names;
}

class ManualTest : public ToolTest {
protected:
    ManualTest() : manual_(ReadAll(kManual)) {}

    std::string HelpOf(const std::string& command) const {
        return Run(command.empty() ? std::vector<std::string>{"--help"}
                                   : std::vector<std::string>{command, "--help"})
            .output;
    }
    /// Returns the subcommands; "" stands for printing.
    Names Commands() const {
        const std::string help = HelpOf("");
        Names commands = MatchesIn(help.substr(help.find("Subcommands:")), "^  ([a-z]+)  ");
        commands.insert("");
        return commands;
    }
    /// Returns short and long options, with their dashes.
    Names OptionsOf(const std::string& command) const {
        std::istringstream help(HelpOf(command));
        Names options;
        for (std::string line; std::getline(help, line);)
            if (line.starts_with("  -")) options.merge(MatchesIn(line.substr(0, 29), "(--?[a-z][a-z-]*)"));
        return options;
    }
    Names AllOptions() const {
        Names options;
        for (const std::string& command : Commands()) options.merge(OptionsOf(command));
        return options;
    }
    Names OptionsOfManual() const {
        Names options;
        for (const std::string& name : MatchesIn(manual_, "Fl (-?[a-z][a-z-]*)")) options.insert("-" + name);
        return options;
    }
    Names FormatsOfTool() const { return MatchesIn(Run({"formats"}).output, "^([a-z]+) "); }

    /// Returns the shell's completions of the last word.
    std::vector<std::string> Completions(const std::vector<std::string>& words) const {
        std::string script = std::string("source '") + kCompletion + "'; COMP_WORDS=(";
        for (const std::string& word : words) script += "'" + word + "' ";
        script += "); COMP_CWORD=" + std::to_string(words.size() - 1) +
                  "; _orvprint; for word in \"${COMPREPLY[@]}\"; do printf '%s\\n' \"$word\"; done";
        const ToolRun run = RunProgram({"bash", "-u", "-c", script});
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_THAT(run.errors, IsEmpty());
        std::vector<std::string> offered;
        std::istringstream lines(run.output);
        for (std::string line; std::getline(lines, line);) offered.push_back(line);
        return offered;
    }
    Names CompletedOptions(const std::string& command) const {
        const auto offered =
            Completions(command.empty() ? std::vector<std::string>{"orvprint", "-"}
                                        : std::vector<std::string>{"orvprint", command, "-"});
        return {offered.begin(), offered.end()};
    }

    const std::string manual_;
};

TEST_F(ManualTest, IsWellFormed) {
    const ToolRun run = RunProgram({"mandoc", "-T", "lint", "-W", "warning", kManual});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(RunProgram({"mandoc", "-T", "utf8", kManual}).output,
                HasSubstr("Printing failed, or a limit was reached."));
}

TEST_F(ManualTest, TellsOfEveryOptionAndOfNoOther) {
    const Names known = AllOptions();
    EXPECT_THAT(known, AllOf(Contains("--out-dir"), Contains("-o"), Contains("--json"), Contains("--help")));
    EXPECT_THAT(Without(known, OptionsOfManual()), IsEmpty()) << "missing in the manual";
    EXPECT_THAT(Without(OptionsOfManual(), known), IsEmpty()) << "known to the manual only";
}

TEST_F(ManualTest, TellsOfEveryCommandFormatAndExitCode) {
    Names commands = MatchesIn(manual_, "^\\.It Cm ([a-z]+)$");
    EXPECT_EQ(commands.erase("print"), 1U);
    commands.insert("");
    EXPECT_EQ(commands, Commands());

    const std::string list = manual_.substr(manual_.find(".Cm pdf , "));
    const Names formats = MatchesIn(list.substr(0, list.find('\n')), "([a-z]+) [,.]");
    EXPECT_EQ(formats, FormatsOfTool());

    const std::string help = HelpOf("");
    const Names codes = MatchesIn(help.substr(help.find("Exit codes:")), "([0-9]+) ");
    EXPECT_THAT(codes, AllOf(Contains("0"), Contains("11")));
    EXPECT_THAT(MatchesIn(manual_, "^\\.It ([0-9]+)$"), testing::IsSupersetOf(codes));
}

TEST_F(ManualTest, EveryFormatHasAPage) {
    Names pages;
    for (const auto& entry : std::filesystem::directory_iterator(ORV_SOURCE_PATH "/docs/formats"))
        pages.insert(entry.path().stem());
    EXPECT_EQ(pages.erase("README"), 1U);
    EXPECT_EQ(pages, FormatsOfTool());
    const std::string list = ReadAll(ORV_SOURCE_PATH "/docs/formats/README.md");
    for (const std::string& page : pages) EXPECT_THAT(list, HasSubstr("| [" + page + "](" + page + ".md) |"));
}

TEST_F(ManualTest, CompletionOffersTheOptionsOfEveryCommandAndNoOther) {
    for (const std::string& command : Commands()) {
        SCOPED_TRACE("orvprint " + command);
        const Names known = OptionsOf(command), offered = CompletedOptions(command);
        EXPECT_THAT(known, Not(IsEmpty()));
        EXPECT_EQ(offered, known);
    }
    EXPECT_EQ(CompletedOptions("print"), CompletedOptions(""));
}

TEST_F(ManualTest, CompletionOffersCommandsFormatsAndValues) {
    WriteFile("in-some.svg", "");
    const auto offered = Completions({"orvprint", "in"});
    EXPECT_THAT(offered, ElementsAre("info", "inspect", "in-some.svg"));
    Names commands;
    for (const std::string& word : Completions({"orvprint", ""})) commands.insert(word);
    Names known = Commands();
    known.erase("");
    EXPECT_THAT(commands, testing::IsSupersetOf(known));

    for (const std::vector<std::string>& words : {std::vector<std::string>{"orvprint", "a.svg", "-f", ""},
                                                  {"orvprint", "--format", ""},
                                                  {"orvprint", "--format", "="},
                                                  {"orvprint", "--format", "=", ""}}) {
        const auto formats = Completions(words);
        const Names names(formats.begin(), formats.end());
        EXPECT_EQ(names, FormatsOfTool());
    }
    EXPECT_THAT(Completions({"orvprint", "--format", "=", "pd"}), ElementsAre("pdf"));
    EXPECT_THAT(Completions({"orvprint", "info", "--parser", "d"}), ElementsAre("dom"));
    EXPECT_THAT(Completions({"orvprint", "--pages", ""}), IsEmpty());
}

TEST_F(ManualTest, CompletionOffersEveryKindOfFindingToIgnore) {
    const Names kinds =
        MatchesIn(ReadAll(ORV_SOURCE_PATH "/library/check/findings.cpp"), "[{]k[A-Za-z]+, +\"([a-z-]+)\",");
    const auto offered = Completions({"orvprint", "check", "--ignore", ""});
    EXPECT_THAT(kinds, Contains("bad-colour"));
    EXPECT_EQ(Names(offered.begin(), offered.end()), kinds);
}

TEST_F(ManualTest, CompletionOffersDrawingsFoldersAndFilesWhereTheyBelong) {
    for (const char* name : {"a.svg", "a b.SVG", "c.svgz", "d.qvxml", "e.svg.gz", "x.txt", "folder/y.svg"})
        WriteFile(name, "");
    EXPECT_THAT(Completions({"orvprint", "info", ""}),
                testing::UnorderedElementsAre("a.svg", "a b.SVG", "c.svgz", "d.qvxml", "e.svg.gz", "folder"));
    EXPECT_THAT(Completions({"orvprint", "a.svg", "fo"}), ElementsAre("folder"));
    EXPECT_THAT(Completions({"orvprint", "a.svg", "folder/"}), ElementsAre("folder/y.svg"));
    EXPECT_THAT(Completions({"orvprint", "x"}), ElementsAre("x.txt")) << "better any file than none";
    EXPECT_THAT(Completions({"orvprint", "a.svg", "-o", "x"}), ElementsAre("x.txt"));
    EXPECT_THAT(Completions({"orvprint", "a.svg", "--out-dir", ""}), ElementsAre("folder"));
    EXPECT_THAT(Completions({"orvprint", "formats", ""}), IsEmpty());
}

}  // namespace
