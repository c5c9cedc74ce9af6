#include "plugin/values/point_list.h"

#include "plugin/structure/SvgDrawState.h"
#include "plugin/structure/statuses.h"
#include "plugin/values/length.h"

namespace {

constexpr std::string_view kSeparators = " ,";

// Moves `position` behind the next token, and the one separator that ends it.
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

}  // namespace

void ReadCoordinateNumbers(const SvgDrawState& state, std::string_view value, std::vector<double>& numbers) {
    numbers.clear();
    std::size_t position = 0;
    while (position < value.size()) {
        bool endsText = false;
        std::string_view token = NextToken(value, position, endsText);
        double number = 0.0;
        if (!endsText) {  // only a token with a blank behind it is an x
            if (ParseHorizontalLength(state, token, number) == kRead) numbers.push_back(number);
            token = NextToken(value, position, endsText);
        }
        if (ParseVerticalCoordinate(state, token, number) == kRead) numbers.push_back(number);
    }
}
