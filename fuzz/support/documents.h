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

/// Most primitives that an input may draw.
inline constexpr unsigned int kFuzzDrawLimit = 5'000;

/// Interprets a document and draws all its pages. Requires that sizes, titles and counts are consistent.
/// @return the result of printing
int PrintDocument(std::string_view document, bool usesDom, ORVPrintGenerator& generator);

/// Like PrintDocument, for a newly created interpreter.
int PrintAllPages(ORVPrintInterpreter& interpreter, ORVPrintGenerator& generator);

/// Requires that a generator found no fault; prints the fault otherwise.
void RequireNoFault(const CheckingGenerator& generator);

/// Counts the primitives that a walk over the model visits, shared ones each time, up to `limit`.
std::size_t CountVisits(const ORVPrtModel& model, std::size_t limit);

/// Writes an element and its content as XML.
std::string WriteElement(const ORVXmlNode& element);
std::string WriteStartTag(const ORVXmlNode& element);
/// Like WriteElement, with a `fill` attribute added to every element that has none.
std::string WriteWithFills(const ORVXmlNode& element);
/// Whether every element of a tree has a `fill` attribute.
bool StatesFills(const ORVXmlNode& root);

/// Prints to an output format. The first bytes choose parser, resolution, colours, sheets, and where the
/// output fails; the rest is the document. Calls to the sheets and to the format are checked on the way.
struct FormatRun {
    bool succeeded = false;
    std::size_t parts = 0;
    std::string output;  ///< complete if it succeeded
};
FormatRun PrintInFormat(std::string_view format, std::string_view bytes);
