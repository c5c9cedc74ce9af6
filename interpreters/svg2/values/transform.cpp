// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/values/transform.h"

#include <array>
#include <cmath>
#include <numbers>

#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

constexpr std::size_t kMostArguments = 6;

struct Arguments {
    std::array<double, kMostArguments> values{};
    std::size_t count = 0;
};

double Tangent(double degrees) { return std::tan(degrees * std::numbers::pi / 180.0); }

/// Rotation about a point.
ORVMathAffine2D RotationAbout(double degrees, double x, double y) {
    return ORVMathAffine2D::Translation(x, y) * Rotation(degrees) * ORVMathAffine2D::Translation(-x, -y);
}

/// Makes a transform from its name and arguments.
/// @return false for an unknown name or a wrong number of arguments
bool MakeAttributeTransform(std::string_view name, const Arguments& arguments, ORVMathAffine2D& transform) {
    const auto& [v, count] = arguments;
    if (name == "matrix" && count == 6) {
        transform = {v[0], v[2], v[1], v[3], v[4], v[5]};
    } else if (name == "translate" && (count == 1 || count == 2)) {
        transform = ORVMathAffine2D::Translation(v[0], v[1]);
    } else if (name == "scale" && (count == 1 || count == 2)) {
        transform = ORVMathAffine2D::Scaling(v[0], count == 2 ? v[1] : v[0]);
    } else if (name == "rotate" && (count == 1 || count == 3)) {
        transform = count == 1 ? Rotation(v[0]) : RotationAbout(v[0], v[1], v[2]);
    } else if (name == "skewX" && count == 1) {
        transform = {1.0, Tangent(v[0]), 0.0, 1.0, 0.0, 0.0};
    } else if (name == "skewY" && count == 1) {
        transform = {1.0, 0.0, Tangent(v[0]), 1.0, 0.0, 0.0};
    } else {
        return false;
    }
    return true;
}

bool ReadNumbers(std::string_view text, Arguments& arguments) {
    Scanner scanner(text);
    scanner.SkipSpace();
    while (!scanner.AtEnd()) {
        if (arguments.count > 0) scanner.SkipCommaSpace();
        if (arguments.count == kMostArguments || !scanner.TakeNumber(arguments.values[arguments.count]))
            return false;
        ++arguments.count;
        scanner.SkipSpace();
    }
    return true;
}

/// The type of a CSS function's arguments.
enum class ArgumentKind { kNumber, kLength, kAngle };

struct FunctionRow {
    std::string_view name;
    ArgumentKind kind;
    std::size_t least, most;
    ORVMathAffine2D (*make)(const Arguments& arguments);
};

constexpr FunctionRow kFunctions[] = {
    {"matrix", ArgumentKind::kNumber, 6, 6,
     [](const Arguments& a) {
         const auto& v = a.values;
         return ORVMathAffine2D{v[0], v[2], v[1], v[3], v[4], v[5]};
     }},
    {"translate", ArgumentKind::kLength, 1, 2,
     [](const Arguments& a) { return ORVMathAffine2D::Translation(a.values[0], a.values[1]); }},
    {"translatex", ArgumentKind::kLength, 1, 1,
     [](const Arguments& a) { return ORVMathAffine2D::Translation(a.values[0], 0.0); }},
    {"translatey", ArgumentKind::kLength, 1, 1,
     // The only argument was read as a horizontal length.
     [](const Arguments& a) { return ORVMathAffine2D::Translation(0.0, a.values[0]); }},
    {"scale", ArgumentKind::kNumber, 1, 2,
     [](const Arguments& a) {
         return ORVMathAffine2D::Scaling(a.values[0], a.values[a.count == 2 ? 1 : 0]);
     }},
    {"scalex", ArgumentKind::kNumber, 1, 1,
     [](const Arguments& a) { return ORVMathAffine2D::Scaling(a.values[0], 1.0); }},
    {"scaley", ArgumentKind::kNumber, 1, 1,
     [](const Arguments& a) { return ORVMathAffine2D::Scaling(1.0, a.values[0]); }},
    {"rotate", ArgumentKind::kAngle, 1, 1, [](const Arguments& a) { return Rotation(a.values[0]); }},
    {"skew", ArgumentKind::kAngle, 1, 2,
     [](const Arguments& a) {
         return ORVMathAffine2D{1.0, Tangent(a.values[0]), Tangent(a.values[1]), 1.0, 0.0, 0.0};
     }},
    {"skewx", ArgumentKind::kAngle, 1, 1,
     [](const Arguments& a) { return ORVMathAffine2D{1.0, Tangent(a.values[0]), 0.0, 1.0, 0.0, 0.0}; }},
    {"skewy", ArgumentKind::kAngle, 1, 1,
     [](const Arguments& a) { return ORVMathAffine2D{1.0, 0.0, Tangent(a.values[0]), 1.0, 0.0, 0.0}; }},
};

