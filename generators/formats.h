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

/// An output format. To add one, derive a class from ORVPrintGenerator and add a row to the table in
/// formats.cpp.
struct ORVOutputFormat {
    std::string_view name;       ///< name of the format and extension of its files, without the period
    std::string_view mediaType;  ///< registered media type, or the one that printers use
    bool onePageAPart;           ///< each page is written to a separate part (file)
    /// Creates a generator that writes to `output`, which must outlive it. Returns null on failure, such as
    /// lack of memory. Neither this function nor the generator throws.
    std::unique_ptr<ORVFormatGenerator> (*create)(ORVOutput& output, const ORVFormatOptions& options);
    std::string_view otherName{};  ///< alternative name; empty if there is none
    bool makesDots = false;        ///< ORVColourMode::kMono dithers greys
    bool hasPixels = false;        ///< pages are raster images
};

/// All formats, in a static table.
ORV_GENERATORS_EXPORT std::span<const ORVOutputFormat> ORVOutputFormats();
/// Finds a format by `name` or `otherName`, ignoring the case of ASCII letters. Returns null if there is
/// none.
ORV_GENERATORS_EXPORT const ORVOutputFormat* ORVFindOutputFormat(std::string_view name);
