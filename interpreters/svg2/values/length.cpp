// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/values/length.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

constexpr double kPxPerInch = 96.0;

/// The size of a unit in px.
/// @return false if it is unknown
bool FindUnit(std::string_view name, const UnitSizes& sizes, double& px) {
    struct Unit {
        std::string_view name;
        double px;
    };
    const double least = std::min(sizes.viewportWidth, sizes.viewportHeight);
    const double greatest = std::max(sizes.viewportWidth, sizes.viewportHeight);
    const Unit units[] = {
        {"px", 1.0},
        {"mm", kPxPerInch / 25.4},
        {"pt", kPxPerInch / 72.0},
        {"cm", kPxPerInch / 2.54},
        {"in", kPxPerInch},
        {"pc", kPxPerInch / 6.0},
        {"q", kPxPerInch / 101.6},
        {"em", sizes.fontSize},
        {"ex", sizes.xHeight},
        {"ch", sizes.zeroWidth},
        {"rem", sizes.rootFontSize},
        {"lh", 1.2 * sizes.fontSize},
        {"vw", sizes.viewportWidth / 100.0},
        {"vh", sizes.viewportHeight / 100.0},
        {"vmin", least / 100.0},
        {"vmax", greatest / 100.0},
    };
    for (const Unit& unit : units) {
        if (!EqualsIgnoringCase(name, unit.name)) continue;
        px = unit.px;
        return true;
    }
    return false;
}

/// A value in calc(): a length or a plain number.
struct Term {
    Length length;
    double number = 0.0;
    bool isNumber = false;
};

/// Evaluates calc() expressions. The nesting depth is limited, since evaluation is recursive.
class Calculation {
public:
    Calculation(std::string_view text, const UnitSizes& sizes, int depth)
        : scanner_(text), sizes_(sizes), depth_(depth) {}

    bool Read(Term& result) {
        if (depth_ > kGreatestDepth || !ReadSum(result)) return false;
        scanner_.SkipSpace();
        return scanner_.AtEnd();
    }
    /// Evaluates the comma-separated arguments of min(), max() or clamp().
    bool ReadList(std::string_view function, Term& result);

private:
    static constexpr int kGreatestDepth = 32;

    bool ReadSum(Term& result);
    bool ReadProduct(Term& result);
    bool ReadValue(Term& result);
    bool ReadFunction(std::string_view name, Term& result);

    Scanner scanner_;
    const UnitSizes& sizes_;
    int depth_;
};

Term Scaled(Term term, double factor) {
    term.number *= factor;
    term.length.px *= factor;
    term.length.percent *= factor;
    return term;
}

bool Calculation::ReadSum(Term& result) {
    if (!ReadProduct(result)) return false;
    for (;;) {
        scanner_.SkipSpace();
        const bool subtracts = scanner_.Peek() == '-';
        if (!subtracts && scanner_.Peek() != '+') return true;
        scanner_.Advance();
        Term term;
        if (!ReadProduct(term) || term.isNumber != result.isNumber) return false;
        term = Scaled(term, subtracts ? -1.0 : 1.0);
        result.number += term.number;
        result.length.px += term.length.px;
        result.length.percent += term.length.percent;
    }
}

bool Calculation::ReadProduct(Term& result) {
    if (!ReadValue(result)) return false;
    for (;;) {
        scanner_.SkipSpace();
        const bool divides = scanner_.Peek() == '/';
        if (!divides && scanner_.Peek() != '*') return true;
        scanner_.Advance();
        Term factor;
        if (!ReadValue(factor)) return false;
        if (divides) {
            if (!factor.isNumber || factor.number == 0.0) return false;
            result = Scaled(result, 1.0 / factor.number);
        } else if (factor.isNumber) {
            result = Scaled(result, factor.number);
        } else if (result.isNumber) {
            result = Scaled(factor, result.number);
        } else {
            return false;
        }
    }
}

bool Calculation::ReadFunction(std::string_view name, Term& result) {
    std::string_view inside;
    if (!scanner_.TakeParentheses(inside)) return false;
    Calculation inner(inside, sizes_, depth_ + 1);
    if (name.empty() || EqualsIgnoringCase(name, "calc")) return inner.Read(result);
    return inner.ReadList(name, result);
}

