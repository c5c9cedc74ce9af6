// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <CLI/CLI.hpp>

#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The arguments of a command line, to test which options and commands may be among them. The command-line
/// library compares each new option with all others, which for the sixty of this command takes longer than
/// printing a small drawing. Therefore only those in use are added; if the arguments cannot be parsed with
/// these, they are parsed again with all.
class GivenWords {
public:
    /// The arguments of this command line.
    GivenWords(int argc, const char* const* argv);
    /// Arguments that contain every option.
    static GivenWords All() { return {}; }

    bool AreAll() const { return areAll_; }
    /// True if one of an option's names may be among the arguments.
    /// @param names  in the library's syntax, such as "-o,--output"; a name without dashes is always included
    bool MayHold(std::string_view names) const;
    bool HoldCommand(std::string_view name) const;

private:
    GivenWords() = default;
    bool HoldOption(std::string_view name) const;

    bool areAll_ = true;
    std::vector<std::string_view> words_;  // without values after an equals sign
};

/// Has the interface of the library for adding options, but adds only those in use. For the others, callers
/// configure a dummy option.
class CommandOptions {
public:
    /// @param app  null for a command that is not in use: no options are added
    CommandOptions(CLI::App* app, const GivenWords& words) : app_(app), words_(words) {}
    CommandOptions(const CommandOptions&) = delete;
    CommandOptions& operator=(const CommandOptions&) = delete;

    template <class... Rest>
    CLI::Option* add_option(const char* names, Rest&&... rest) {
        return Takes(names) ? app_->add_option(names, std::forward<Rest>(rest)...) : Unused();
    }
    template <class Value, class... Rest>
    CLI::Option* add_option_function(const char* names, Rest&&... rest) {
        return Takes(names) ? app_->add_option_function<Value>(names, std::forward<Rest>(rest)...) : Unused();
    }
    template <class... Rest>
    CLI::Option* add_flag(const char* names, Rest&&... rest) {
        return Takes(names) ? app_->add_flag(names, std::forward<Rest>(rest)...) : Unused();
    }
    const CLI::Option* get_option_no_throw(const std::string& name) const {
        return app_ ? std::as_const(*app_).get_option_no_throw(name) : nullptr;
    }
    CLI::Option* get_option_no_throw(const std::string& name) {
        return app_ ? app_->get_option_no_throw(name) : nullptr;
    }
    /// Removes an option that was added for other commands as well.
    void remove_option(const std::string& name) {
        if (CLI::Option* const option = get_option_no_throw(name)) app_->remove_option(option);
    }

    /// The library's range check without its description, which takes longer to create than an option.
    /// Arguments that cause an error message are parsed again with all options.
    template <class Number>
    CLI::Validator IsInRange(Number least, Number most) const {
        if (words_.AreAll()) return CLI::Range(least, most);
        return {[=](std::string& text) { return CLI::Range(least, most)(text); }, ""};
    }

    /// Adds a subcommand. It gets no options if it is not in use.
    CommandOptions* add_subcommand(const char* name, const char* description);
    /// Names of all commands, in use or not.
    const std::vector<std::string>& CommandNames() const { return commandNames_; }
    /// True if the command was called.
    bool parsed() const { return app_ && app_->parsed(); }

private:
    bool Takes(std::string_view names) const { return app_ && words_.MayHold(names); }
    /// A dummy option whose settings have no effect.
    static CLI::Option* Unused();

    CLI::App* app_;
    const GivenWords& words_;
    std::deque<CommandOptions> commands_;
    std::vector<std::string> commandNames_;
};
