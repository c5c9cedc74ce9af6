// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/xml/ORVXmlNode.h"

/// Properties that a reference or a reader of the interpreter takes otherwise than SVG, as bits.
enum class SaidOf : std::uint32_t {
    kFill = 1U << 0U,
    kStroke = 1U << 1U,
    kFillRule = 1U << 2U,
    kFillOpacity = 1U << 3U,
    kStrokeOpacity = 1U << 4U,
    kStrokeWidth = 1U << 5U,
    kLineCap = 1U << 6U,
    kLineJoin = 1U << 7U,
    kDashes = 1U << 8U,
    kFontFamily = 1U << 9U,
    kFontSize = 1U << 10U,
    kFontWeight = 1U << 11U,
    kTextAnchor = 1U << 12U,
    kLetterSpacing = 1U << 13U,
    kWritingMode = 1U << 14U,
    kNone = 0
};

/// What SVG makes of some properties where the walk stands, apart from what the interpreter makes of them. A
/// value, handed down as the drawing state is.
struct MeantStyle {
    double opacity = 1.0;  ///< of the element and of all that is around it
    double fillOpacity = 1.0, strokeOpacity = 1.0;
    bool isOpacityTold = false;  ///< something was found about an opacity already: it need not be told again
    bool isBlendTold = false;    ///< and about all that is blended with it
    double ownOpacity = 1.0;     ///< of this very element
    bool fillIsReference = false;
    bool fillIsCurrent = false, strokeIsCurrent = false;  ///< the paint is "currentColor"
    bool isClipped = true;    ///< by the "overflow" of this very element; not handed down
    double miterLimit = 4.0;  ///< how far corners reach, in stroke widths
    bool widthHasUnit = false, sizeHasUnit = false;  ///< of strokes and of fonts, see HasPhysicalUnit
    bool keepsBlanks = false;                        ///< xml:space="preserve"
    std::uint32_t said = 0;  ///< what was said since the definition began that the walk is in

    /// Takes in what an element says.
    void TakeIn(const ORVXmlNode& element);
    /// Goes on as where a definition begins, which is painted by what refers to it.
    void BeginDefinition() { *this = {.keepsBlanks = keepsBlanks}; }

    bool Says(SaidOf property) const { return (said & static_cast<std::uint32_t>(property)) != 0; }

private:
    void TakeInProperty(std::string_view name, std::string_view value);
    void TakeInOpacity(double& part, std::string_view value);
};
