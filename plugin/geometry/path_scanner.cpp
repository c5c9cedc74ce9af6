#include "plugin/geometry/path_scanner.h"

#include <array>

#include "platform/system/short_number.h"

namespace {

enum CharacterClass : unsigned char { kOther, kSeparator, kCommand, kEnd, kMinus };

constexpr std::array<CharacterClass, 256> kClasses = [] {
    std::array<CharacterClass, 256> classes{};
    for (const char c : std::string_view("MmZzLlCcSsHhVvQqTtAa"))
        classes[static_cast<unsigned char>(c)] = kCommand;
    classes[' '] = classes[','] = kSeparator;
    classes[';'] = kEnd;
    classes['-'] = kMinus;
    return classes;
}();

CharacterClass ClassOf(char c) { return kClasses[static_cast<unsigned char>(c)]; }

// Every run of "e" and of minuses behind an "e" counts three for an "e-" and one for a lone "e"; it is
// written again with an "e-" for every three.
std::string RewriteExponents(std::string_view argument) {
    std::string result;
    for (std::size_t i = 0; i < argument.size();) {
        if (argument[i] != 'e') {
            result += argument[i++];
            continue;
        }
        std::size_t count = 0;
        while (i < argument.size() && argument[i] == 'e') {
            const bool protectsMinus = i + 1 < argument.size() && argument[i + 1] == '-';
            count += protectsMinus ? 3 : 1;
            i += protectsMinus ? 2 : 1;
        }
        for (; count >= 3; count -= 3) result += "e-";
        result.append(count, 'e');
    }
    return result;
}

}  // namespace

bool PathScanner::NextCommand(char& letter) {
    while (position_ < text_.size()) {
        const char c = text_[position_++];
        if (ClassOf(c) != kCommand) continue;
        letter = c;
        return true;
    }
    return false;
}

bool PathScanner::NextPlainNumber(double& number) {
    while (position_ < text_.size() && ClassOf(text_[position_]) == kSeparator) ++position_;
    const char* const end = text_.data() + text_.size();
    const char* const start = text_.data() + position_;
    const bool isNegative = start != end && *start == '-';
    double value = 0.0;
    const char* const behind = ORVReadShortNumber(isNegative ? start + 1 : start, end, value);
    // With anything else behind it, the number is only a part of the argument.
    if (!behind || (behind != end && ClassOf(*behind) == kOther)) return false;
    position_ = static_cast<std::size_t>(behind - text_.data());
    number = isNegative ? -value : value;
    return true;
}

bool PathScanner::NextArgument(std::string_view& argument) {
    while (position_ < text_.size() && ClassOf(text_[position_]) == kSeparator) ++position_;
    const std::size_t start = position_;
    bool rewrite = false;
    for (; position_ < text_.size(); ++position_) {
        const CharacterClass type = ClassOf(text_[position_]);
        if (type == kOther) {
            rewrite |= position_ > start && text_[position_] == 'e' && text_[position_ - 1] == 'e';
        } else if (type != kMinus || (position_ > start && text_[position_ - 1] != 'e')) {
            break;
        }
    }
    if (position_ == start) return false;
    argument = text_.substr(start, position_ - start);
    if (rewrite) argument = rewritten_ = RewriteExponents(argument);
    return true;
}
