// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/paint/basic_shapes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "interpreters/svg2/tree/shapes.h"
#include "interpreters/svg2/values/path_data.h"
#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

struct ShapeArguments {
    Scanner scanner;
    const UnitSizes& sizes;
    Rectangle box;

    bool TakeLengthOf(double base, double& value) {
        scanner.SkipSpace();
        Length length;
        if (!TakeLength(scanner, sizes, length)) return false;
        value = length.Resolve(base);
        return true;
    }
    double Diagonal() const { return std::sqrt((box.width * box.width + box.height * box.height) / 2.0); }
};

bool ReadBox(std::string_view word, ShapeBox& box) {
    if (word == "fill-box" || word == "content-box" || word == "padding-box")
        box = ShapeBox::kFill;
    else if (word == "stroke-box" || word == "border-box" || word == "margin-box")
        box = ShapeBox::kStroke;
    else if (word == "view-box")
        box = ShapeBox::kView;
    else
        return false;
    return true;
}

/// Reads "at x y" with lengths or keywords; the centre by default.
bool TakePosition(ShapeArguments& arguments, ORVMathPoint2D& centre) {
    Scanner& scanner = arguments.scanner;
    const Rectangle& box = arguments.box;
    centre = {box.x + box.width / 2.0, box.y + box.height / 2.0};
    scanner.SkipSpace();
    if (scanner.AtEnd()) return true;
    if (scanner.TakeName() != "at") return false;
    for (int i = 0; i < 2; ++i) {
        double& part = i == 0 ? centre.x : centre.y;
        const double origin = i == 0 ? box.x : box.y, size = i == 0 ? box.width : box.height;
        double value = 0.0;
        if (arguments.TakeLengthOf(size, value)) {
            part = origin + value;
            continue;
        }
        const std::string_view word = scanner.TakeName();
        if (word == "left")
            centre.x = box.x;
        else if (word == "right")
            centre.x = box.x + box.width;
        else if (word == "top")
            centre.y = box.y;
        else if (word == "bottom")
            centre.y = box.y + box.height;
        else if (word != "center")
            return i == 1 && word.empty();
    }
    scanner.SkipSpace();
    return scanner.AtEnd();
}

bool TakeRadius(ShapeArguments& arguments, double base, double least, double greatest, double& radius) {
    if (arguments.TakeLengthOf(base, radius)) return radius >= 0.0;
    const std::string_view word = arguments.scanner.TakeName();
    radius = word == "farthest-side" ? greatest : least;
    return word == "farthest-side" || word == "closest-side";
}

/// Where the word "at" is, which begins a position; npos if it is missing.
std::size_t FindAt(std::string_view text) {
    for (std::size_t at = text.find("at"); at != std::string_view::npos; at = text.find("at", at + 1)) {
        const bool endsWord = at + 2 == text.size() || IsSpace(text[at + 2]);
        if (endsWord && (at == 0 || IsSpace(text[at - 1]) || text[at - 1] == ')')) return at;
    }
    return std::string_view::npos;
}

bool AddRound(ShapeArguments arguments, bool isCircle, ORVPrintPath& path) {
    // Radii may depend on the position that follows them, so the position is read first.
    const Rectangle& box = arguments.box;
    ShapeArguments ahead = arguments;
    const std::size_t at = FindAt(arguments.scanner.Rest());
    ORVMathPoint2D centre;
    if (at != std::string_view::npos)
        ahead.scanner.Advance(at);
    else
        ahead.scanner.Advance(arguments.scanner.Rest().size());
    if (!TakePosition(ahead, centre)) return false;
    const double left = std::fabs(centre.x - box.x), right = std::fabs(box.x + box.width - centre.x);
    const double top = std::fabs(centre.y - box.y), bottom = std::fabs(box.y + box.height - centre.y);
    double rx = 0.0, ry = 0.0;
    arguments.scanner.SkipSpace();
    if (arguments.scanner.AtEnd() || FindAt(arguments.scanner.Rest()) == 0) {
        // closest-side, the default.
        rx = std::min(left, right);
        ry = std::min(top, bottom);
        if (isCircle) rx = ry = std::min(rx, ry);
    } else if (isCircle) {
        if (!TakeRadius(arguments, arguments.Diagonal(), std::min({left, right, top, bottom}),
                        std::max({left, right, top, bottom}), rx))
            return false;
        ry = rx;
    } else if (!TakeRadius(arguments, box.width, std::min(left, right), std::max(left, right), rx) ||
               !TakeRadius(arguments, box.height, std::min(top, bottom), std::max(top, bottom), ry)) {
        return false;
    }
    if (rx > 0.0 && ry > 0.0) AddEllipse(path, centre, rx, ry);
    return true;
}

