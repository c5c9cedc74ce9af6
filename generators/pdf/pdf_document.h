// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class PdfFile;

/// What readers are told of a page besides its content.
struct PdfPageEntry {
    unsigned int object = 0;
    std::string title, label;  ///< UTF-8, may be empty
};

/// What a document says of itself.
struct PdfDocumentFacts {
    std::string title;                         ///< UTF-8, may be empty
    std::optional<std::int64_t> creationTime;  ///< seconds since 1970
    unsigned int pageTree = 0;                 ///< object, to be written with the rest
    std::vector<PdfPageEntry> pages;
    std::string layers;                          ///< the catalogue's entry for layers; empty without
    std::map<std::string, std::string> targets;  ///< places by name, in the order that the format asks for
};

/// Writes the page tree, outline, page labels, places and metadata, and ends the file.
void FinishPdfDocument(PdfFile& file, const PdfDocumentFacts& facts);
