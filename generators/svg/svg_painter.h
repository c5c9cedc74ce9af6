// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

class SvgSharedDefinitions;
class SvgWriter;
struct SvgTextPiece;

/// The coordinates that are being drawn in: the page's, or those of a symbol.
struct SvgSpace {
    int places = 3;         ///< digits after the period of coordinates; on the page, a third of a micrometre
    double limit = 0.0;     ///< of coordinates; what lies farther out is cut off
    double scale = 1.0;     ///< page units in one of its own
    bool isSymbol = false;  ///< whether what is drawn may show at several places
    /// An identifier, unless several places would share it.
    std::string_view IdOf(std::string_view given) const { return isSymbol ? std::string_view() : given; }
};

/// Writes shapes, texts and images as elements.
class SvgPainter {
public:
    SvgPainter(SvgWriter& writer, SvgSharedDefinitions& definitions)
        : writer_(writer), definitions_(definitions) {}

    void DrawShape(const ORVPrintShape& shape, const SvgSpace& space);
    void DrawText(const ORVPrintText& text, const SvgSpace& space);
    void DrawImage(const ORVPrintImage& image, const SvgSpace& space);
    /// Writes a use element. @param attributes  each with a blank before it
    void PutUse(std::string_view id, std::string_view attributes, const ORVMathAffine2D& map,
                const SvgSpace& space);
    /// Opens a group that shows only what is inside of a path.
    void OpenClip(const ORVPrintPath& outline, const SvgSpace& space);
    void OpenClip(const ORVPrintClipPath& clip, const SvgSpace& space);

private:
    /// A shape's paint and the transform of its element, which comes on top of the path's own map.
    struct Paint {
        const ORVPrintFill* fill;
        const ORVPrintStroke* stroke;
        double scale;  // of the stroke's lengths
        ORVMathAffine2D transform;
    };
    /// The identifier of what paints an inside besides a colour; empty for nothing.
    std::string FindPaint(const ORVPrintFill* fill, const ORVMathAffine2D& elementToPage);
    std::string FindPaint(const ORVPrintStroke* stroke, const ORVMathAffine2D& elementToPage);
    void AddShape(std::string_view id, const ORVPrintPath& path, const ORVMathAffine2D& map,
                  const Paint& paint, const SvgSpace& space);
    void AddGeometry(const ORVPrintPath& path, const ORVMathAffine2D& map, bool mayBeNamed, int places);
    void AddTextPiece(const ORVPrintText& text, std::string_view id, const SvgTextPiece& piece,
                      double spacing, const SvgSpace& space);

    SvgWriter& writer_;
    SvgSharedDefinitions& definitions_;
    ORVPrintPath fitted_, fittedStroke_;  // room for paths
    std::string name_, style_, rest_;     // of the element at hand
};
