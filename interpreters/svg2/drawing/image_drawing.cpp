// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/drawing/Drawing.h"
#include "interpreters/svg2/tree/page_size.h"
#include "interpreters/svg2/values/scanner.h"
#include "platform/print/ORVPrintModelRender.h"

namespace svg2 {

bool Images::Place(const Scene& scene, ElementIndex element, const Style& style, const Viewport& viewport,
                   PlacedImage& placed) {
    const std::string_view reference = Trim(scene.GetDocument().ValueOf(element, Name::kHref));
    if (reference.empty()) return false;
    ImageContent& content = Find(reference);
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
    ImageContent& content = *placed.content;
    const Rectangle& place = placed.place;
    const AspectRatio ratio =
        ReadAspectRatio(scene_.GetDocument().ValueOf(element, Name::kPreserveAspectRatio));
    PlaceImage(content, place, ratio, style.hidesOverflow, style.imageRendering,
               keepsIdentifiers_ ? scene_.GetDocument().ValueOf(element, Name::kId) : std::string_view(),
               state);
}

/// Draws an image that was read.
/// @param cuts  whether to clip it to `place`
void Drawing::PlaceImage(ImageContent& content, const Rectangle& place, const AspectRatio& ratio, bool cuts,
                         ImageRendering rendering, std::string_view id, const DrawState& state) {
    const std::size_t mark = ends_.size();
    if (content.drawing) {
        DrawSvgImage(content, place, ratio, state);
        EndBack(mark);
        return;
    }
    if (!content.isCounted && !budget_.TakePixels(*content.pixels)) {
        Do(ORVPrintModelRender::kTooManyPixels);
        return;
    }
    content.isCounted = true;
    if (cuts && ratio.slices && ratio.isKept) BeginRectangle(place, state.toPage);
    const double width = content.pixels->GetWidth(), height = content.pixels->GetHeight();
    const ORVMathAffine2D toPage = state.toPage * FitViewBox({0.0, 0.0, width, height}, ratio, place) *
                                   ORVMathAffine2D::Scaling(width, height);
    Do(generator_.DrawImage({*content.pixels, toPage, id, rendering == ImageRendering::kSmooth}));
    EndBack(mark);
}

/// Creates what is needed to draw the drawing of an image.
void Drawing::PrepareDrawing(ImageContent& content, const Viewport& size, int depth) {
    if (content.scene) return;
    budget_.AllowFor(*content.drawing);
    content.scene = std::make_unique<Scene>(*content.drawing, Medium{size.width, size.height},
                                            scene_.GetCascade().GetWork());
    content.images = std::make_unique<Images>(ORVUnicodeString(), depth);
}

// Draws a nested drawing, with its own styles and without external references.
void Drawing::DrawSvgImage(ImageContent& content, const Rectangle& place, const AspectRatio& ratio,
                           const DrawState& state) {
    const Viewport size = FindImageSize(*content.drawing);
    if (!IsInvertible(state.toPage)) return;
    PrepareDrawing(content, size, images_.GetDepth() + 1);
    Drawing inner(*content.scene, generator_, budget_, *content.images, fonts_);
    // The drawing is fitted into its area with its own size as the view box.
    const Rectangle natural{0.0, 0.0, size.width, size.height};
    BeginRectangle(place, state.toPage);
    if (IsStopped()) return;
    Do(inner.Draw(state.toPage * FitViewBox(natural, ratio, place), size, page_));
}

}  // namespace svg2
