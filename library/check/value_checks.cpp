// SPDX-License-Identifier: Apache-2.0
#include "library/check/value_checks.h"

#include <array>
#include <cmath>
#include <limits>
#include <new>
#include <vector>

#include "interpreters/svg/definitions/definitions.h"
#include "interpreters/svg/geometry/path_scanner.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/style/property_table.h"
#include "interpreters/svg/style/text_properties.h"
#include "interpreters/svg/values/colour.h"
#include "interpreters/svg/values/length.h"
#include "interpreters/svg/values/text_scan.h"
#include "interpreters/svg/values/transform_list.h"
#include "interpreters/svg/values/view_box.h"
#include "library/check/svg_grammar.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/model/ORVPrtViewBox.h"
#include "platform/system/ORVRef.h"
#include "platform/system/number_conversion.h"

namespace {

using enum FindingCode;

constexpr std::string_view kWhiteSpace = " \t\n\r\v\f";
constexpr std::string_view kSeparators = " ,";

ValueProblem Problem(FindingCode code, std::string message) { return {code, std::move(message)}; }

std::string Quote(std::string_view text) { return "'" + Excerpt(text) + "'"; }

// A page on which 1 % of neither side nor the diagonal equals 1.
const SvgDrawState& ProbePage() {
    static const SvgDrawState page = [] {
        SvgDrawState state;
        state.pageWidth = 7777.0;
        state.pageHeight = 5555.0;
        return state;
    }();
    return page;
}

bool IsWord(std::string_view text) {
    for (const char c : text)
        if (!((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'))) return false;
    return !text.empty();
}

// Whether the interpreter accepts `unit` as a unit.
bool IsUnit(std::string_view unit) {
    constexpr std::size_t kLongest = 8;
    if (unit.size() > kLongest || !(unit == "%" || IsWord(unit))) return false;
    double one = 0.0;
    if (ParseLength(ProbePage(), "1" + std::string(unit), one) != kRead || one == 1.0) return false;
    // "mmx" is also read as millimetres, but is not a unit.
    for (std::size_t i = 0; i < unit.size(); ++i) {
        double other = 0.0;
        const std::string shorter = "1" + std::string(unit).erase(i, 1);
        if (unit.size() > 1 && ParseLength(ProbePage(), shorter, other) == kRead && other == one)
            return false;
    }
    return true;
}

// Finds the text after the number at the start of `value`, with white space trimmed.
// @return false if there is no number
bool FindRest(std::string_view value, std::string_view& number, std::string_view& rest) {
    double ignored = 0.0;
    std::size_t length = 0;
    if (ORVConvertToDouble(value, ignored, &length) != kRead) return false;
    number = value.substr(0, length);
    rest = value.substr(length);
    const std::size_t last = rest.find_last_not_of(kWhiteSpace);
    const std::size_t first = rest.find_first_not_of(kWhiteSpace);
    rest = first == rest.npos ? std::string_view() : rest.substr(first, last - first + 1);
    return true;
}

// Checks that a token is a number with nothing after it, or with a unit where units are accepted.
MaybeProblem CheckToken(std::string_view token, bool takesUnits) {
    std::string_view number, rest;
    if (!FindRest(token, number, rest))
        return Problem(kBadLength,
                       Quote(token) + " is not a number: skipped, and the following ones move up");
    if (rest.empty() && IsSvgNumber(number)) return std::nullopt;
    if (rest.empty() || (takesUnits && (rest == "px" || IsUnit(rest))))
        return Problem(kBadLength, Quote(token) + " is not a number in SVG: other programs stop here");
    return Problem(kBadLength, Quote(token) + " is read as " + Excerpt(number) +
                                   ": separate numbers by spaces or commas" +
                                   (takesUnits ? "" : "; units are not read here"));
}

// Calls `visit` for every token of a list until it returns false.
template <class Visit>
void ForEachToken(std::string_view text, Visit visit) {
    for (std::size_t start = text.find_first_not_of(kSeparators); start != text.npos;
         start = text.find_first_not_of(kSeparators, start)) {
        const std::size_t end = std::min(text.find_first_of(kSeparators, start), text.size());
        if (!visit(text.substr(start, end - start))) return;
        start = end;
    }
}

// Whether a list has a comma before all numbers, or two with only blanks between them.
bool HasStrayComma(std::string_view list) {
    bool wasNumber = false;
    for (const char c : list) {
        if (c == ',' && !wasNumber) return true;
        if (c == ',')
            wasNumber = false;
        else if (kWhiteSpace.find(c) == kWhiteSpace.npos)
            wasNumber = true;
    }
    return false;
}

MaybeProblem WithCode(MaybeProblem problem, FindingCode code) {
    if (problem) problem->code = code;
    return problem;
}

std::size_t ArgumentsOf(char letter) {
    switch (letter | 0x20) {
        case 'h':
        case 'v': return 1;
        case 's':
        case 'q': return 4;
        case 'c': return 6;
        case 'a': return 7;
        case 'z': return 0;
        default: return 2;
    }
}

std::string At(std::size_t position) { return "at character " + std::to_string(position + 1) + ": "; }

// Checks the arguments of one command.
MaybeProblem CheckArguments(char letter, PathScanner& scanner, std::size_t& count) {
    MaybeProblem problem;
    const std::size_t start = scanner.GetPosition() - 1;
    std::string_view argument;
    for (count = 0; scanner.NextArgument(argument); ++count) {
        if (problem) continue;
        const bool isPlain = (letter | 0x20) == 'a' && count % 7 >= 2 && count % 7 <= 4;
        if (!IsPathNumber(argument)) problem = CheckToken(argument, !isPlain);
        if (problem) problem->message = At(scanner.GetPosition() - argument.size()) + problem->message;
    }
    if (problem) return WithCode(std::move(problem), kBadPathData);
    const std::size_t group = ArgumentsOf(letter);
    const std::string command(1, letter);
    if (group == 0 && count > 0)
        return Problem(kBadPathData, At(start) + "numbers after " + command + " are not read");
    if (group > 0 && (count == 0 || count % group != 0))
        return Problem(kBadPathData, At(start) + command + " takes numbers by " + std::to_string(group) +
                                         ", there are " + std::to_string(count) +
                                         (group == 7 ? "; put spaces between the flags of an arc" : ""));
    return std::nullopt;
}

}  // namespace

MaybeProblem CheckLength(std::string_view value) {
    double length = 0.0;
    const int status = ParseLength(ProbePage(), value, length);
    if (status == kEmpty) return std::nullopt;
    if (status != kRead) return Problem(kBadLength, "is not a length: treated as absent");
    std::string_view number, rest;
    if (!FindRest(value, number, rest)) return Problem(kBadLength, "a unit must follow its number");
    const std::size_t start = number.find_first_not_of(kWhiteSpace);
    if (start == number.npos || !IsSvgNumber(number.substr(start)))
        return Problem(kBadLength, "is not a number in SVG: other programs may not read it");
    if (rest.empty()) return std::nullopt;
    if (rest == "px" || rest == "PX" || IsUnit(rest)) {
        // With a blank in between, it is not a valid length.
        if (rest.data() == number.data() + number.size()) return std::nullopt;
        return Problem(kBadLength, "has a space before its unit: other programs do not read it");
    }
    if (IsWord(rest))
        return Problem(kUnknownUnit, Quote(rest) + " is not a unit: read as " + Excerpt(number));
    return Problem(kBadLength, Quote(rest) + " is not read: this counts as " + Excerpt(number));
}

bool HasPhysicalUnit(std::string_view value) {
    std::string_view number, rest;
    return FindRest(value, number, rest) && rest != "%" && IsUnit(rest);
}

MaybeProblem CheckTextPosition(std::string_view value) {
    std::string_view number, rest;
    const bool hasNumber = FindRest(value, number, rest);
    if (hasNumber && value.find_first_of(kSeparators, value.find(number) + number.size()) != value.npos &&
        !rest.empty() && rest != "px" && !IsUnit(rest))
        return Problem(kTextPositions, "of this list " + Excerpt(number) + " is read, for the whole text");
    return CheckLength(value);
}

MaybeProblem CheckViewBox(std::string_view value) {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    ORVPrtViewBox read{kNone, kNone, kNone, kNone};
    if (ReadViewBox(value, read) != kRead) return std::nullopt;

    std::vector<double> written;
    MaybeProblem problem;
    ForEachToken(value, [&](std::string_view token) {
        problem = CheckToken(token, false);
        double number = 0.0;
        if (ORVConvertToDouble(token, number) == kRead) written.push_back(number);
        return !problem && written.size() <= 4;
    });
    if (problem) return WithCode(std::move(problem), kBadViewBox);
    if (written.size() != 4) return Problem(kBadViewBox, "a view box is four numbers");
    const std::array got{read.minX, read.minY, read.width, read.height};
    for (std::size_t i = 0; i < got.size(); ++i)
        if (!(got[i] == written[i]))
            return Problem(kBadViewBox, value.find(',') != value.npos
                                            ? "commas do not separate its numbers: use spaces"
                                            : "its numbers are not read as written");
    return std::nullopt;
}

MaybeProblem CheckPoints(std::string_view value) {
    MaybeProblem problem;
    std::size_t count = 0;
    ForEachToken(value, [&](std::string_view token) {
        problem = CheckToken(token, true);
        if (problem) problem->message = "number " + std::to_string(count + 1) + ": " + problem->message;
        ++count;
        return !problem;
    });
    if (!problem && HasStrayComma(value))
        problem = Problem(kBadPoints, "has a comma without a number: other programs stop there");
    if (problem) return WithCode(std::move(problem), kBadPoints);
    if (count % 2 != 0) return Problem(kBadPoints, "has an odd number of numbers: the last one is dropped");
    return std::nullopt;
}

MaybeProblem CheckOpacity(std::string_view value) {
    float factor = 0.0F;
    if (value.empty() || value == "inherit") return std::nullopt;
    if (!ReadOpacityFactor(value, factor)) return Problem(kBadValue, "is not a number: no effect");
    std::string_view number, rest;
    if (FindRest(value, number, rest) && !rest.empty())
        return Problem(kOpacityRange, Quote(rest) + " is not read: this counts as " + Excerpt(number));
    if (!IsSvgNumber(number.substr(std::min(number.find_first_not_of(kWhiteSpace), number.size()))))
        return Problem(kBadValue, "is not a number in SVG: other programs may not read it");
    if (factor >= 0.0F && factor <= 1.0F) return std::nullopt;
    return Problem(kOpacityRange, "is not from 0 to 1: it wraps around");
}

MaybeProblem CheckDashArray(std::string_view value) {
    if (value.empty() || value == "none" || value == "inherit") return std::nullopt;
    constexpr std::size_t kMostDashes = 255;
    MaybeProblem problem;
    std::size_t count = 0;
    ForEachToken(value, [&](std::string_view token) {
        std::string_view number, rest;
        const bool isPixels = FindRest(token, number, rest) && rest == "px";
        if (!isPixels) problem = CheckToken(token, false);
        ++count;
        return !problem;
    });
    if (!problem && count > kMostDashes) problem = Problem(kBadLength, "has more than 255 dashes");
    return problem;
}

MaybeProblem CheckPathData(std::string_view value, PathFacts& facts) {
    PathScanner scanner(value);
    MaybeProblem problem;
    char letter = 0;
    std::size_t position = 0;
    for (bool isFirst = true; scanner.NextCommand(letter); isFirst = false) {
        const std::size_t start = scanner.GetPosition() - 1;
        const std::string_view skipped = value.substr(position, start - position);
        const std::size_t stray = skipped.find_first_not_of(" ,\t\n\r");
        if (!problem && stray != skipped.npos)
            problem =
                Problem(kBadPathData, At(position + stray) + Quote(skipped.substr(stray)) + " is not read");
        if (!problem && isFirst && (letter | 0x20) != 'm')
            problem =
                Problem(kBadPathData, "does not begin with M: it starts at the page's upper left corner");
        std::size_t count = 0;
        MaybeProblem ofCommand = CheckArguments(letter, scanner, count);
        if (!problem) problem = std::move(ofCommand);
        position = scanner.GetPosition();

        const std::size_t group = ArgumentsOf(letter);
        const char kind = static_cast<char>(letter | 0x20);
        facts.vertices += group == 0 ? 1 : count / group;
        facts.hasArcs |= kind == 'a' && count >= group;
        facts.hasCurves |= facts.hasArcs || kind == 'c' || kind == 's' || kind == 'q' || kind == 't';
        // The first pair of a move draws nothing.
        facts.hasRuns |= kind != 'a' && (group == 0 || count / group > (kind == 'm' ? 1U : 0U));
    }
    if (!problem && value.find_first_not_of(" ,;\t\n\r", position) != value.npos)
        problem = Problem(kBadPathData, At(position) + Quote(value.substr(position)) + " is not read");
    facts.shape = ReadPathShape(value);
    if (!problem && !facts.shape.isReadable) {
        const std::size_t end = facts.shape.readable;
        problem = Problem(kBadPathData, At(end) + "other programs stop at " + Quote(value.substr(end)));
    }
    return problem;
}

struct ValueChecks::Scratch {
    ORVRef<ORVPrtModel> model{new ORVPrtModel};
    ORVRef<ORVPrtImageElt> page{new ORVPrtImageElt};
    ORVRef<ORVPrtGroupElt> group{new ORVPrtGroupElt};
    SvgDefinitions definitions;
    SvgDrawState plain, other;  // two states that differ in every property

    Scratch() {
        // Created now: running out of memory later would look like an invalid colour.
        EnsureColourTable(*page);
        if (!page->GetColourTable()) throw std::bad_alloc();
        for (SvgDrawState* state : {&plain, &other}) {
            state->model = model.get();
            state->page = page.get();
            state->definitions = &definitions;
            state->pageWidth = ProbePage().pageWidth;
            state->pageHeight = ProbePage().pageHeight;
            state->yFlip = 0;
        }
        constexpr unsigned int kNoIndex = 1U << 31U;
        other.stroke.SetStrokeType(kLineUserDash);
        other.stroke.SetStrokeWidth(-1.0);
        other.stroke.SetStrokeCap(kCapRound);
        other.stroke.SetStrokeJoin(kJoinBevel);
        other.fill.SetFillRule(kFillEvenOdd);
        other.strokeCurrentColour = other.fillCurrentColour = kNoIndex;
        other.text.SetWeight(kWeightHeavy);
        other.text.SetHeight(-1.0);
        other.text.SetAnchor(kAnchorLast);
        other.text.SetWritingMode(kTopToBottom);
        other.text.SetExtraSpacing(-1.0);
    }
};

ValueChecks::ValueChecks() : scratch_(new Scratch) {}

ValueChecks::~ValueChecks() = default;

MaybeProblem ValueChecks::CheckColour(std::string_view value) {
    if (value.empty()) return std::nullopt;
    unsigned int index = 0;
    if (ParseColour(scratch_->plain, value, index) != kRead)
        return Problem(kBadColour, "is not a colour here: the colour does not change");
    if (!IsSvgColour(value)) return Problem(kBadColour, "is read as a colour, but is not one in SVG");
    if (value.find('(') == value.npos) return std::nullopt;
    // Components out of range are truncated, not clamped.
    const bool isPercentage = value.find('%') != value.npos;
    MaybeProblem problem;
    ForEachToken(value.substr(value.find('(') + 1), [&](std::string_view token) {
        double number = 0.0;
        std::size_t length = 0;
        if (ORVConvertToDouble(token, number, &length) != kRead) return true;
        if (number < 0.0 || number > (isPercentage ? 100.0 : 255.0))
            problem =
                Problem(kBadColour, Excerpt(token.substr(0, length)) + " is out of range and wraps around");
        else if (number != std::floor(number))
            problem =
                Problem(kBadColour, "of " + Excerpt(token.substr(0, length)) + " the fraction is not read");
        return !problem;
    });
    return problem;
}

ORVMathAffine2D ValueChecks::ReadTransform(std::string_view value) {
    if (value.empty()) return {};
    scratch_->group->SetTransformAttributes({});
    ApplyTransformList(scratch_->plain, value, scratch_->group.get());
    return scratch_->group->GetTransformAttributes().GetAffine();
}

MaybeProblem ValueChecks::CheckTransform(std::string_view value) {
    if (value.empty()) return std::nullopt;
    const auto operationsOf = [this](std::string_view text) {
        scratch_->group->SetTransformAttributes({});
        ApplyTransformList(scratch_->plain, text, scratch_->group.get());
        return scratch_->group->GetTransformAttributes();
    };
    std::vector<ORVPrtTransformOperation> expected;
    std::string_view rest = value;
    while (true) {
        const std::size_t start = rest.find_first_not_of(" ,\t\n\r");
        if (start == rest.npos) break;
        rest.remove_prefix(start);
        const std::size_t open = rest.find('('), close = rest.find(')');
        if (open == rest.npos || close == rest.npos || close < open)
            return Problem(kBadTransform, Quote(rest) + " is not read");
        const std::string_view item = rest.substr(0, close + 1), name = rest.substr(0, open);
        rest.remove_prefix(close + 1);
        const ORVPrtTransformAttributes transform = operationsOf(item);
        if (transform.IsEmpty())
            return Problem(kBadTransform, name.ends_with(' ')
                                              ? "no space is allowed between a name and its parenthesis: " +
                                                    Quote(item) + " is not read"
                                              : Quote(item) + " is not read");
        expected.insert(expected.end(), transform.GetOperations().begin(), transform.GetOperations().end());

        std::size_t count = 0;
        MaybeProblem problem;
        ForEachToken(item.substr(open + 1, close - open - 1), [&](std::string_view token) {
            ++count;
            problem = CheckToken(token, false);
            return !problem;
        });
        if (problem) return WithCode(std::move(problem), kBadTransform);
        if (name == "rotate" && count == 2)
            return Problem(kBadTransform, "a rotation with two numbers ignores its centre");
        if (name == "matrix" && count != 6) return Problem(kBadTransform, "a matrix takes six numbers");
    }
    if (operationsOf(value).GetOperations() != expected)
        return Problem(kBadTransform,
                       "is not read completely: write its names as in SVG, with nothing between them");
    if (!IsSvgTransformList(value))
        return Problem(kBadTransform,
                       "is read, but is not a list of transforms in SVG: other programs ignore it");
    return std::nullopt;
}

// A valid value changes at least one of two states that differ.
bool ValueChecks::ChangesSomething(const PropertyRow& row, std::string_view value) {
    for (const SvgDrawState* state : {&scratch_->plain, &scratch_->other}) {
        SvgDrawState changed = *state;
        StyleStep step{changed};
        constexpr float kUnset = -77.0F;
        step.strokeFactor = step.fillFactor = kUnset;
        row.apply(step, value);
        if (step.strokeFactor != kUnset || step.fillFactor != kUnset ||
            step.mentions.fill != PaintMention::kNone || step.mentions.stroke != PaintMention::kNone ||
            !(changed.stroke == state->stroke) || !(changed.fill == state->fill) ||
            !(changed.text == state->text) || changed.fillCurrentColour != state->fillCurrentColour ||
            changed.pageWidth != state->pageWidth)
            return true;
    }
    return false;
}

MaybeProblem ValueChecks::CheckProperty(const PropertyRow& row, std::string_view value, bool inStyle) {
    if (value.empty() || value == "inherit") return std::nullopt;
    if (row.name == "stroke-width") return CheckLength(value);
    if (row.name == "stroke-dasharray") return CheckDashArray(value);
    if (row.name.ends_with("opacity")) return CheckOpacity(value);
    if (row.name == "color") return CheckColour(value);
    if (row.name == "letter-spacing") {
        double length = 0.0;
        const bool isNone =
            value == "normal" || (ParseLength(ProbePage(), value, length) == kRead && length == 0.0);
        if (isNone || IsLetterSpacingKeyword(value)) return std::nullopt;
        if (inStyle)
            return Problem(
                kLetterSpacingInStyle,
                "in style it resets the spacing, and replaces the width that percentages refer to");
        return CheckLength(value);
    }
    if (row.name == "font-size" && value.find('%') != value.npos)
        return Problem(kFontSizePercentage, "multiplies the size by this number, not by a hundredth of it");
    if (row.name == "font-weight" && (value == "bolder" || value == "lighter"))
        return Problem(kFontWeightReversed,
                       value == "bolder" ? "makes the text lighter" : "makes the text bolder");

    constexpr std::size_t kLongestKept = 64, kMostKept = 4096;
    bool changes = false;
    if (value.size() > kLongestKept) {
        changes = ChangesSomething(row, value);
    } else {
        std::string key(row.name);
        key.append(1, ':').append(value);
        const auto found = known_.find(key);
        if (found != known_.end()) {
            changes = found->second;
        } else {
            changes = ChangesSomething(row, value);
            if (known_.size() < kMostKept) known_.emplace(std::move(key), changes);
        }
    }
    if (!changes) return Problem(kBadValue, "is not known here: no effect");
    if (row.name != "font-size") return std::nullopt;
    double size = 0.0;
    if (ParseLength(ProbePage(), value, size) == kRead && size < 0.0)
        return Problem(kShapeSize, "is negative: the text is not drawn; other programs ignore the size");
    return CheckLength(value);
}