bool Calculation::ReadValue(Term& result) {
    scanner_.SkipSpace();
    const std::size_t start = scanner_.GetPosition();
    double number = 0.0;
    if (!scanner_.TakeNumber(number)) {
        const std::string_view name = scanner_.TakeName();
        return scanner_.Peek() == '(' && ReadFunction(name, result);
    }
    result = {};
    if (scanner_.Peek() == '%' || IsNameCharacter(scanner_.Peek())) {
        scanner_.SetPosition(start);
        return TakeLength(scanner_, sizes_, result.length);
    }
    result.number = number;
    result.isNumber = true;
    return true;
}

bool Calculation::ReadList(std::string_view function, Term& result) {
    const bool isClamp = EqualsIgnoringCase(function, "clamp");
    const bool isMin = EqualsIgnoringCase(function, "min");
    if (depth_ > kGreatestDepth || (!isClamp && !isMin && !EqualsIgnoringCase(function, "max"))) return false;
    int count = 0;
    do {
        Term term;
        if (!ReadSum(term) || (count > 0 && term.isNumber != result.isNumber)) return false;
        // Values with percentages cannot be compared yet.
        if (term.length.IsPercentage() || result.length.IsPercentage()) return false;
        const auto valueOf = [](const Term& t) { return t.isNumber ? t.number : t.length.px; };
        const bool takesLess = isClamp ? count == 2 : isMin;
        if (count == 0 || (valueOf(term) < valueOf(result)) == takesLess) {
            // In clamp(minimum, value, maximum), the minimum overrides the maximum.
            result = term;
        }
        ++count;
    } while (scanner_.TakeAfterSpace(','));
    return scanner_.AtEnd() && (!isClamp || count == 3);
}

bool TakeCalculation(Scanner& scanner, const UnitSizes& sizes, Length& length) {
    const std::size_t start = scanner.GetPosition();
    const std::string_view name = scanner.TakeName();
    std::string_view inside;
    Term term;
    if (!name.empty() && scanner.TakeParentheses(inside)) {
        Calculation calculation(inside, sizes, 0);
        const bool isRead =
            EqualsIgnoringCase(name, "calc") ? calculation.Read(term) : calculation.ReadList(name, term);
        if (isRead) {
            length = term.isNumber ? Length{term.number, 0.0} : term.length;
            return true;
        }
    }
    scanner.SetPosition(start);
    return false;
}

}  // namespace

bool TakeLength(Scanner& scanner, const UnitSizes& sizes, Length& length) {
    const std::size_t start = scanner.GetPosition();
    double number = 0.0;
    if (!scanner.TakeNumber(number)) return TakeCalculation(scanner, sizes, length);
    if (scanner.Take('%')) {
        length = {0.0, number};
        return true;
    }
    if (!IsNameCharacter(scanner.Peek())) {
        length = {number, 0.0};
        return true;
    }
    // "10-5" is two numbers: units contain neither digits nor signs.
    std::size_t size = 0;
    while (ToLower(scanner.Peek(size)) >= 'a' && ToLower(scanner.Peek(size)) <= 'z') ++size;
    double px = 1.0;
    if (size > 0 && !FindUnit(scanner.Rest().substr(0, size), sizes, px)) {
        scanner.SetPosition(start);
        return false;
    }
    scanner.Advance(size);
    length = {number * px, 0.0};
    return true;
}

bool ReadLength(std::string_view text, const UnitSizes& sizes, Length& length) {
    // Most lengths are plain numbers.
    Scanner scanner(Trim(text));
    Length read;
    if (!TakeLength(scanner, sizes, read) || !scanner.AtEnd()) return false;
    length = read;
    return true;
}

bool TakeAngle(Scanner& scanner, double& degrees) {
    const std::size_t start = scanner.GetPosition();
    double number = 0.0;
    if (!scanner.TakeNumber(number)) return false;
    const std::string_view unit = scanner.TakeName();
    if (unit.empty() || EqualsIgnoringCase(unit, "deg"))
        degrees = number;
    else if (EqualsIgnoringCase(unit, "grad"))
        degrees = number * 0.9;
    else if (EqualsIgnoringCase(unit, "rad"))
        degrees = number * 180.0 / std::numbers::pi;
    else if (EqualsIgnoringCase(unit, "turn"))
        degrees = number * 360.0;
    else {
        scanner.SetPosition(start);
        return false;
    }
    return true;
}

}  // namespace svg2
