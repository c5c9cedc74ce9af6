// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"

/// A gradient in SVG, without its identifier.
struct SvgGradientText {
    std::string_view element;  ///< element name
    std::string attributes;    ///< each preceded by a space; all that a template could supply
    std::string stops;         ///< stop elements
};

/// @param toElement  from the gradient's coordinates to those of the painted element
SvgGradientText WriteSvgGradient(const ORVPrintGradient& gradient, const ORVMathAffine2D& toElement);
