// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/tree/page_size.h"

#include <optional>
#include <string>

#include "interpreters/svg2/css/Cascade.h"
#include "interpreters/svg2/values/scanner.h"
#include "platform/print/ORVPrintPreferences.h"

namespace svg2 {
namespace {

/// Width or height of the root.
struct RootSize {
    std::optional<Length> length;  ///< empty if absent, "auto" or invalid

    bool IsAbsolute() const { return length && length->percent == 0.0; }
    double Share() const { return length ? length->percent / 100.0 : 1.0; }
};

/// The value from the root's style, or else its attribute.
std::string SizeText(const Document& document, Name name) {
    const bool isStyled = document.Find(Document::kRoot, Name::kStyle) ||
                          !document.FindAll(Tag::kStyle).empty() || !document.GetOuterSheets().empty();
    if (!isStyled) return std::string(document.ValueOf(Document::kRoot, name));
    // Media queries about the size are evaluated before there is one.
    Cascade cascade(document, {});
    const Style initial = Cascade::InitialStyle();
    Style style;
    cascade.Compute(Document::kRoot, initial, style);
    return std::string(cascade.FindGeometry(Document::kRoot, name, style).value_or(std::string_view()));
}

RootSize ReadSize(const Document& document, Name name) {
    UnitSizes sizes;
    sizes.viewportWidth = sizes.viewportHeight = 100.0;
    sizes.fontSize = sizes.rootFontSize = ORVPrintPreferences::Get().fontSize;
    sizes.xHeight = sizes.zeroWidth = sizes.fontSize / 2.0;
    Length length;
    if (!ReadLength(SizeText(document, name), sizes, length)) return {};
    return {length};
}

}  // namespace

Viewport FindPageSize(const Document& document, const std::function<ORVMathBox2D()>& contentBox) {
    const RootSize width = ReadSize(document, Name::kWidth), height = ReadSize(document, Name::kHeight);
    if (width.IsAbsolute() && height.IsAbsolute()) return {width.length->px, height.length->px};
    const std::optional<Rectangle> viewBox = ReadViewBox(document.ValueOf(Document::kRoot, Name::kViewBox));
    if (viewBox && viewBox->width > 0.0 && viewBox->height > 0.0) {
        const double ratio = viewBox->width / viewBox->height;
        if (width.IsAbsolute() && !height.length) return {width.length->px, width.length->px / ratio};
        if (height.IsAbsolute() && !width.length) return {height.length->px * ratio, height.length->px};
        return {width.IsAbsolute() ? width.length->px : viewBox->width * width.Share(),
                height.IsAbsolute() ? height.length->px : viewBox->height * height.Share()};
    }
    const ORVMathBox2D box = contentBox();
    const double right = box.IsEmpty() ? 0.0 : box.xMax, bottom = box.IsEmpty() ? 0.0 : box.yMax;
    return {width.IsAbsolute() ? width.length->px : right, height.IsAbsolute() ? height.length->px : bottom};
}

Viewport FindImageSize(const Document& document) {
    constexpr double kWidth = 300.0, kHeight = 150.0;
    return FindPageSize(document, [] { return ORVMathBox2D{0.0, kWidth, 0.0, kHeight}; });
}

}  // namespace svg2
