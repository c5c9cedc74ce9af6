// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <CLI/CLI.hpp>

#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The words of a command line, for who asks whether an option or a command may be among them. The library
/// that reads command lines compares each new option with all that it has, which for the sixty of this
/// command takes longer than printing a small drawing. So only those are added that were given; when the
/// words cannot be read with these alone, they are read again with all.
class GivenWords {
public:
    /// The words of this command line.
    GivenWords(int argc, const char* const* argv);
    /// Words that hold everything.
    static GivenWords All() { return {}; }

    bool AreAll() const { return areAll_; }
    /// Whether one of an option's names may be among the words.
    /// @param names  as the library takes them, such as "-o,--output"; a name without dashes is always there
    bool MayHold(std::string_view names) const;
    bool HoldCommand(std::string_view name) const;

private:
    GivenWords() = default;
    bool HoldOption(std::string_view name) const;

    bool areAll_ = true;
    std::vector<std::string_view> words_;  // without values that follow a sign of equality
};

/// Takes options as the library does, but adds only those that are given. Those who add the others configure
/// an option that nobody asks.
class CommandOptions {
public:
    /// @param app  null for a command that is not given: it takes no options
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
    /// Takes an option away that was added for other commands as well.
    void remove_option(const std::string& name) {
        if (CLI::Option* const option = get_option_no_throw(name)) app_->remove_option(option);
    }

    /// The library's check of a range. Its description, which messages quote, takes longer to make than an
    /// option; words that give a message are read again with all.
    template <class Number>
    CLI::Validator IsInRange(Number least, Number most) const {
        if (words_.AreAll()) return CLI::Range(least, most);
        return {[=](std::string& text) { return CLI::Range(least, most)(text); }, ""};
    }

    /// A command with options of its own. When it is not given, it takes none.
    CommandOptions* add_subcommand(const char* name, const char* description);
    /// Names of all commands, given or not.
    const std::vector<std::string>& CommandNames() const { return commandNames_; }
    /// Whether the command was called.
    bool parsed() const { return app_ && app_->parsed(); }

private:
    bool Takes(std::string_view names) const { return app_ && words_.MayHold(names); }
    /// An option whose settings have no effect.
    static CLI::Option* Unused();

    CLI::App* app_;
    const GivenWords& words_;
    std::deque<CommandOptions> commands_;
    std::vector<std::string> commandNames_;
};
