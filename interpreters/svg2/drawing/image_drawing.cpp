// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/drawing/Drawing.h"
#include "interpreters/svg2/tree/page_size.h"
#include "interpreters/svg2/values/scanner.h"

namespace svg2 {

bool Images::Place(const Scene& scene, ElementIndex element, const Style& style, const Viewport& viewport,
                   PlacedImage& placed) {
    const std::string_view reference = Trim(scene.GetDocument().ValueOf(element, Name::kHref));
    if (reference.empty()) return false;
    const ImageContent& content = Find(reference);
    Viewport& natural = placed.natural;
    if (content.pixels)
        natural = {static_cast<double>(content.pixels->GetWidth()),
                   static_cast<double>(content.pixels->GetHeight())};
    else if (content.drawing)
        natural = FindImageSize(*content.drawing);
    if (!(natural.width > 0.0) || !(natural.height > 0.0)) return false;
    const auto width = scene.FindLength(element, Name::kWidth, style, viewport, Axis::kX);
    const auto height = scene.FindLength(element, Name::kHeight, style, viewport, Axis::kY);
    placed.content = &content;
    placed.place = {scene.LengthOf(element, Name::kX, style, viewport, Axis::kX),
                    scene.LengthOf(element, Name::kY, style, viewport, Axis::kY),
                    width.value_or(height ? *height * natural.width / natural.height : natural.width),
                    height.value_or(width ? *width * natural.height / natural.width : natural.height)};
    return placed.place.width > 0.0 && placed.place.height > 0.0;
}

void Drawing::DrawImage(ElementIndex element, const Style& style, const DrawState& state) {
    if (style.visibility != Visibility::kVisible || state.isWithinClip) return;
    PlacedImage placed;
    if (!images_.Place(scene_, element, style, state.viewport, placed)) return;
    const ImageContent& content = *placed.content;
    const Rectangle& place = placed.place;
    const Viewport& natural = placed.natural;
    const AspectRatio ratio =
        ReadAspectRatio(scene_.GetDocument().ValueOf(element, Name::kPreserveAspectRatio));
    const std::size_t mark = ends_.size();
    if (content.drawing) {
        DrawSvgImage(content, place, ratio, state);
        EndBack(mark);
        return;
    }
    if (style.hidesOverflow && ratio.slices && ratio.isKept) BeginRectangle(place, state.toPage);
    const Rectangle pixels{0.0, 0.0, natural.width, natural.height};
    const ORVMathAffine2D toPage = state.toPage * FitViewBox(pixels, ratio, place) *
                                   ORVMathAffine2D::Scaling(natural.width, natural.height);
    ORVPrintImage image{*content.pixels, toPage};
    image.isSmooth = style.imageRendering == ImageRendering::kSmooth;
    if (keepsIdentifiers_) image.id = scene_.GetDocument().ValueOf(element, Name::kId);
    Do(generator_.DrawImage(image));
    EndBack(mark);
}

// A drawing within the drawing: with its own styles, and without ways out.
void Drawing::DrawSvgImage(const ImageContent& content, const Rectangle& place, const AspectRatio& ratio,
                           const DrawState& state) {
    const Viewport size = FindImageSize(*content.drawing);
    Scene scene(*content.drawing, Medium{size.width, size.height});
    Images images({}, images_.GetDepth() + 1);
    Drawing inner(scene, generator_, budget_, images, fonts_);
    if (!IsInvertible(state.toPage)) return;
    // Its size is the viewport, or, with a view box, that of the place that it fills.
    const Rectangle natural{0.0, 0.0, size.width, size.height};
    BeginRectangle(place, state.toPage);
    if (IsStopped()) return;
    Do(inner.Draw(state.toPage * FitViewBox(natural, ratio, place), size, page_));
}

}  // namespace svg2
