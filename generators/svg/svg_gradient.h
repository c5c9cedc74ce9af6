// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"

/// A gradient as SVG writes it, but for its identifier.
struct SvgGradientText {
    std::string_view element;  ///< its name
    std::string attributes;    ///< each with a blank before it; all that could be taken from a template
    std::string stops;         ///< elements
};

/// @param toElement  from the gradient's coordinates to those of the element that it paints
SvgGradientText WriteSvgGradient(const ORVPrintGradient& gradient, const ORVMathAffine2D& toElement);
