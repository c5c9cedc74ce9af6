// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "library/check/findings.h"
#include "library/check/path_shape.h"
#include "platform/mathematics/geometry.h"

struct PropertyRow;
struct SvgDrawState;

/// A problem with a value.
struct ValueProblem {
    FindingCode code;
    std::string message;
};
using MaybeProblem = std::optional<ValueProblem>;

// Each of these checks parses a value with the interpreter's own parser and compares the result with the
// text. They return nothing for a correct or empty value.

/// A length, as for ParseLength.
MaybeProblem CheckLength(std::string_view value);
/// Whether a length has a physical unit, as opposed to screen pixels.
bool HasPhysicalUnit(std::string_view value);
/// A number or length. "text" uses only the first one where SVG allows a list.
MaybeProblem CheckTextPosition(std::string_view value);
/// Four numbers, as for ReadViewBox.
MaybeProblem CheckViewBox(std::string_view value);
/// As for ReadCoordinateNumbers.
MaybeProblem CheckPoints(std::string_view value);
/// As for ReadOpacityFactor.
MaybeProblem CheckOpacity(std::string_view value);
/// As for ApplyDashArray.
MaybeProblem CheckDashArray(std::string_view value);

/// Result of parsing path data.
struct PathFacts {
    std::size_t vertices = 0;  ///< as counted by the interpreter
    bool hasCurves = false;    ///< has Bezier curves or arcs
    bool hasArcs = false;      ///< has arcs, which are stroked if there is no fill, unless hidden
    bool hasRuns = false;      ///< has lines or Bezier curves, which are stroked if there is no fill
    PathShape shape;
};
/// As for PathDataInterpreter.
MaybeProblem CheckPathData(std::string_view value, PathFacts& facts);

/// Checks of values that are parsed in the context of a page. Owns a scratch page.
class ValueChecks {
public:
    ValueChecks();
    ~ValueChecks();
    ValueChecks(const ValueChecks&) = delete;
    ValueChecks& operator=(const ValueChecks&) = delete;

    /// As for ParseColour.
    MaybeProblem CheckColour(std::string_view value);
    /// As for ApplyTransformList.
    MaybeProblem CheckTransform(std::string_view value);
    /// The transformation that a transform list describes, as the interpreter reads it.
    ORVMathAffine2D ReadTransform(std::string_view value);
    /// Checks the value of a property that has an effect, except paints and font families.
    /// @param inStyle  whether it is in a style attribute; some properties are parsed differently there
    MaybeProblem CheckProperty(const PropertyRow& row, std::string_view value, bool inStyle);

private:
    struct Scratch;
    bool ChangesSomething(const PropertyRow& row, std::string_view value);

    std::unique_ptr<Scratch> scratch_;
    std::unordered_map<std::string, bool> known_;  // results by property and value
};
