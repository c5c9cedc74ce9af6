// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/values/point_list.h"

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/values/length.h"
#include "platform/system/ORVPrintLimits.h"
#include "platform/system/short_number.h"

namespace {

constexpr std::string_view kSeparators = " ,";

// Returns the next token and advances `position` past it and the separator that ends it.
std::string_view NextToken(std::string_view text, std::size_t& position, bool& endsText) {
    const std::size_t start = text.find_first_not_of(kSeparators, position);
    endsText = start == text.npos;
    if (endsText) {
        position = text.size();
        return {};
    }
    const std::size_t end = text.find_first_of(kSeparators, start);
    endsText = end == text.npos;
    position = endsText ? text.size() : end + 1;
    return text.substr(start, endsText ? text.npos : end - start);
}

// Reads the next token if it is a plain short number, as nearly all are.
// @param isX  a separator must follow
// @return false if it is anything else; `position` is then unchanged
bool NextPlainNumber(std::string_view text, std::size_t& position, bool isX, double& number) {
    const auto isSeparator = [](char c) { return c == ' ' || c == ','; };
    const char* const end = text.data() + text.size();
    const char* start = text.data() + position;
    while (start != end && isSeparator(*start)) ++start;
    const bool isNegative = start != end && *start == '-';
    double value = 0.0;
    const char* const behind = ORVReadShortNumber(isNegative ? start + 1 : start, end, value);
    if (!behind || (behind == end ? isX : !isSeparator(*behind))) return false;
    position = static_cast<std::size_t>(behind - text.data()) + (behind == end ? 0 : 1);
    number = isNegative ? -value : value;
    return true;
}

}  // namespace

bool ReadCoordinateNumbers(const SvgDrawState& state, std::string_view value, std::vector<double>& numbers) {
    numbers.clear();
    std::size_t position = 0;
    const std::uint64_t most = 2 * ORVPrintLimits::Get(ORVPrintLimit::kPathPoints);
    bool endsText = false;
    double number = 0.0;
    const auto readY = [&](std::string_view token) {
        number = 0.0;
        if (ParseVerticalCoordinate(state, token, number) == kRead) numbers.push_back(number);
    };
    while (position < value.size() && numbers.size() <= most) {
        if (NextPlainNumber(value, position, true, number)) {
            numbers.push_back(number);
        } else {
            const std::string_view token = NextToken(value, position, endsText);
            if (endsText) {  // only a token followed by a separator is an x
                readY(token);
                break;
            }
            if (ParseHorizontalLength(state, token, number) == kRead) numbers.push_back(number);
        }
        if (NextPlainNumber(value, position, false, number))
            numbers.push_back(state.yFlip == 1 ? state.pageHeight - number : number);
        else
            readY(NextToken(value, position, endsText));
    }
    if (numbers.size() <= most) return true;
    numbers.resize(most);
    return false;
}