/// Reads up to four values like those of margins: top, right, bottom and left, or corners clockwise from the
/// top left.
/// @param bases  reference lengths of percentages, for values of even and odd index
bool TakeFour(ShapeArguments& arguments, const std::array<double, 2>& bases, std::array<double, 4>& values) {
    std::size_t count = 0;
    for (; count < values.size(); ++count)
        if (!arguments.TakeLengthOf(bases[count % 2], values[count])) break;
    if (count == 0) return false;
    if (count < 2) values[1] = values[0];
    if (count < 3) values[2] = values[0];
    if (count < 4) values[3] = values[1];
    return true;
}

/// Adds a rectangle with an elliptical arc at each corner, clockwise from the top left.
void AddRounded(ORVPrintPath& path, const Rectangle& r, std::array<double, 4> rx, std::array<double, 4> ry) {
    // If the ellipses do not fit, all are scaled down by the same factor.
    double share = 1.0;
    const auto fit = [&](double size, double sum) {
        if (sum > size) share = std::min(share, size / sum);
    };
    fit(r.width, rx[0] + rx[1]);
    fit(r.width, rx[3] + rx[2]);
    fit(r.height, ry[0] + ry[3]);
    fit(r.height, ry[1] + ry[2]);
    for (std::size_t i = 0; i < 4; ++i) {
        rx[i] = ry[i] > 0.0 ? rx[i] * share : 0.0;
        ry[i] = rx[i] > 0.0 ? ry[i] * share : 0.0;
    }
    // From the corner to the control point, as a fraction of the radius.
    constexpr double kReach = 1.0 - 0.5522847498307936;
    const double left = r.x, top = r.y, right = r.x + r.width, bottom = r.y + r.height;
    path.MoveTo({left + rx[0], top});
    path.LineTo({right - rx[1], top});
    path.CubicTo({right - rx[1] * kReach, top}, {right, top + ry[1] * kReach}, {right, top + ry[1]});
    path.LineTo({right, bottom - ry[2]});
    path.CubicTo({right, bottom - ry[2] * kReach}, {right - rx[2] * kReach, bottom}, {right - rx[2], bottom});
    path.LineTo({left + rx[3], bottom});
    path.CubicTo({left + rx[3] * kReach, bottom}, {left, bottom - ry[3] * kReach}, {left, bottom - ry[3]});
    path.LineTo({left, top + ry[0]});
    path.CubicTo({left, top + ry[0] * kReach}, {left + rx[0] * kReach, top}, {left + rx[0], top});
    path.Close();
}

