// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

class CheckingGenerator;
class ORVPrintGenerator;
class ORVPrintInterpreter;
class ORVPrtModel;
struct ORVXmlNode;

/// Primitives that an input may draw.
inline constexpr unsigned int kFuzzDrawLimit = 5'000;

/// Interprets a document and draws all its pages. Sizes, titles and counts are asked for and required to fit
/// together.
/// @return what printing returned
int PrintDocument(std::string_view document, bool usesDom, ORVPrintGenerator& generator);

/// As PrintDocument, for an interpreter that was just made.
int PrintAllPages(ORVPrintInterpreter& interpreter, ORVPrintGenerator& generator);

/// Requires that a generator found no fault, and says which it found.
void RequireNoFault(const CheckingGenerator& generator);

/// How many primitives a walk over the model visits, shared ones each time; `limit` when there are as many.
std::size_t CountVisits(const ORVPrtModel& model, std::size_t limit);

/// Writes an element and all in it as text again.
std::string WriteElement(const ORVXmlNode& element);
std::string WriteStartTag(const ORVXmlNode& element);
/// As WriteElement, every element stating a fill.
std::string WriteWithFills(const ORVXmlNode& element);
/// Whether every element of a tree states a fill.
bool StatesFills(const ORVXmlNode& root);

/// Prints to an output format. The first bytes choose parser, resolution, colours, sheets, and where the
/// output fails; the rest is the document. What both the sheets and the format are given is looked at on the
/// way.
struct FormatRun {
    bool succeeded = false;
    std::size_t parts = 0;
    std::string output;  ///< whole when it succeeded
};
FormatRun PrintInFormat(std::string_view format, std::string_view bytes);
