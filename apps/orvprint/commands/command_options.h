// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <CLI/CLI.hpp>

#include <deque>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// The words of a command line, for finding out which options and commands it may contain. CLI11 compares
/// each new option with all existing ones, which for the sixty options of this command takes longer than
/// printing a small drawing. So only the options that are given are registered; if parsing fails, it is
/// repeated with all of them.
class GivenWords {
public:
    /// The words of this command line.
    GivenWords(int argc, const char* const* argv);
    /// Contains every option and command.
    static GivenWords All() { return {}; }

    bool AreAll() const { return areAll_; }
    /// True if one of an option's names may be among the words.
    /// @param names  as CLI11 takes them, such as "-o,--output"; a positional name is always contained
    bool MayHold(std::string_view names) const;
    bool HoldCommand(std::string_view name) const;

private:
    GivenWords() = default;
    bool HoldOption(std::string_view name) const;

    bool areAll_ = true;
    std::vector<std::string_view> words_;  // without values after "="
};

/// Registers options with CLI11, but only those that are given. For others, the caller configures a dummy
/// option.
class CommandOptions {
public:
    /// @param app  null for a command that is not given: nothing is registered
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

    /// Refuses what is no number from `least` to `most`.
    template <class Number>
    static CLI::Validator IsInRange(Number least, Number most) {
        return {[=](const std::string& text) {
                    Number value{};
                    const bool isIn =
                        CLI::detail::lexical_cast(text, value) && value >= least && value <= most;
                    return isIn ? std::string()
                                : "'" + text + "' is not a " + (std::is_integral_v<Number> ? "whole " : "") +
                                      "number from " + NumberText(static_cast<double>(least)) + " to " +
                                      NumberText(static_cast<double>(most));
                },
                ""};
    }

    /// A subcommand with options of its own. If it is not given, none are registered.
    CommandOptions* add_subcommand(const char* name, const char* description);
    /// Names of all commands, given or not.
    const std::vector<std::string>& CommandNames() const { return commandNames_; }
    /// True if the command was given.
    bool parsed() const { return app_ && app_->parsed(); }

private:
    /// A number in full, without an exponent or trailing zeros.
    static std::string NumberText(double number);
    bool Takes(std::string_view names) const { return app_ && words_.MayHold(names); }
    /// An option whose settings have no effect.
    static CLI::Option* Unused();

    CLI::App* app_;
    const GivenWords& words_;
    std::deque<CommandOptions> commands_;
    std::vector<std::string> commandNames_;
};
