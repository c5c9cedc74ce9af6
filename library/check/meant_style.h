// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/xml/ORVXmlNode.h"

/// Properties that references or the interpreter's parsers treat differently from SVG, as bits.
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

/// The values that some properties have according to SVG, as opposed to what the interpreter makes of them. A
/// value that is copied as it is inherited.
struct MeantStyle {
    double opacity = 1.0;  ///< product of the opacity of the element and its ancestors
    double fillOpacity = 1.0, strokeOpacity = 1.0;
    bool isOpacityTold = false;  ///< an opacity was already reported; do not report it again
    bool isBlendTold = false;    ///< the blended content was already reported
    double ownOpacity = 1.0;     ///< opacity of this element alone
    bool fillIsReference = false;
    bool fillIsCurrent = false, strokeIsCurrent = false;  ///< the paint is "currentColor"
    bool isClipped = true;                           ///< by the "overflow" of this element; not inherited
    double miterLimit = 4.0;                         ///< maximum miter length, in stroke widths
    bool widthHasUnit = false, sizeHasUnit = false;  ///< of stroke-width and font-size; see HasPhysicalUnit
    bool keepsBlanks = false;                        ///< xml:space="preserve"
    /// SaidOf bits of the properties specified since the start of the enclosing definition.
    std::uint32_t said = 0;

    /// Applies what an element specifies.
    void TakeIn(const ORVXmlNode& element);
    /// Resets the style at the start of a definition, whose paint comes from its references.
    void BeginDefinition() { *this = {.keepsBlanks = keepsBlanks}; }

    bool Says(SaidOf property) const { return (said & static_cast<std::uint32_t>(property)) != 0; }

private:
    void TakeInProperty(std::string_view name, std::string_view value);
    void TakeInOpacity(double& part, std::string_view value);
};
