// SPDX-License-Identifier: Apache-2.0
#include "library/check/painting_checks.h"

#include <cmath>
#include <cstdio>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/values/point_list.h"
#include "library/check/clip_checks.h"
#include "library/check/element_kinds.h"
#include "library/check/shape_checks.h"
#include "library/check/unit_checks.h"

namespace {

using enum FindingCode;

// How the interpreter paints a shape.
struct Painting {
    bool isOpenLine = false;  // a line or polyline, which is always stroked
    bool isBarePath = false;  // a path without interior: its lines and curves are stroked regardless
    bool hasCurves = false;   // in that path
    bool fills = false;
    bool strokes = false;

    bool IsLine() const { return isOpenLine || isBarePath; }
};

Painting PaintingOf(ElementName name, const PathFacts& path, int drawStyle) {
    Painting painting;
    painting.isOpenLine = name == ElementName::kLine || name == ElementName::kPolyline;
    // A path of two points has no interior when it is painted. Its lines, Bezier curves and arcs are then
    // separate primitives, of which only the arcs respect being hidden.
    const bool hasNoInside = path.vertices <= 2;
    painting.isBarePath = (path.hasRuns && (hasNoInside || !ORVFills(drawStyle))) ||
                          (path.hasArcs && hasNoInside && drawStyle != kDrawNothing);
    painting.hasCurves = path.hasCurves;
    painting.fills = !painting.IsLine() && ORVFills(drawStyle);
    painting.strokes = painting.IsLine() || ORVStrokes(drawStyle);
    return painting;
}

void AddToDefinition(CheckContext& check, const Painting& painting, ElementName name,
                     const SvgDrawState& state) {
    const MeantStyle& meant = check.inForce.meant;
    DrawnSets sets;
    sets.fills = painting.fills;
    sets.strokes = painting.strokes;
    sets.isText = name == ElementName::kText;
    sets.isLine = painting.IsLine();
    sets.isCurrent = (meant.fillIsCurrent && painting.fills) || (meant.strokeIsCurrent && painting.strokes);
    sets.said = meant.said;
    if (painting.strokes) sets.stroke = state.stroke;
    if (painting.fills) sets.fill = state.fill;
    if (sets.isText) sets.text = state.text;
    check.openDefinition->Add(std::move(sets));
}

std::string Percent(double opacity) {
    char text[32];
    std::snprintf(text, sizeof text, "%.0f %%", opacity * 100.0);
    return text;
}

// Reports a printed opacity that differs from the intended one by more than rounding.
void CompareOpacity(CheckContext& check, const NumberedElement& element, const char* part, double printed,
                    double meant) {
    if (std::abs(printed - meant) > 0.02)
        check.findings.Note(kOpacityCombined, element, {}, {},
                            std::string("its ") + part + " is printed " + Percent(printed) + " opaque, but " +
                                Percent(meant) + " in SVG");
}

// Inherited units take effect where the length is used. Differences in thin lines are invisible.
void CheckUnitsInForce(CheckContext& check, const NumberedElement& element, const Painting& painting,
                       const SvgDrawState& state) {
    constexpr double kThin = 2.0;
    const MeantStyle& meant = check.inForce.meant;
    if (painting.strokes && state.stroke.GetStrokeWidth() > kThin)
        CheckUnit(check, element, "stroke-width", meant.widthHasUnit ? "1pt" : "1");
    if (element.node->id == ElementName::kText)
        CheckUnit(check, element, "font-size", meant.sizeHasUnit ? "1pt" : "1");
}

// Once per element that specifies "visible".
void NotePaintedVisible(CheckContext& check) {
    const NumberedElement& shownBy = check.inForce.visibility.shownBy;
    if (check.shown.insert(shownBy.node).second)
        check.findings.Note(kPaintedVisible, shownBy, "visibility", "visible",
                            "adds a fill and a stroke that its content does not have otherwise");
}

// Whether the points of a polyline are not all on one straight line.
bool HasInside(const SvgDrawState& state, std::string_view points, std::vector<double>& numbers) {
    ReadCoordinateNumbers(state, points, numbers);
    if (numbers.size() < 6) return false;
    double dx = 0.0, dy = 0.0;
    for (std::size_t i = 2; i + 1 < numbers.size(); i += 2) {
        const double x = numbers[i] - numbers[0], y = numbers[i + 1] - numbers[1];
        if (dx == 0.0 && dy == 0.0) {
            dx = x;
            dy = y;
        } else if (std::abs(dx * y - dy * x) > 1e-9 * (std::abs(dx * x) + std::abs(dy * y))) {
            return true;
        }
    }
    return false;
}

// Reports lines that are painted unintentionally, and shapes that are not filled as intended.
void CheckLine(CheckContext& check, const NumberedElement& element, const Painting& painting, int meant,
               const SvgDrawState& state) {
    const ORVXmlNode& node = *element.node;
    if (!ORVStrokes(meant) && (painting.isOpenLine || !ORVFills(meant)))
        check.findings.Note(kAlwaysStroked, element, {}, {}, "has no stroke, but is stroked");
    if (!ORVFills(meant)) return;
    if (node.id == ElementName::kPolyline &&
        HasInside(state, node.Value(AttributeName::kPoints), check.numbers))
        check.findings.Note(kPolylineNotFilled, element, {}, {},
                            "its fill is not printed: use fill='none', or a polygon");
    if (painting.isBarePath && (painting.hasCurves || !ORVStrokes(meant)))
        check.findings.Note(kPathNotFilled, element, "d", node.Value(AttributeName::kD),
                            ORVStrokes(meant) ? "its fill is not printed: split its curve in two"
                                              : "its fill is not printed, but its outline is");
}

}  // namespace

