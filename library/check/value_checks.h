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

/// What is wrong with a value.
struct ValueProblem {
    FindingCode code;
    std::string message;
};
using MaybeProblem = std::optional<ValueProblem>;

// Each of these hands a value to the interpreter's own reader and compares what it read with what is
// written. Nothing wrong, and an empty value, give nothing.

/// A length, as for ParseLength.
MaybeProblem CheckLength(std::string_view value);
/// Whether a length has a unit whose size is known on paper, which is not that of a screen's pixels.
bool HasPhysicalUnit(std::string_view value);
/// A number or length of which a "text" takes the first, where SVG allows a list.
MaybeProblem CheckTextPosition(std::string_view value);
/// Four numbers, as for ReadViewBox.
MaybeProblem CheckViewBox(std::string_view value);
/// As for ReadCoordinateNumbers.
MaybeProblem CheckPoints(std::string_view value);
/// As for ReadOpacityFactor.
MaybeProblem CheckOpacity(std::string_view value);
/// As for ApplyDashArray.
MaybeProblem CheckDashArray(std::string_view value);

/// What path data come to.
struct PathFacts {
    std::size_t vertices = 0;  ///< as the interpreter counts them
    bool hasCurves = false;    ///< Beziers or arcs
    bool hasArcs = false;      ///< stroked where nothing fills, unless hidden
    bool hasRuns = false;      ///< lines or Beziers, which are stroked where nothing fills
    PathShape shape;
};
/// As for PathDataInterpreter.
MaybeProblem CheckPathData(std::string_view value, PathFacts& facts);

/// Checks of values that need a page to be read on. Holds one of its own.
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
    /// The map that a list of transforms makes, as the interpreter reads it.
    ORVMathAffine2D ReadTransform(std::string_view value);
    /// A value of a property that has an effect, other than paints and font families.
    /// @param inStyle  whether it stands in a style attribute; some properties are read differently there
    MaybeProblem CheckProperty(const PropertyRow& row, std::string_view value, bool inStyle);

private:
    struct Scratch;
    bool ChangesSomething(const PropertyRow& row, std::string_view value);

    std::unique_ptr<Scratch> scratch_;
    std::unordered_map<std::string, bool> known_;  // answers by property and value
};
