// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/values/view_box.h"

#include <algorithm>

#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

bool ReadAlignment(std::string_view word, AspectRatio& ratio) {
    if (word == "none") {
        ratio.isKept = false;
        return true;
    }
    constexpr std::size_t kSize = 8;  // length of "xMidYMid"
    if (word.size() != kSize || word[0] != 'x' || word[4] != 'Y') return false;
    const auto share = [](std::string_view text, double& value) {
        if (text == "Min")
            value = 0.0;
        else if (text == "Mid")
            value = 0.5;
        else if (text == "Max")
            value = 1.0;
        else
            return false;
        return true;
    };
    return share(word.substr(1, 3), ratio.x) && share(word.substr(5, 3), ratio.y);
}

}  // namespace

std::optional<Rectangle> ReadViewBox(std::string_view text) {
    Scanner scanner(text);
    double values[4];
    scanner.SkipSpace();
    for (double& value : values) {
        if (&value != values) scanner.SkipCommaSpace();
        if (!scanner.TakeNumber(value)) return std::nullopt;
    }
    scanner.SkipSpace();
    if (!scanner.AtEnd() || values[2] < 0.0 || values[3] < 0.0) return std::nullopt;
    return Rectangle{values[0], values[1], values[2], values[3]};
}

AspectRatio ReadAspectRatio(std::string_view text) {
    AspectRatio ratio;
    Scanner scanner(text);
    const auto nextWord = [&] {
        scanner.SkipSpace();
        return scanner.TakeName();
    };
    std::string_view word = nextWord();
    if (word == "defer") word = nextWord();
    if (!ReadAlignment(word, ratio)) return {};
    word = nextWord();
    if (word == "slice")
        ratio.slices = true;
    else if (!word.empty() && word != "meet")
        return {};
    scanner.SkipSpace();
    return scanner.AtEnd() ? ratio : AspectRatio{};
}

ORVMathAffine2D FitViewBox(const Rectangle& viewBox, const AspectRatio& ratio, const Rectangle& viewport) {
    double scaleX = viewport.width / viewBox.width, scaleY = viewport.height / viewBox.height;
    if (ratio.isKept) scaleX = scaleY = ratio.slices ? std::max(scaleX, scaleY) : std::min(scaleX, scaleY);
    const double x = viewport.x + (viewport.width - viewBox.width * scaleX) * (ratio.isKept ? ratio.x : 0.0);
    const double y =
        viewport.y + (viewport.height - viewBox.height * scaleY) * (ratio.isKept ? ratio.y : 0.0);
    return {scaleX, 0.0, 0.0, scaleY, x - viewBox.x * scaleX, y - viewBox.y * scaleY};
}

}  // namespace svg2
