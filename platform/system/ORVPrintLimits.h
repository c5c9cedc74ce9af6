// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/system/ORVBaseObject.h"
#include "platform/system/namespace.h"

/// The limits that let hostile input end in an answer, within bounded time and memory. Each stands here, and
/// here only, with the attack that it answers.
enum class ORVPrintLimit : std::uint8_t {
    /// Bytes of an input. A device that never ends, a sparse file of terabytes.
    kInputBytes,
    /// Bytes that a packed input may unpack to. A few kilobytes of gzip data that hold gigabytes of blanks.
    kUnpackedBytes,
    /// Unpacked bytes for one packed byte, once there are more than 16 MiB. The same, below the limit above.
    kUnpackedGrowth,
    /// Elements within elements. Handlers call each other for children: a million start tags would use up the
    /// stack.
    kElementDepth,
    /// Times its size that a document may grow to by entities, and by attributes that its type supplies, once
    /// there are more than 8 MiB. Ten entities, each of which is ten times the one before.
    kEntityGrowth,
    /// Primitives that a model may allocate, duplicates included. The bound of last resort.
    kPrimitives,
    /// Duplicates of definitions; one for each primitive and for each 128 bytes of points and text in it.
    /// Three
    /// more for every primitive that the document itself makes. Ten groups, each of which uses the one before
    /// ten times in another colour; markers on the vertices of markers.
    kDuplicates,
    /// Primitives that are visited for boxes and restyling while a model is built; three more for every
    /// primitive that the document itself makes. As above, with definitions that are shared and placed by
    /// their boxes.
    kVisits,
    /// Points of a path, a polyline or a polygon. What has more is cut off there.
    kPathPoints,
    /// Numbers in a list of dashes. A longer one counts as absent.
    kDashes,
    /// Pixels of a decoded image. A PNG of a few kilobytes may say that it is a hundred thousand pixels wide
    /// and high.
    kImagePixels,
    /// Pixels of all images of a document, less 100 for each byte of their files. A thousand small PNGs of
    /// white.
    kDocumentPixels,
    /// Primitives that one drawing visits, shared ones each time. Sharing makes a small model draw without
    /// end.
    kDrawn,
    /// What is drawn again because it is shared, by generators that do not store it once; much text and many
    /// points count more. Three more for every distinct primitive. Also bounds the area that repeats and
    /// duplicates paint: a small drawing may be a rectangle as large as the page, a million times.
    kRepeats,
    /// Pages of one output. A million empty pages are thirty megabytes of input, and as many files.
    kPages,
    /// Pixels of an output page. A page may say that it is a kilometre wide.
    kPagePixels,
    /// Pixels of all pages of one output. Each page may be as large as a page may be, and there may be a
    /// hundred thousand of them.
    kOutputPixels,
    /// Bytes of one output, and of the temporary data that it grows in. A small image of noise that is
    /// stretched
    /// over a large page hardly compresses: 17 kilobytes become 92 megabytes at 300 dots an inch.
    kOutputBytes,
    /// Pixels that are painted for all pages of one output of pixels, those on top of each other each time;
    /// what takes longer than a pixel of one colour counts as so many more. A hundred for every pixel of the
    /// pages
    /// besides. A thousand lines as wide as the page, millions of dashes, images over images.
    kPaintedPixels,
    /// Bytes of memory that the command takes; 32 more for every byte of inputs past 32 MiB, as they are
    /// stored. A million lines, each with markers in colours of its own, are within every other limit and
    /// gigabytes all the same. A host has means of its own: in a library, this limit has no effect.
    kMemory,
};

/// Values of the limits, for the whole process; ORVThreadLimits has others for a thread. A host sets them
/// before it creates interpreters; setting one while documents are read is safe, and which of them see it is
/// open.
class ORV_PLATFORM_EXPORT ORVPrintLimits {
public:
    /// What is known of a limit.
    struct Row {
        /// Which one it is.
        ORVPrintLimit limit;
        std::string_view name;    ///< for hosts that let users choose, such as "element-depth"
        std::uint64_t standard;   ///< value when the host says nothing
        std::uint64_t unchecked;  ///< value for files that nobody has checked
        std::uint64_t greatest;   ///< value that it may have at most
        std::string_view what;    ///< of what there may be so many, to follow a number
    };
    /// All limits, in the order of the enumeration.
    static std::span<const Row> Rows();
    /// The row of a limit.
    static const Row& RowOf(ORVPrintLimit limit);
    /// The limit of that name; null when there is none.
    static const Row* Find(std::string_view name);

    /// The value of a limit at this moment.
    static std::uint64_t Get(ORVPrintLimit limit);
    /// A value beyond the greatest becomes that.
    static void Set(ORVPrintLimit limit, std::uint64_t value);

    /// Sets all to what suits the module's own trade: drawings of a known origin, however large.
    static void UseStandard();
    /// Sets all to what suits files that nobody has checked: a small document may still take seconds and
    /// hundreds of megabytes, but no more.
    static void UseUnchecked();
};

namespace orvprint {

/// Number of limits.
inline constexpr std::size_t kPrintLimitCount = 20;
/// Things that one primitive of the document adds to the limits of duplicates, visits and repeats, so that
/// these stop what is out of all proportion and not what is large.
inline constexpr std::uint64_t kGrowthPerPrimitive = 3;
/// Bytes of points and text that count as much as a primitive.
inline constexpr std::uint64_t kPayloadUnit = 128;
/// Pixels of an image for each byte of its file that do not count for a document.
inline constexpr std::uint64_t kPixelsPerFileByte = 100;

}  // namespace orvprint

/// Holds a limit at another value for as long as it lives.
class ORVScopedPrintLimit {
public:
    /// Sets the limit; the destructor sets it back.
    ORVScopedPrintLimit(ORVPrintLimit limit, std::uint64_t value)
        : limit_(limit), old_(ORVPrintLimits::Get(limit)) {
        ORVPrintLimits::Set(limit, value);
    }
    ~ORVScopedPrintLimit() { ORVPrintLimits::Set(limit_, old_); }
    ORVScopedPrintLimit(const ORVScopedPrintLimit&) = delete;
    ORVScopedPrintLimit& operator=(const ORVScopedPrintLimit&) = delete;

private:
    ORVPrintLimit limit_;
    std::uint64_t old_;
};
