// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

/// Draws all pages of a standard SVG drawing onto a checking generator, with low limits.
/// @param takesSymbols  the generator's answer to symbols
void DrawStandard(const std::string& document, bool takesSymbols = false);

/// Prints the first page of a standard SVG drawing to PNG, with low limits: with patterns, filters and layers
/// as the command prints them. The calls on the way are checked.
/// @return the file; empty if printing failed
std::string PrintStandardPage(const std::string& document, double dotsPerInch);

/// Escapes text for attributes and element content: none of it has a meaning in XML.
std::string InDocument(std::string_view text);

/// Returns an `svg` element of 100 by 100 px with `content`, which declares the namespaces of SVG and XLink.
std::string StandardDrawing(const std::string& content);

/// Removes the first line from a text. @return the line; empty if there is none
std::string_view TakeLine(std::string_view& text);
