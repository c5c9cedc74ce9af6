// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <concepts>
#include <optional>
#include <string_view>

#include "platform/model/visit_primitive.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintOutlineBuilder.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/print/paints.h"

class ORVPrintDrawingBudget;

/// Draws the shapes, texts and images of one page, reusing memory between shapes. Consecutive open parts of
/// an outline are held back to be stroked as one line, so Flush must be called before anything else is drawn.
///
/// All functions return 1, an error of ORVPrintModelRender, or the generator's result when that was not 1.
class ORVPrintShapeDrawing {
public:
    /// All arguments must outlive this object.
    ORVPrintShapeDrawing(ORVPrintGenerator& generator, const ORVPrtImageElt& page,
                         ORVPrintDrawingBudget& budget)
        : generator_(generator),
          page_(page),
          budget_(budget),
          paints_(page.GetColourTable()),
          followsOrigins_(generator.FollowsOrigins()) {}

    /// Draws a primitive and, for a closed figure, its regions. Other containers draw nothing.
    /// @param outer  from the coordinates around the primitive to those of the page or symbol
    [[nodiscard]] int Draw(const ORVPrtGraphicPrimitiveElt& primitive, const ORVMathAffine2D& outer);
    /// Draws the line that is held back, if any.
    [[nodiscard]] int Flush();

    /// Sets the id of subsequent shapes; empty for none. The view must stay valid while it is in use.
    void SetId(std::string_view id) { id_ = id; }
    /// Sets the number of the next primitive, for generators that follow origins.
    void SetOrigin(std::uint32_t number) { origin_ = number; }

private:
    /// Consecutive open primitives that will be stroked as one line.
    struct PendingLine {
        ORVPrtStrokeAttributes stroke;
        ORVMathAffine2D toPage;
        bool endsWithCurve;
        ORVPrintOrigin origin;
    };

    // One overload per class; draws with the outer transformation and the primitive's own.
    int DrawAs(const ORVPrtClosedFigureElt& figure);
    int DrawAs(const ORVPrtTextElt& text);
    int DrawAs(const ORVPrtBitmapImageElt& bitmap);
    int DrawAs(const ORVPrtPolylineElt& polyline) { return AddOpen(polyline, false); }
    int DrawAs(const ORVPrtPolyCubicBezierElt& curve) { return AddOpen(curve, true); }
    int DrawAs(const ORVPrtPolyQuadraticBezierElt& curve) { return AddOpen(curve, true); }
    /// An arc outside a closed figure is drawn as a line, without a fill.
    int DrawAs(const ORVPrtEllipticalArcElt& arc) {
        return arc.GetDrawStyle() == kDrawNothing ? 1 : AddOpen(arc, true);
    }
    int DrawAs(const ORVPrtContainerElt& /*container*/) { return 1; }
    template <std::derived_from<ORVPrtStroked> Primitive>
    int DrawAs(const Primitive& primitive) {
        return DrawOutline(primitive);
    }

    template <class Primitive>
    int AddOpen(const Primitive& primitive, bool isCurve);
    template <class Primitive>
    int DrawOutline(const Primitive& primitive);
    int AddRegion(const ORVPrtClosedFigureRegionElt& region);
    int DrawPath(const ORVMathAffine2D& toPage, const ORVPrintFill* fill, const ORVPrintStroke* stroke);
    void NoteOrigin() {
        if (followsOrigins_) generator_.NoteOrigin({origin_, origin_});
    }
    /// Stores the text's clipping box in `clip_`. @return false when the text has none
    bool MakeClip(const ORVPrtTextElt& text, const ORVMathAffine2D& map);

    /// The paints of a primitive; null where its draw style has none.
    template <class Primitive>
    const ORVPrintFill* FillOf(const Primitive& primitive);
    template <class Primitive>
    const ORVPrintStroke* StrokeOf(const Primitive& primitive);
    template <class Primitive>
    ORVMathAffine2D MapOf(const Primitive& primitive) const {
        if (primitive.GetTransformAttributes().IsEmpty()) return outer_;
        return outer_ * primitive.GetTransformAttributes().GetAffine();
    }

    ORVPrintGenerator& generator_;
    const ORVPrtImageElt& page_;
    ORVPrintDrawingBudget& budget_;
    ORVPrintPaints paints_;
    ORVMathAffine2D outer_;
    const bool followsOrigins_;
    std::uint32_t origin_ = 0;
    std::string_view id_;
    std::optional<PendingLine> pending_;
    ORVPrintPath path_;
    ORVPrintOutlineBuilder outline_{path_};
    ORVPrintPath clip_;
};
