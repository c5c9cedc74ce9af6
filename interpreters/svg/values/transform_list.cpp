// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/values/transform_list.h"

#include <algorithm>
#include <array>
#include <type_traits>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "platform/mathematics/constants.h"
#include "platform/model/visit_primitive.h"
#include "platform/system/number_conversion.h"

namespace {

// The numbers of an argument list; those after the sixth are ignored.
struct Arguments {
    std::array<double, 6> values{};
    std::size_t count = 0;

    double Get(std::size_t index, double standard) const { return index < count ? values[index] : standard; }
};

Arguments ReadArguments(std::string_view text) {
    constexpr std::string_view kSeparators = " ,";
    Arguments arguments;
    while (arguments.count < arguments.values.size()) {
        const std::size_t start = text.find_first_not_of(kSeparators);
        if (start == text.npos) break;
        const std::size_t end = std::min(text.find_first_of(kSeparators, start), text.size());
        // An invalid token is dropped, so the next one takes its place: kept on purpose.
        if (ORVConvertToDouble(text.substr(start, end - start), arguments.values[arguments.count]) == kRead)
            ++arguments.count;
        text.remove_prefix(end);
    }
    return arguments;
}

float ReadAngle(std::string_view text) {
    double degrees = 0.0;
    ORVConvertToDouble(text, degrees);
    return static_cast<float>(degrees * ORVDegreeToRadian);
}

void AddMatrix(std::string_view text, ORVPrtTransformAttributes& transform) {
    const Arguments v = ReadArguments(text);
    transform.AddTranslation({v.Get(4, 0.0), v.Get(5, 0.0)});
    transform.AddMatrix({v.Get(0, 1.0), v.Get(2, 0.0), v.Get(1, 0.0), v.Get(3, 1.0)});
}

void AddTranslate(std::string_view text, ORVPrtTransformAttributes& transform) {
    const Arguments v = ReadArguments(text);
    transform.AddTranslation({v.Get(0, 0.0), v.Get(1, 0.0)});
}

void AddScale(std::string_view text, ORVPrtTransformAttributes& transform) {
    const Arguments v = ReadArguments(text);
    const double x = v.Get(0, 1.0);
    transform.AddScaleX(x);
    transform.AddScaleY(v.Get(1, x));
}

void AddRotate(std::string_view text, ORVPrtTransformAttributes& transform) {
    const Arguments v = ReadArguments(text);
    if (v.count == 0) return;
    const bool aboutPoint = v.count > 2;  // with two numbers the centre is ignored
    const double x = v.Get(1, 0.0), y = v.Get(2, 0.0);
    if (aboutPoint) transform.AddTranslation({x, y});
    transform.AddRotation(static_cast<float>(v.values[0] * ORVDegreeToRadian));
    if (aboutPoint) transform.AddTranslation({-x, -y});
}

void AddSkewX(std::string_view text, ORVPrtTransformAttributes& transform) {
    transform.AddSkewX(ReadAngle(text));
}

void AddSkewY(std::string_view text, ORVPrtTransformAttributes& transform) {
    transform.AddSkewY(ReadAngle(text));
}

struct TransformRow {
    std::string_view name;
    void (*add)(std::string_view arguments, ORVPrtTransformAttributes& transform);
};
constexpr std::array kTransforms{
    TransformRow{"matrix", AddMatrix}, TransformRow{"translate", AddTranslate},
    TransformRow{"scale", AddScale},   TransformRow{"rotate", AddRotate},
    TransformRow{"skewX", AddSkewX},   TransformRow{"skewY", AddSkewY},
};

// Where the next segment starts, at or after `from`: after a ";" or at the name of a transform. Names are
// case-sensitive.
struct Boundary {
    std::size_t end;    // end of the text before the boundary
    std::size_t start;  // start of the next segment; npos if there is none
};

Boundary FindBoundary(std::string_view text, std::size_t from) {
    for (std::size_t i = text.find_first_of(";mtsr", from); i != text.npos;
         i = text.find_first_of(";mtsr", i + 1)) {
        if (text[i] == ';') return {i, i + 1};
        const std::string_view rest = text.substr(i);
        for (const TransformRow& row : kTransforms)
            if (rest.starts_with(row.name)) return {i, i};
    }
    return {text.size(), text.npos};
}

void AddSegment(std::string_view segment, ORVPrtTransformAttributes& transform) {
    const std::size_t open = segment.find('(');
    if (open == segment.npos) return;
    const std::size_t close = segment.find(')', open);
    if (close == segment.npos || close == open + 1) return;
    const std::string_view name = segment.substr(0, open);
    for (const TransformRow& row : kTransforms)
        if (ORVCompareText(name, row.name) != kTextDiffers)
            return row.add(segment.substr(open + 1, close - open - 1), transform);
}

}  // namespace

void AddPageMirror(const SvgDrawState& state, ORVPrtTransformAttributes& transform) {
    transform.AddTranslation({0.0, state.pageHeight});
    transform.AddScaleY(-1.0);
}

ORVPrtTransformAttributes GetTransform(const ORVPrtGraphicPrimitiveElt& primitive) {
    ORVPrtTransformAttributes transform;
    VisitPrimitive(primitive, [&]<class Primitive>(const Primitive& one) {
        if constexpr (std::is_base_of_v<ORVPrtTransformed, Primitive>)
            transform = one.GetTransformAttributes();
    });
    return transform;
}

void SetTransform(ORVPrtGraphicPrimitiveElt& primitive, const ORVPrtTransformAttributes& transform) {
    VisitPrimitive(primitive, [&]<class Primitive>(Primitive& one) {
        if constexpr (std::is_base_of_v<ORVPrtTransformed, Primitive>) one.SetTransformAttributes(transform);
    });
}

int ApplyTransformList(const SvgDrawState& state, std::string_view text,
                       ORVPrtGraphicPrimitiveElt* primitive) {
    if (!primitive) return kUnusable;

    ORVPrtTransformAttributes transform = GetTransform(*primitive);
    if (state.yFlip == 1) AddPageMirror(state, transform);
    Boundary boundary = FindBoundary(text, 0);
    if (boundary.start == text.npos) AddSegment(text, transform);
    while (boundary.start != text.npos) {
        const std::size_t start = boundary.start;
        // A segment that starts at a name must not find this name again.
        const bool atName = start == boundary.end;
        boundary = FindBoundary(text, atName ? start + 1 : start);
        AddSegment(text.substr(start, boundary.end - start), transform);
    }
    if (state.yFlip == 1) AddPageMirror(state, transform);
    SetTransform(*primitive, transform);
    return kDone;
}