/// The reference sizes of arguments.
struct Bases {
    const UnitSizes& sizes;
    double width, height;
};

bool TakeArgument(Scanner& scanner, ArgumentKind kind, const Bases& bases, bool isVertical, double& value) {
    switch (kind) {
        case ArgumentKind::kNumber:
            if (!scanner.TakeNumber(value)) return false;
            if (scanner.Take('%')) value /= 100.0;
            return true;
        case ArgumentKind::kAngle:
        case ArgumentKind::kLength: break;
    }
    // Only zero may omit the unit.
    double number = 0.0;
    Scanner plain = scanner;
    const bool hasUnit = !plain.TakeNumber(number) || plain.Peek() == '%' || IsNameCharacter(plain.Peek());
    if (!hasUnit && number != 0.0) return false;
    if (kind == ArgumentKind::kAngle) return TakeAngle(scanner, value);
    Length length;
    if (!TakeLength(scanner, bases.sizes, length)) return false;
    value = length.Resolve(isVertical ? bases.height : bases.width);
    return true;
}

bool ReadArguments(const FunctionRow& row, std::string_view text, const Bases& bases, Arguments& arguments) {
    Scanner scanner(text);
    scanner.SkipSpace();
    while (!scanner.AtEnd()) {
        if (arguments.count > 0 && !scanner.SkipCommaSpace()) return false;
        if (arguments.count == row.most) return false;
        const bool isVertical = arguments.count == 1 || row.name == "translatey";
        if (!TakeArgument(scanner, row.kind, bases, isVertical, arguments.values[arguments.count]))
            return false;
        ++arguments.count;
        scanner.SkipSpace();
    }
    return arguments.count >= row.least;
}

const FunctionRow* FindFunction(std::string_view name) {
    for (const FunctionRow& row : kFunctions)
        if (EqualsIgnoringCase(name, row.name)) return &row;
    return nullptr;
}

}  // namespace

ORVMathAffine2D Rotation(double degrees) {
    const double radians = degrees * std::numbers::pi / 180.0;
    const double sine = std::sin(radians), cosine = std::cos(radians);
    return {cosine, -sine, sine, cosine, 0.0, 0.0};
}

bool ReadTransformAttribute(std::string_view text, ORVMathAffine2D& transform) {
    Scanner scanner(text);
    ORVMathAffine2D product;
    scanner.SkipSpace();
    while (!scanner.AtEnd()) {
        const std::string_view name = scanner.TakeName();
        scanner.SkipSpace();
        std::string_view inside;
        Arguments arguments;
        ORVMathAffine2D factor;
        if (!scanner.TakeParentheses(inside) || !ReadNumbers(inside, arguments) ||
            !MakeAttributeTransform(name, arguments, factor))
            return Trim(text) == "none";
        product = product * factor;
        while (scanner.SkipCommaSpace()) continue;
    }
    transform = product;
    return true;
}

bool ReadTransformProperty(std::string_view text, const UnitSizes& sizes, double width, double height,
                           ORVMathAffine2D& transform) {
    const Bases bases{sizes, width, height};
    Scanner scanner(text);
    ORVMathAffine2D product;
    scanner.SkipSpace();
    while (!scanner.AtEnd()) {
        const FunctionRow* row = FindFunction(scanner.TakeName());
        std::string_view inside;
        Arguments arguments;
        if (!row || !scanner.TakeParentheses(inside) || !ReadArguments(*row, inside, bases, arguments))
            return EqualsIgnoringCase(Trim(text), "none");
        product = product * row->make(arguments);
        scanner.SkipSpace();
    }
    transform = product;
    return true;
}

}  // namespace svg2
