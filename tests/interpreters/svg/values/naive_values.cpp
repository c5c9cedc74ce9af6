// SPDX-License-Identifier: Apache-2.0
#include "tests/interpreters/svg/values/naive_values.h"

#include <cmath>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/values/colour_keywords.h"
#include "platform/mathematics/constants.h"
#include "platform/system/ORVUnicodeString.h"

namespace naive {
namespace {

using Text = ORVUnicodeString;

std::string Replaced(const std::string& text, const std::string& part, const std::string& by) {
    Text copy(text);
    copy.ReplaceAll(part, by);
    return std::string(copy.GetView());
}

int Number(const std::string& text, double& out) { return Text(text).ConvertToNum(&out, "%le"); }

bool Holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

void CutLeadingBlanks(std::string& text) {
    while (!text.empty() && text[0] == ' ') text.erase(0, 1);
}

std::string Trimmed(std::string text) {
    CutLeadingBlanks(text);
    while (!text.empty() && text.back() == ' ') text.pop_back();
    return text;
}

int SideLength(const SvgDrawState& state, std::string value, double side, double& out) {
    if (value.empty()) return -1;
    if (Holds(value, "%")) {
        value = Replaced(value, "%", "");
        double number = 0.0;
        if (Number(value, number) == 1) {
            out = number * side / 100.0;
            return 1;
        }
    }
    return Length(state, value, out);
}

}  // namespace

int Length(const SvgDrawState& state, std::string value, double& out) {
    if (value.empty()) return -1;
    for (const char* unit : {"pt", "pc", "cm", "mm", "in", "%"}) {
        if (!Holds(value, unit)) continue;
        double v = 0.0;
        const int status = Number(Replaced(value, unit, ""), v);
        if (status != 1) return status;
        const std::string name = unit;
        const double w = state.pageWidth, h = state.pageHeight;
        if (name == "pt") out = v / 72.0 * 25.4 * 3.543307;
        if (name == "pc") out = (v * 12.0) / 72.0 * 25.4 * 3.543307;
        if (name == "cm") out = v * 10.0 * 3.543307;
        if (name == "mm") out = v * 3.543307;
        if (name == "in") out = v * 25.4 * 3.543307;
        if (name == "%") out = std::sqrt((w * w + h * h) * 0.5) * v / 100.0;
        return 1;
    }
    return Number(value, out);
}

int HorizontalLength(const SvgDrawState& state, std::string value, double& out) {
    return SideLength(state, std::move(value), state.pageWidth, out);
}

int VerticalLength(const SvgDrawState& state, std::string value, double& out) {
    return SideLength(state, std::move(value), state.pageHeight, out);
}

int VerticalCoordinate(const SvgDrawState& state, std::string value, double& out) {
    const int status = VerticalLength(state, std::move(value), out);
    if (state.yFlip == 1) out = state.pageHeight - out;
    return status;
}

bool Colour(std::string value, int (&components)[3]) {
    if (value.empty()) return false;
    value = Replaced(value, " ", "");
    if (!value.empty() && value[0] == '#') {
        value.erase(0, 1);
        if (Text(value).GetLengthInChar() == 3 && value.size() == 3)
            value = {value[0], value[0], value[1], value[1], value[2], value[2]};
        if (value.size() != 6) return false;
        int digits[6];
        for (std::size_t i = 0; i < 6; ++i) {
            unsigned int digit = 0;
            const Text one(value.substr(i, 1));
            if (one.ConvertToNum(&digit, "%u") == 1) {
                digits[i] = static_cast<int>(digit);
                continue;
            }
            digits[i] = -1;
            const char* letters[] = {"a", "b", "c", "d", "e", "f"};
            for (int k = 0; k < 6; ++k)
                if (one.Compare(letters[k]) > 0) digits[i] = 10 + k;
            if (digits[i] < 0) return false;
        }
        for (std::size_t i = 0; i < 3; ++i) components[i] = digits[2 * i] * 16 + digits[2 * i + 1];
        return true;
    }
    if (value.rfind("rgb", 0) == 0) value.erase(0, 3);
    if (value.rfind("(", 0) == 0) {
        value.erase(0, 1);
        const std::size_t percent = value.find('%');
        const bool percentages = percent != std::string::npos && percent > 0;
        for (int i = 0; i < 3; ++i) {
            const std::size_t end = value.find(percentages ? '%' : i < 2 ? ',' : ')');
            if (end == std::string::npos) return false;
            unsigned int number = 0;
            if (Text(value.substr(0, end)).ConvertToNum(&number, "%u") != 1) return false;
            components[i] = static_cast<int>((percentages ? number * 255U / 100U : number) & 0xFFU);
            value.erase(0, end + 1);
            if (percentages) {
                Text rest(value);
                rest.Remove(0, 1);
                value = std::string(rest.GetView());
            }
        }
        return true;
    }
    RgbColour colour;
    if (!FindColourKeyword(value, colour)) return false;
    components[0] = colour.red, components[1] = colour.green, components[2] = colour.blue;
    return true;
}

std::vector<ORVPrtTransformOperation> Transform(const SvgDrawState& state, std::string text) {
    for (const char* name : {"matrix", "translate", "scale", "rotate", "skewX", "skewY"})
        text = Replaced(text, name, std::string(";") + name);
    ORVPrtTransformAttributes result;
    const auto mirror = [&] {
        if (state.yFlip != 1) return;
        result.AddTranslation({0.0, state.pageHeight});
        result.AddScaleY(-1.0);
    };
    mirror();
    while (!text.empty()) {
        std::string segment;
        if (!Holds(text, ";")) {
            segment = text;
            text.clear();
        } else {
            text.erase(0, text.find(';') + 1);
            segment = text.substr(0, text.find(';'));
            text.erase(0, segment.size());
        }
        const std::size_t open = segment.find('(');
        if (open == std::string::npos) continue;
        const std::size_t close = segment.find(')', open);
        if (close == std::string::npos) continue;
        const Text name(segment.substr(0, open));
        const std::string arguments = segment.substr(open + 1, close - open - 1);
        if (arguments.empty()) continue;
        std::vector<double> v;
        std::string list = Replaced(arguments, ",", " ");
        for (;;) {
            CutLeadingBlanks(list);
            if (list.empty()) break;
            const std::string token = list.substr(0, list.find(' '));
            double number = 0.0;
            if (Number(token, number) == 1) v.push_back(number);
            list.erase(0, token.size());
        }
        const auto get = [&](std::size_t i, double standard) { return i < v.size() ? v[i] : standard; };
        double angle = 0.0;
        Number(arguments, angle);
        if (name.Compare("matrix") >= 1) {
            result.AddTranslation({get(4, 0), get(5, 0)});
            result.AddMatrix(ORVMath2x2Matrix(get(0, 1), get(2, 0), get(1, 0), get(3, 1)));
        } else if (name.Compare("translate") >= 1) {
            result.AddTranslation({get(0, 0), get(1, 0)});
        } else if (name.Compare("scale") >= 1) {
            result.AddScaleX(get(0, 1));
            result.AddScaleY(v.size() > 1 ? v[1] : get(0, 1));
        } else if (name.Compare("rotate") >= 1) {
            if (v.empty()) continue;
            if (v.size() > 2) result.AddTranslation({v[1], v[2]});
            result.AddRotation(static_cast<float>(v[0] * ORVDegreeToRadian));
            if (v.size() > 2) result.AddTranslation({-v[1], -v[2]});
        } else if (name.Compare("skewX") >= 1) {
            result.AddSkewX(static_cast<float>(angle * ORVDegreeToRadian));
        } else if (name.Compare("skewY") >= 1) {
            result.AddSkewY(static_cast<float>(angle * ORVDegreeToRadian));
        }
    }
    mirror();
    return result.GetOperations();
}

int ViewBox(std::string text, ORVPrtViewBox& box) {
    if (text.empty()) return -1;
    double* numbers[] = {&box.minX, &box.minY, &box.width, &box.height};
    for (int i = 0; i < 4; ++i) {
        CutLeadingBlanks(text);
        const std::size_t blank = text.find(' ');
        if (blank == std::string::npos && i < 3) continue;
        Number(text.substr(0, blank), *numbers[i]);
        text.erase(0, blank);
    }
    return 1;
}

std::vector<double> Numbers(const SvgDrawState& state, std::string value) {
    std::vector<double> numbers;
    std::string text = Replaced(value, ",", " ");
    while (!text.empty()) {
        double number = 0.0;
        CutLeadingBlanks(text);
        std::size_t blank = text.find(' ');
        if (blank != std::string::npos) {
            const std::string token = text.substr(0, blank);
            if (!token.empty() && HorizontalLength(state, token, number) >= 1) numbers.push_back(number);
            text.erase(0, blank + 1);
            CutLeadingBlanks(text);
            blank = text.find(' ');
        }
        const std::string token = text.substr(0, blank);
        if (VerticalCoordinate(state, token, number) > 0) numbers.push_back(number);
        text = blank == std::string::npos ? std::string() : text.substr(blank + 1);
    }
    return numbers;
}

std::vector<std::pair<std::string, std::string>> Declarations(std::string style) {
    std::vector<std::pair<std::string, std::string>> declarations;
    while (!style.empty()) {
        const std::size_t end = style.find(';');
        std::string declaration;
        if (end == std::string::npos || end == 0) {
            declaration = style;
            style.clear();
        } else {
            declaration = style.substr(0, end);
            style.erase(0, end + 1);
        }
        const std::size_t colon = declaration.find(':');
        if (colon == std::string::npos) continue;
        declarations.emplace_back(Trimmed(declaration.substr(0, colon)),
                                  Trimmed(declaration.substr(colon + 1)));
    }
    return declarations;
}

std::vector<float> Dashes(std::string value) {
    std::vector<double> list;
    std::string text = Replaced(value, ",", " ");
    while (!text.empty()) {
        CutLeadingBlanks(text);
        const std::size_t blank = text.find(' ');
        double number = 0.0;
        const std::string piece = text.substr(0, blank);
        if (Number(piece, number) == 1) list.push_back(number);
        text = blank == std::string::npos ? std::string() : text.substr(blank + 1);
    }
    std::vector<float> dashes;
    for (std::size_t i = 0; i < list.size() % 256; ++i) dashes.push_back(static_cast<float>(list[i]));
    return dashes;
}

std::vector<std::string> Families(std::string value) {
    std::vector<std::string> families;
    while (true) {
        const std::size_t comma = value.find(',');
        const std::string piece = Trimmed(Replaced(Replaced(value.substr(0, comma), "\"", ""), "'", ""));
        if (!piece.empty()) families.push_back(piece);
        if (comma == std::string::npos) return families;
        value.erase(0, comma + 1);
    }
}

}  // namespace naive
