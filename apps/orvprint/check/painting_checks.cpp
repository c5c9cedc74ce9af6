#include "apps/orvprint/check/painting_checks.h"

#include <cmath>

#include "plugin/structure/SvgDrawState.h"
#include "plugin/values/point_list.h"

namespace {

using enum FindingCode;

bool Fills(int drawStyle) { return drawStyle == kDrawFill || drawStyle == kDrawFillAndStroke; }
bool Strokes(int drawStyle) { return drawStyle == kDrawStroke || drawStyle == kDrawFillAndStroke; }

// What the interpreter makes of a shape's paint.
struct Painting {
    bool isOpenLine = false;  // a line or polyline, which are stroked whatever is said
    bool isBarePath = false;  // a path without an inside: what runs there are is stroked all the same
    bool hasCurves = false;   // on that path
    bool fills = false;
    bool strokes = false;

    bool IsLine() const { return isOpenLine || isBarePath; }
};

Painting PaintingOf(ElementName name, const PathFacts& path, int drawStyle) {
    Painting painting;
    painting.isOpenLine = name == ElementName::kLine || name == ElementName::kPolyline;
    // A path of two points has lost its inside by the time it is painted. Without one, its lines and
    // Beziers stand for themselves; so do its arcs, but these know when they are hidden.
    const bool hasNoInside = path.vertices <= 2;
    painting.isBarePath = (path.hasRuns && (hasNoInside || !Fills(drawStyle))) ||
                          (path.hasArcs && hasNoInside && drawStyle != kDrawNothing);
    painting.hasCurves = path.hasCurves;
    painting.fills = !painting.IsLine() && Fills(drawStyle);
    painting.strokes = painting.IsLine() || Strokes(drawStyle);
    return painting;
}

void AddToDefinition(DefinitionFacts& definition, const Painting& painting, ElementName name,
                     const SvgDrawState& state) {
    DrawnSets sets;
    if (painting.strokes) sets.stroke = state.stroke;
    if (painting.fills) sets.fill = state.fill;
    if (name == ElementName::kText) sets.text = state.text;
    definition.Add(std::move(sets));
}

// Once for each element that says "visible".
void NotePaintedVisible(CheckContext& check) {
    const NumberedElement& shownBy = check.inForce.visibility.shownBy;
    if (check.shown.insert(shownBy.node).second)
        check.findings.Note(kPaintedVisible, shownBy, "visibility", "visible",
                            "gives what it shows a fill and a stroke that nothing else gives it");
}

// Whether the points of a polyline do not all lie on one straight line.
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

// What is painted and was not meant to be, and what was meant to be filled and is not.
void CheckLine(CheckContext& check, const NumberedElement& element, const Painting& painting, int meant,
               const SvgDrawState& state) {
    const ORVXmlNode& node = *element.node;
    if (!Strokes(meant) && (painting.isOpenLine || !Fills(meant)))
        check.findings.Note(kAlwaysStroked, element, {}, {}, "has no stroke, and is stroked all the same");
    if (!Fills(meant)) return;
    if (node.id == ElementName::kPolyline &&
        HasInside(state, node.Value(AttributeName::kPoints), check.numbers))
        check.findings.Note(kPolylineNotFilled, element, {}, {},
                            "its fill is not printed: say fill='none', or make it a polygon");
    if (painting.isBarePath && (painting.hasCurves || !Strokes(meant)))
        check.findings.Note(kPathNotFilled, element, "d", node.Value(AttributeName::kD),
                            Strokes(meant) ? "its fill is not printed: divide its curve"
                                           : "its fill is not printed, its outline is");
}

}  // namespace

void CheckPainting(CheckContext& check, const NumberedElement& element, const SvgDrawState& state) {
    const ORVXmlNode& node = *element.node;
    PathFacts path;
    if (node.id == ElementName::kPath)
        if (const MaybeProblem problem = CheckPathData(node.Value(AttributeName::kD), path))
            check.findings.Note(element, "d", node.Value(AttributeName::kD), *problem);

    const Painting painting = PaintingOf(node.id, path, state.drawStyle);
    if (check.openDefinition) AddToDefinition(*check.openDefinition, painting, node.id, state);

    const Visibility& visibility = check.inForce.visibility;
    if ((visibility.isRemoved || visibility.isHidden) && (painting.strokes || painting.fills))
        return check.findings.Note(
            kHiddenButPrinted, element, {}, {},
            painting.IsLine() ? "lines are stroked, hidden or not" : "paint of its own turns it on again");

    const int meant = visibility.GetMeantStyle(state.drawStyle);
    if (painting.IsLine())
        CheckLine(check, element, painting, meant, state);
    else if ((painting.strokes && !Strokes(meant)) || (painting.fills && !Fills(meant)))
        NotePaintedVisible(check);
}
