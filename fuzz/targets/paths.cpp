// SPDX-License-Identifier: Apache-2.0

// Path data: compares the scanner and the interpreter with their plain transcription.

#include <string>
#include <vector>

#include "fuzz/support/FuzzBytes.h"
#include "fuzz/support/FuzzTarget.h"
#include "interpreters/svg/geometry/path_data.h"
#include "interpreters/svg/geometry/path_scanner.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "tests/interpreters/svg/geometry/naive_path.h"
#include "tests/support/model_sketch.h"
#include "tests/support/page_state.h"

namespace {

std::string Split(std::string_view data) {
    std::string result;
    PathScanner scanner(data);
    for (char letter = 0; scanner.NextCommand(letter);) {
        result += letter;
        for (std::string_view argument; scanner.NextArgument(argument);)
            result.append("[").append(argument).append("]");
    }
    return result;
}

const FuzzTarget kTarget("paths", [](std::string_view bytes) {
    FuzzBytes choices(bytes);
    const double height = choices.Flag() ? 100.0 : 0.0;
    PageState state(200.0, height, choices.Flag() ? 1 : 0);
    state.drawStyle = static_cast<int>(choices.Below(5));
    const std::string_view data = choices.GetRest();

    Require(Split(data) == naive::SplitPath(data));

    const ORVRef<ORVPrtGroupElt> expected(new ORVPrtGroupElt), actual(new ORVPrtGroupElt);
    const std::vector<double> vertices = naive::InterpretPath(state, data, *expected);
    PathDataInterpreter interpreter(state, *actual);
    interpreter.Interpret(data);
    Require(SketchOf(*actual) == SketchOf(*expected));
    Require(interpreter.GetVertices().size() == vertices.size());
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const double a = interpreter.GetVertices()[i], b = vertices[i];
        Require(a == b || (a != a && b != b));  // zeros may differ in sign
    }
});

}  // namespace
