// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "generators/common/ORVFormatGenerator.h"
#include "generators/common/ORVFormatOptions.h"
#include "generators/common/export.h"
#include "platform/print/ORVPrintGenerator.h"

class ORVOutput;

/// An output format by name. A new format is a class derived from ORVPrintGenerator and one row of the table.
struct ORVOutputFormat {
    std::string_view name;       ///< also the ending of its files
    std::string_view mediaType;  ///< as registered, or as printers call it
    bool onePageAPart;           ///< a page fills a file of this format
    /// Null when out of memory. Nothing is thrown, neither here nor by the generator.
    std::unique_ptr<ORVFormatGenerator> (*create)(ORVOutput& output, const ORVFormatOptions& options);
    std::string_view otherName{};  ///< that means the same; empty for none
    bool makesDots = false;        ///< in black and white, greys become patterns of dots
    bool hasPixels = false;        ///< pages are pixels
};

/// All formats.
ORV_GENERATORS_EXPORT std::span<const ORVOutputFormat> ORVOutputFormats();
/// The format of that name, case of ASCII letters apart; null when there is none.
ORV_GENERATORS_EXPORT const ORVOutputFormat* ORVFindOutputFormat(std::string_view name);
