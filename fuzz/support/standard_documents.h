// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

/// Draws all pages of a drawing of standard SVG onto a generator that looks at everything, with low limits.
/// @param takesSymbols  what the generator answers to symbols
void DrawStandard(const std::string& document, bool takesSymbols = false);

/// A text as part of a document, in an attribute or between elements: nothing of it has a meaning in XML.
std::string InDocument(std::string_view text);

/// An "svg" element of 100 by 100 px with that content, and SVG's and XLink's namespaces.
std::string StandardDrawing(const std::string& content);

/// The next line of a text, which is cut off it; empty when there is none.
std::string_view TakeLine(std::string_view& text);
