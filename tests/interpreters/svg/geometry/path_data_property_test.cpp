// SPDX-License-Identifier: Apache-2.0

// Compares the path parsers with their reference implementation.

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "interpreters/svg/geometry/path_data.h"
#include "interpreters/svg/geometry/path_scanner.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/system/ORVRef.h"
#include "tests/interpreters/svg/geometry/naive_path.h"
#include "tests/support/model_sketch.h"

namespace {

// ---- generated texts

// Random choices from a list of bytes, so that a failing text can be shrunk with it. Once used up, all
// choices are 0.
class Choices {
public:
    explicit Choices(const std::vector<std::uint8_t>& bytes) : bytes_(bytes) {}

    std::size_t Below(std::size_t count) {
        return position_ < bytes_.size() ? bytes_[position_++] % count : 0;
    }
    bool OneIn(std::size_t count) { return Below(count) == count - 1; }
    bool AreLeft() const { return position_ < bytes_.size(); }

private:
    const std::vector<std::uint8_t>& bytes_;
    std::size_t position_ = 0;
};

// A piece of path data: commands, valid and invalid numbers, separators, and every character the tokeniser
// checks for.
std::string_view Piece(Choices& choices) {
    static constexpr std::array<std::string_view, 60> kPieces{
        " ",  "M",   "m", "L",  "l",     "Z",    "z",    "C",        "c",   "S",    "s",   "H",
        "h",  "V",   "v", "Q",  "q",     "T",    "t",    "A",        "a",   " ",    " ",   " ",
        ",",  "-",   "e", "ee", "eee",   "e-",   "E-",   ";",        "\t",  "+",    ".",   "%",
        "i",  "in",  "x", "\n", "1e1",   "1E1",  "1e-1", "\xC3\xA4", "50%", "2in",  "-5%", ".5",
        "5.", "-.5", "0", "1",  "10 10", "20,5", "3-4",  "7 8 ",     "0 0", "5 5 ", "1 0", "-3"};
    return kPieces[choices.Below(kPieces.size())];
}

// A command with about the right number of arguments, sometimes one too many or too few, or an invalid one.
std::string PlausibleCommand(Choices& choices) {
    static constexpr std::string_view kLetters = "MmLlHhVvCcSsQqTtAaZz";
    static constexpr std::array<std::size_t, 20> kCounts{2, 2, 2, 2, 1, 1, 1, 1, 6, 6,
                                                         4, 4, 4, 4, 2, 2, 7, 7, 0, 0};
    const std::size_t which = choices.Below(kLetters.size());
    std::string text(1, kLetters[which]);
    std::size_t count = kCounts[which] * (1 + choices.Below(3));
    if (choices.OneIn(4)) count += choices.Below(2);
    if (choices.OneIn(8) && count > 0) --count;
    for (std::size_t i = 0; i < count; ++i) {
        text += choices.OneIn(3) ? "," : " ";
        switch (choices.Below(12)) {
            case 11: text += Piece(choices); break;
            case 10: text += std::to_string(choices.Below(100)) + "%"; break;
            case 9: text += "1"; break;
            case 8: text += "0"; break;
            default: text += std::to_string(static_cast<int>(choices.Below(200)) - 60);
        }
    }
    return text;
}

std::string Soup(Choices& choices) {
    std::string text;
    const bool plausible = choices.OneIn(2);
    while (choices.AreLeft()) text += plausible ? PlausibleCommand(choices) : std::string(Piece(choices));
    return text;
}

// Number of cases: by default enough for a few seconds, or the value of the environment variable
// ORV_PATH_CASES.
int CaseCount() {
    const char* value = std::getenv("ORV_PATH_CASES");
    const int count = value ? std::atoi(value) : 0;
    return count > 0 ? count : 20'000;
}

template <class Property>
void CheckMany(Property property, int cases = CaseCount()) {
    rc::detail::TestParams parameters = rc::detail::configuration().testParams;
    parameters.maxSuccess = cases;
    const rc::detail::TestResult result = rc::detail::checkProperty(
        rc::detail::toProperty([&property] {
            property(*rc::gen::resize(150, rc::gen::arbitrary<std::vector<std::uint8_t>>()));
        }),
        rc::detail::TestMetadata(), parameters);
    if (result.is<rc::detail::SuccessResult>()) return;
    std::ostringstream report;
    rc::detail::printResultMessage(result, report);
    FAIL() << report.str();
}

TEST(PathDataProperty, ScannerSplitsLikeTheTranscription) {
    CheckMany([](const std::vector<std::uint8_t>& bytes) {
        Choices choices(bytes);
        const std::string data = Soup(choices);
        RC_LOG() << "data: " << data << "\n";
        std::string actual;
        PathScanner scanner(data);
        char letter = 0;
        while (scanner.NextCommand(letter)) {
            actual += letter;
            std::string_view argument;
            while (scanner.NextArgument(argument)) actual.append("[").append(argument).append("]");
        }
        RC_ASSERT(actual == naive::SplitPath(data));
    });
}

// Many straight lines, with and without letters in between, and occasionally something else.
std::string LongLines(Choices& choices) {
    std::string text = "M5 5";
    const std::size_t count = choices.Below(3) * 32 + choices.Below(4);
    const bool repeatsLetter = choices.OneIn(2), isPlain = choices.OneIn(2);
    text += 'L';
    for (std::size_t i = 0; i < count; ++i) {
        if (repeatsLetter && i > 0) text += choices.OneIn(5) ? " l" : "L";
        if (!isPlain && choices.OneIn(20)) text += Piece(choices);
        text += std::to_string(i * 7 % 90) + (choices.OneIn(2) ? "," : ".5-") + std::to_string(i % 50) + " ";
    }
    while (choices.AreLeft()) text += PlausibleCommand(choices);
    return text;
}

// Expects equal results of the interpreter and the reference implementation for the texts that `make`
// produces.
void ExpectDrawnLikeTheTranscription(std::string (*make)(Choices&), int cases) {
    const ORVRef<ORVPrtModel> model(new ORVPrtModel);
    CheckMany(
        [&](const std::vector<std::uint8_t>& bytes) {
            Choices choices(bytes);
            SvgDrawState state;
            state.model = model.get();
            state.pageWidth = 200.0;
            state.pageHeight = choices.OneIn(4) ? 0.0 : 100.0;
            state.yFlip = choices.OneIn(4) ? 0 : 1;
            state.drawStyle = static_cast<int>(choices.Below(5));
            const std::string data = make(choices);
            RC_LOG() << "data: " << data << "\n";

            const ORVRef<ORVPrtGroupElt> expected(new ORVPrtGroupElt), actual(new ORVPrtGroupElt);
            const std::vector<double> vertices = naive::InterpretPath(state, data, *expected);
            PathDataInterpreter interpreter(state, *actual);
            interpreter.Interpret(data);
            RC_ASSERT(SketchOf(*actual) == SketchOf(*expected));
            RC_ASSERT(interpreter.GetVertices().size() == vertices.size());
            for (std::size_t i = 0; i < vertices.size(); ++i) {
                const double a = interpreter.GetVertices()[i], b = vertices[i];
                RC_ASSERT(a == b || (a != a && b != b));
            }
        },
        cases);
}

TEST(PathDataProperty, InterpreterDrawsLikeTheTranscription) {
    ExpectDrawnLikeTheTranscription(Soup, CaseCount());
}

TEST(PathDataProperty, LongLinesAreDrawnLikeTheTranscription) {
    ExpectDrawnLikeTheTranscription(LongLines, CaseCount() / 10);
}

}  // namespace
