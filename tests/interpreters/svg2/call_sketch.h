// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// What a drawing of standard SVG draws, one line a call, in px: what begins is indented by what it begins
/// in. Shapes and texts show their paints and the box of their points. Filters are written as in SVG, in
/// their own units; what reaches everywhere has a region of -1000 to 1000.
/// @param takesTiles  whether the generator repeats tiles itself
std::string SketchCalls(const std::string& document, bool takesTiles = false);

/// The same for the content of an "svg" element of 100 by 100 px that declares SVG's and XLink's namespaces.
std::string SketchContent(const std::string& content, bool takesTiles = false);
