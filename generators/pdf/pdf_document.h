// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class PdfFile;

/// Data of a page besides its content.
struct PdfPageEntry {
    unsigned int object = 0;
    std::string title, label;  ///< UTF-8, may be empty
};

/// Data of the document as a whole.
struct PdfDocumentFacts {
    std::string title;                         ///< UTF-8, may be empty
    std::optional<std::int64_t> creationTime;  ///< seconds since 1970
    unsigned int pageTree = 0;                 ///< reserved object; written by FinishPdfDocument
    std::vector<PdfPageEntry> pages;
    std::string layers;                          ///< catalogue entry for layers; empty if there are none
    std::map<std::string, std::string> targets;  ///< named destinations, in the order that PDF requires
};

/// Writes the page tree, outline, page labels, destinations and metadata, and ends the file.
void FinishPdfDocument(PdfFile& file, const PdfDocumentFacts& facts);
