// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/command_options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>

namespace {

/// Pairs of mutually exclusive options. CLI11 can be told only if it has both.
constexpr std::array<std::array<std::string_view, 2>, 2> kPairs{
    {{"--allow-dir", "--no-file-images"}, {"--no-sandbox", "--require-sandbox"}}};

}  // namespace

GivenWords::GivenWords(int argc, const char* const* argv) : areAll_(false) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view word(argv[i]);
        words_.push_back(word.starts_with("--") ? word.substr(0, word.find('=')) : word);
    }
    if (std::getenv("ORVPRINT_INTERPRETER")) words_.push_back("--interpreter");
    for (const auto& [one, other] : kPairs)
        if (HoldOption(one) || HoldOption(other)) words_.insert(words_.end(), {one, other});
}

bool GivenWords::HoldOption(std::string_view name) const {
    return std::any_of(words_.begin(), words_.end(), [&](std::string_view word) {
        if (name.starts_with("--")) return word == name;
        // A word may hold several short options, or an option and its value.
        return word.starts_with('-') && !word.starts_with("--") && word.find(name[1]) != word.npos;
    });
}

bool GivenWords::MayHold(std::string_view names) const {
    if (areAll_ || !names.starts_with('-')) return true;
    for (std::size_t at = 0; at < names.size();) {
        const std::size_t end = std::min(names.find(',', at), names.size());
        if (HoldOption(names.substr(at, end - at))) return true;
        at = end + 1;
    }
    return false;
}

bool GivenWords::HoldCommand(std::string_view name) const {
    return areAll_ || std::find(words_.begin(), words_.end(), name) != words_.end();
}

CommandOptions* CommandOptions::add_subcommand(const char* name, const char* description) {
    commandNames_.emplace_back(name);
    CLI::App* const command =
        app_ && words_.HoldCommand(name) ? app_->add_subcommand(name, description) : nullptr;
    return &commands_.emplace_back(command, words_);
}

CLI::Option* CommandOptions::Unused() {
    static CLI::App app;
    static CLI::Option* const option = app.add_flag("--unused");
    return option;
}

std::string CommandOptions::NumberText(double number) {
    std::array<char, 32> text{};
    const char* const end =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed).ptr;
    return {text.data(), static_cast<std::size_t>(end - text.data())};
}