void CheckMeantPaint(CheckContext& check, const NumberedElement& element, PaintedParts parts,
                     const SvgDrawState& state) {
    const MeantStyle& meant = check.inForce.meant;
    const bool isOtherFill =
        parts.fills && meant.fillIsCurrent && state.fill.GetFillColourIndex() != state.fillCurrentColour;
    const bool isOtherStroke = parts.strokes && meant.strokeIsCurrent &&
                               state.stroke.GetStrokeColourIndex() != state.strokeCurrentColour;
    if (isOtherFill || isOtherStroke)
        check.findings.Note(kCurrentColour, element, {}, {}, "is painted in the color inherited before");
    if (parts.fills && state.fill.GetFillStyle() == kFillPattern && !meant.fillIsReference)
        check.findings.Note(kPatternTile, element, {}, {}, "keeps the inherited pattern");
    if (meant.isOpacityTold) return;
    constexpr double kOpaque = 255.0;
    if (parts.fills)
        CompareOpacity(check, element, "fill", state.fill.GetFillColourTransparency() / kOpaque,
                       meant.opacity * meant.fillOpacity);
    if (parts.strokes)
        CompareOpacity(check, element, "stroke", state.stroke.GetStrokeColourTransparency() / kOpaque,
                       meant.opacity * meant.strokeOpacity);
    if (parts.fills && parts.strokes && meant.opacity < 1.0 && !meant.isBlendTold)
        check.findings.Note(kGroupOpacity, element, {}, {}, "its fill shows through its stroke");
}

void CheckPainting(CheckContext& check, const NumberedElement& element, const SvgDrawState& state) {
    const ORVXmlNode& node = *element.node;
    PathFacts path;
    if (node.id == ElementName::kPath)
        if (const MaybeProblem problem = CheckPathData(node.Value(AttributeName::kD), path))
            check.findings.Note(element, "d", node.Value(AttributeName::kD), *problem);

    const Painting painting = PaintingOf(node.id, path, state.drawStyle);
    if (check.openDefinition) AddToDefinition(check, painting, node.id, state);
    if (painting.fills || painting.strokes) {
        NoteDrawn(check, element, CheckShape(check, element, state, path.shape, painting.strokes));
        if (node.id == ElementName::kPath || HasVertices(node.id)) CheckUnit(check, element, {}, "1");
        CheckUnitsInForce(check, element, painting, state);
        if (!check.openDefinition) CheckMeantPaint(check, element, {painting.fills, painting.strokes}, state);
    }

    const Visibility& visibility = check.inForce.visibility;
    if ((visibility.isRemoved || visibility.isHidden) && (painting.strokes || painting.fills))
        return check.findings.Note(kHiddenButPrinted, element, {}, {},
                                   painting.IsLine() ? "lines are stroked even if they are hidden"
                                                     : "its own paint makes it visible again");

    const int meant = visibility.GetMeantStyle(state.drawStyle);
    if (painting.IsLine())
        CheckLine(check, element, painting, meant, state);
    else if ((painting.strokes && !ORVStrokes(meant)) || (painting.fills && !ORVFills(meant)))
        NotePaintedVisible(check);
}
