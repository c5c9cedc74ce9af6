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

/// Coordinates being drawn in: those of the page or of a symbol.
struct SvgSpace {
    int places = 3;         ///< decimal places of coordinates; on the page, a third of a micrometre
    double limit = 0.0;     ///< maximum absolute coordinate; anything beyond is clipped
    double scale = 1.0;     ///< page units per unit of this space
    bool isSymbol = false;  ///< whether the content may appear at several places
    /// The identifier to write; none if several places would share it.
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
    /// Writes a use element. @param attributes  each preceded by a space
    void PutUse(std::string_view id, std::string_view attributes, const ORVMathAffine2D& map,
                const SvgSpace& space);
    /// Opens a group clipped to a path.
    void OpenClip(const ORVPrintPath& outline, const SvgSpace& space);
    void OpenClip(const ORVPrintClipPath& clip, const SvgSpace& space);

private:
    /// The paint of a shape, and the transform of its element, which applies after the path's own
    /// transformation.
    struct Paint {
        const ORVPrintFill* fill;
        const ORVPrintStroke* stroke;
        double scale;  // factor for stroke lengths
        ORVMathAffine2D transform;
    };
    /// Identifier of the gradient or pattern to paint with; empty for none.
    std::string FindPaint(const ORVPrintFill* fill, const ORVMathAffine2D& elementToPage);
    std::string FindPaint(const ORVPrintStroke* stroke, const ORVMathAffine2D& elementToPage);
    void AddShape(std::string_view id, const ORVPrintPath& path, const ORVMathAffine2D& map,
                  const Paint& paint, const SvgSpace& space);
    void AddGeometry(const ORVPrintPath& path, const ORVMathAffine2D& map, bool mayBeNamed, int places);
    void AddTextPiece(const ORVPrintText& text, std::string_view id, const SvgTextPiece& piece,
                      const SvgSpace& space);

    SvgWriter& writer_;
    SvgSharedDefinitions& definitions_;
    ORVPrintPath fitted_, fittedStroke_;  // buffers for paths
    std::string name_, style_, rest_;     // of the current element
};
