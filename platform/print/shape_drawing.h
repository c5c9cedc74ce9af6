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

/// Draws the shapes, texts and images of one page, keeping what can be used again from one to the next.
/// Pieces of an outline that come one after the other are held back, to be stroked as one line; so what
/// stands before something else in the order of the page has to be flushed.
///
/// Every call answers with 1, a failure of ORVPrintModelRender, or what the generator returned.
class ORVPrintShapeDrawing {
public:
    /// All three must outlive this object.
    ORVPrintShapeDrawing(ORVPrintGenerator& generator, const ORVPrtImageElt& page,
                         ORVPrintDrawingBudget& budget)
        : generator_(generator),
          page_(page),
          budget_(budget),
          paints_(page.GetColourTable()),
          followsOrigins_(generator.FollowsOrigins()) {}

    /// Draws a primitive and, when it is a closed figure, what it consists of. Other containers draw nothing.
    /// @param outer  from the coordinates around the primitive to those of the page or symbol
    [[nodiscard]] int Draw(const ORVPrtGraphicPrimitiveElt& primitive, const ORVMathAffine2D& outer);
    /// Draws the line that was held back, if there is one.
    [[nodiscard]] int Flush();

    /// What is drawn from now on is called so; empty for nothing. A view that must outlive its use.
    void SetId(std::string_view id) { id_ = id; }
    /// The number of the primitive that is drawn next, for generators that follow origins.
    void SetOrigin(std::uint32_t number) { origin_ = number; }

private:
    /// Open primitives that follow each other, to be stroked as one line.
    struct PendingLine {
        ORVPrtStrokeAttributes stroke;
        ORVMathAffine2D toPage;
        bool endsWithCurve;
        ORVPrintOrigin origin;
    };

    // One overload a class: draws it with the outer map and its own.
    int DrawAs(const ORVPrtClosedFigureElt& figure);
    int DrawAs(const ORVPrtTextElt& text);
    int DrawAs(const ORVPrtBitmapImageElt& bitmap);
    int DrawAs(const ORVPrtPolylineElt& polyline) { return AddOpen(polyline, false); }
    int DrawAs(const ORVPrtPolyCubicBezierElt& curve) { return AddOpen(curve, true); }
    int DrawAs(const ORVPrtPolyQuadraticBezierElt& curve) { return AddOpen(curve, true); }
    /// Here the arc stands by itself, as a line does: it encloses nothing that could be filled.
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
    /// Puts the text's clipping box into the clip. @return false when it has none
    bool MakeClip(const ORVPrtTextElt& text, const ORVMathAffine2D& map);

    /// The paints of a primitive, as far as its draw style has them.
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
