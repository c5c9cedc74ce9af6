// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// The drawing calls of a standard SVG drawing, one per line, in px; nested calls are indented. Shapes and
/// texts show their paints and the bounding box of their points. Filters are written as in SVG, in their own
/// units; an infinite region is shown as -1000 to 1000.
/// @param takesTiles  whether the generator repeats tiles itself
std::string SketchCalls(const std::string& document, bool takesTiles = false);

/// The same for the content of an "svg" element of 100 by 100 px that declares the SVG and XLink namespaces.
std::string SketchContent(const std::string& content, bool takesTiles = false);
