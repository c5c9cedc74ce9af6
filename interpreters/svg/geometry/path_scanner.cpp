// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/geometry/path_scanner.h"

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

// In every run of "e", and of minuses after an "e", an "e-" counts as three and a lone "e" as one; the run is
// replaced by one "e-" for every three.
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

const char* SkipSeparators(const char* p, const char* end) {
    while (p != end && ClassOf(*p) == kSeparator) ++p;
    return p;
}

// Reads an argument at `p` that is a plain short number.
// @return the position after it; null if the argument is anything else
[[gnu::always_inline]] inline const char* ReadPlainNumber(const char* p, const char* end, double& number) {
    const bool isNegative = p != end && *p == '-';
    if (isNegative) ++p;
    const char* const behind = ORVReadShortNumber(p, end, number);
    // If anything but a separator follows, the number is only part of the argument.
    if (!behind || (behind != end && ClassOf(*behind) == kOther)) return nullptr;
    number = isNegative ? -number : number;
    return behind;
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
    const char* const end = GetEnd();
    const char* const behind = ReadPlainNumber(SkipSeparators(text_.data() + position_, end), end, number);
    if (behind) position_ = static_cast<std::size_t>(behind - text_.data());
    return behind != nullptr;
}

PathScanner::Behind PathScanner::NextPlainPairs(char letter, ORVMathPoint2D* pairs, std::size_t most,
                                                std::size_t& count) {
    const char* const end = GetEnd();
    const char* p = text_.data() + position_;
    Behind behind = Behind::kMore;
    count = 0;
    while (count < most) {
        p = SkipSeparators(p, end);
        if (p != end && *p == letter) {
            ++p;
            continue;
        }
        if (p == end || ClassOf(*p) == kCommand || ClassOf(*p) == kEnd) {
            behind = Behind::kNone;
            break;
        }
        ORVMathPoint2D pair;
        const char* next = ReadPlainNumber(p, end, pair.x);
        if (next) next = ReadPlainNumber(SkipSeparators(next, end), end, pair.y);
        if (!next) {
            behind = Behind::kOther;
            break;
        }
        pairs[count++] = pair;
        p = next;
    }
    position_ = static_cast<std::size_t>(p - text_.data());
    return behind;
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