bool AddInset(ShapeArguments arguments, ORVPrintPath& path) {
    const Rectangle& box = arguments.box;
    std::array<double, 4> sides{}, rx{}, ry{};
    if (!TakeFour(arguments, {box.height, box.width}, sides)) return false;
    arguments.scanner.SkipSpace();
    bool isRound = false;
    if (arguments.scanner.Rest().starts_with("round")) {
        isRound = true;
        arguments.scanner.Advance(5);
        const std::size_t start = arguments.scanner.GetPosition();
        if (!TakeFour(arguments, {box.width, box.width}, rx)) return false;
        // Without separate vertical radii, the same values are read again for them.
        if (!arguments.scanner.TakeAfterSpace('/')) arguments.scanner.SetPosition(start);
        if (!TakeFour(arguments, {box.height, box.height}, ry)) return false;
        for (std::size_t i = 0; i < 4; ++i)
            if (rx[i] < 0.0 || ry[i] < 0.0) return false;
    }
    arguments.scanner.SkipSpace();
    if (!arguments.scanner.AtEnd()) return false;
    const Rectangle inner{box.x + sides[3], box.y + sides[0], box.width - sides[1] - sides[3],
                          box.height - sides[0] - sides[2]};
    if (!(inner.width > 0.0) || !(inner.height > 0.0)) return true;
    if (isRound)
        AddRounded(path, inner, rx, ry);
    else
        AddRectangle(path, inner);
    return true;
}

bool TakeRule(Scanner& scanner, bool& isEvenOdd) {
    scanner.SkipSpace();
    const std::size_t start = scanner.GetPosition();
    const std::string_view word = scanner.TakeName();
    if (word == "evenodd" || word == "nonzero") {
        isEvenOdd = word == "evenodd";
        return scanner.TakeAfterSpace(',');
    }
    scanner.SetPosition(start);
    return true;
}

bool AddPolygonShape(ShapeArguments arguments, ORVPrintPath& path, bool& isEvenOdd) {
    if (!TakeRule(arguments.scanner, isEvenOdd)) return false;
    ORVPrintPath polygon;
    do {
        ORVMathPoint2D point;
        if (!arguments.TakeLengthOf(arguments.box.width, point.x) ||
            !arguments.TakeLengthOf(arguments.box.height, point.y))
            return false;
        point = {arguments.box.x + point.x, arguments.box.y + point.y};
        if (polygon.IsEmpty())
            polygon.MoveTo(point);
        else
            polygon.LineTo(point);
    } while (arguments.scanner.TakeAfterSpace(','));
    polygon.Close();
    path = std::move(polygon);
    return arguments.scanner.AtEnd();
}

bool AddPathShape(ShapeArguments arguments, ORVPrintPath& path, bool& isEvenOdd) {
    if (!TakeRule(arguments.scanner, isEvenOdd)) return false;
    arguments.scanner.SkipSpace();
    std::string_view data;
    if (!arguments.scanner.TakeString(data)) return false;
    ReadPathData(data, path);
    const Rectangle& box = arguments.box;
    for (ORVMathPoint2D& point : path.points) point = {point.x + box.x, point.y + box.y};
    return true;
}

}  // namespace

bool AddBasicShape(std::string_view text, const UnitSizes& sizes,
                   const std::function<ORVMathBox2D(ShapeBox)>& boxOf, ORVPrintPath& path, bool& isEvenOdd) {
    Scanner scanner(Trim(text));
    ShapeBox kind = ShapeBox::kStroke;
    std::string_view function = scanner.TakeName(), inside;
    bool hasBox = ReadBox(function, kind);
    if (hasBox) {
        scanner.SkipSpace();
        function = scanner.TakeName();
    }
    if (!function.empty() && !scanner.TakeParentheses(inside)) return false;
    scanner.SkipSpace();
    if (!hasBox && !scanner.AtEnd() && !ReadBox(scanner.TakeName(), kind)) return false;

    const ORVMathBox2D box = boxOf(kind);
    if (box.IsEmpty()) return true;
    const Rectangle rectangle{box.xMin, box.yMin, box.xMax - box.xMin, box.yMax - box.yMin};
    const ShapeArguments arguments{Scanner(inside), sizes, rectangle};
    if (function.empty()) {
        AddRectangle(path, rectangle);
        return true;
    }
    if (function == "inset") return AddInset(arguments, path);
    if (function == "circle" || function == "ellipse") return AddRound(arguments, function == "circle", path);
    if (function == "polygon") return AddPolygonShape(arguments, path, isEvenOdd);
    return function == "path" && AddPathShape(arguments, path, isEvenOdd);
}

}  // namespace svg2
