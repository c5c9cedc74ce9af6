#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "generators/common/ORVColourMode.h"
#include "platform/print/ORVPrintGenerator.h"

class ORVOutput;

/// What the user may ask of a format.
struct ORVFormatOptions {
    double dotsPerInch = 90.0;                           ///< of pictures; a user unit is then a pixel
    ORVColourMode colourMode = ORVColourMode::kColour;   ///< of pictures' pixels
    std::uint64_t pixelLimit = 4'000'000'000;            ///< pictures of more pixels are refused
    std::uint64_t outputPixelLimit = 1'000'000'000'000;  ///< of all pictures of a document
    std::uint64_t paintLimit = std::uint64_t{1} << 56U;  ///< pixels that pictures may take painting for
    unsigned int threads = 0;  ///< that draw a picture; 0 for as many as the machine has processors
    /// When the document counts as made, in seconds since 1970; formats that state it state nothing without.
    std::optional<std::int64_t> creationTime;
};

/// A generator and its words for what went wrong.
class ORVFormatGenerator {
public:
    virtual ~ORVFormatGenerator() = default;
    virtual ORVPrintGenerator& Get() = 0;
    /// Empty when nothing went wrong, or when it was the output (which then says it).
    virtual const std::string& GetError() const = 0;
};

/// An output format by name. A new format is a class derived from ORVPrintGenerator and one row of the table.
struct ORVOutputFormat {
    std::string_view name;  ///< also the ending of its files
    bool onePageAPart;      ///< a page fills a file of this format
    /// Null when memory is spent. Nothing is thrown, neither here nor by the generator.
    std::unique_ptr<ORVFormatGenerator> (*create)(ORVOutput& output, const ORVFormatOptions& options);
    std::string_view otherName{};  ///< that means the same; empty for none
    bool makesDots = false;        ///< in black and white, greys become patterns of dots
};

/// All formats.
std::span<const ORVOutputFormat> ORVOutputFormats();
/// The format of that name, case of ASCII letters apart; null when there is none.
const ORVOutputFormat* ORVFindOutputFormat(std::string_view name);
