// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/system/ORVBaseObject.h"
#include "platform/system/namespace.h"

/// Limits that bound the time and memory spent on hostile input. Each is documented here, and only here,
/// together with the attack that it prevents.
enum class ORVPrintLimit : std::uint8_t {
    /// Size of an input in bytes. Prevents: a device that never ends; a sparse file of terabytes.
    kInputBytes,
    /// Size of a compressed input after decompression, in bytes. Prevents: a few kilobytes of gzip data that
    /// expand to gigabytes of blanks.
    kUnpackedBytes,
    /// Decompressed bytes per compressed byte, checked once there are more than 16 MiB. Prevents the same
    /// attack below kUnpackedBytes.
    kUnpackedGrowth,
    /// Nesting depth of elements. Prevents: a million nested start tags, which would exhaust the stack
    /// because handlers recurse into children.
    kElementDepth,
    /// Factor by which a document may grow through entities and attribute defaults of its document type,
    /// checked once it exceeds 8 MiB. Prevents: ten entities, each of which expands to ten copies of the
    /// previous one.
    kEntityGrowth,
    /// Primitives that a model may allocate, duplicates included. The limit of last resort.
    kPrimitives,
    /// Duplicates of definitions; each primitive counts once, plus once for each 128 bytes of points and text
    /// in it. Every primitive that the document itself creates raises the limit by 3. Prevents: ten groups,
    /// each of which uses the previous one ten times in another colour; markers on the vertices of markers.
    kDuplicates,
    /// Primitives visited for bounding boxes and restyling while a model is built. Every primitive that the
    /// document itself creates raises the limit by 3. Prevents: the same as kDuplicates, with definitions
    /// that are shared and positioned by their bounding boxes.
    kVisits,
    /// Points of a path, polyline or polygon. Further points are dropped.
    kPathPoints,
    /// Numbers in a dash list. A longer list is ignored.
    kDashes,
    /// Pixels of a decoded image. Prevents: a PNG of a few kilobytes that declares a size of a hundred
    /// thousand by a hundred thousand pixels.
    kImagePixels,
    /// Pixels of all images of a document, less 100 for each byte of their files. Prevents: a thousand small
    /// PNGs of a single colour.
    kDocumentPixels,
    /// Primitives that one drawing visits; shared ones count each time. Prevents: a small model that takes
    /// practically forever to draw because its primitives are shared.
    kDrawn,
    /// Shared primitives drawn repeatedly by generators that cannot store them once; long text and many
    /// points count for more. Every distinct primitive raises the limit by 3. Also bounds the area painted by
    /// repeats and duplicates. Prevents: a million rectangles as large as the page from a small drawing.
    kRepeats,
    /// Pages of one output. Prevents: a million empty pages, which are 30 megabytes of input but as many
    /// output files.
    kPages,
    /// Pixels of one output page. Prevents: a page that declares a width of a kilometre.
    kPagePixels,
    /// Pixels of all pages of one output. Prevents: a hundred thousand pages, each of the largest size
    /// allowed.
    kOutputPixels,
    /// Bytes of one output, and of each temporary file used to produce it. Prevents: a small image of noise
    /// scaled to a large page, which hardly compresses: 17 kilobytes become 92 megabytes at 300 dots per
    /// inch.
    kOutputBytes,
    /// Pixels painted for all pages of one raster output, counting overlapping ones each time; operations
    /// slower than a solid colour count several times per pixel. Every pixel of the pages raises the limit by
    /// 100. Prevents: a thousand lines as wide as the page, millions of dashes, images on top of images.
    kPaintedPixels,
    /// Bytes of memory used by the command-line program; every byte of stored input beyond 32 MiB raises the
    /// limit by 32. Prevents: a million lines, each with markers in its own colours, which stay within all
    /// other limits but take gigabytes. Has no effect in a library, whose host has other means to limit
    /// memory.
    kMemory,
};

/// Values of the limits for the whole process; ORVThreadLimits overrides them for one thread. The host sets
/// them before it creates interpreters. Changing one while documents are being read is safe, but it is
/// unspecified which of those documents the new value applies to.
class ORV_PLATFORM_EXPORT ORVPrintLimits {
public:
    /// Description of a limit.
    struct Row {
        /// the limit
        ORVPrintLimit limit;
        std::string_view name;    ///< name for users to refer to it, such as "element-depth"
        std::uint64_t standard;   ///< default value
        std::uint64_t unchecked;  ///< value for untrusted files
        std::uint64_t greatest;   ///< maximum value
        std::string_view what;    ///< unit, worded to follow a number, such as "pages"
    };
    /// All limits, in the order of the enumeration.
    static std::span<const Row> Rows();
    /// The description of a limit.
    static const Row& RowOf(ORVPrintLimit limit);
    /// The limit with that name; null when there is none.
    static const Row* Find(std::string_view name);

    /// Current value of a limit, as seen by the calling thread.
    static std::uint64_t Get(ORVPrintLimit limit);
    /// Sets a limit for the process. A value above the maximum is clamped to it.
    static void Set(ORVPrintLimit limit, std::uint64_t value);

    /// Sets all limits to their default values, which suit trusted drawings of any size.
    static void UseStandard();
    /// Sets all limits to their values for untrusted files: a small document may still take seconds and
    /// hundreds of megabytes, but no more.
    static void UseUnchecked();
};

namespace orvprint {

/// Number of limits.
inline constexpr std::size_t kPrintLimitCount = 20;
/// How much each primitive of the document itself raises the limits of duplicates, visits and repeats, so
/// that these stop documents that expand out of proportion, not documents that are large.
inline constexpr std::uint64_t kGrowthPerPrimitive = 3;
/// Bytes of points and text that count as one primitive.
inline constexpr std::uint64_t kPayloadUnit = 128;
/// Pixels of an image that do not count towards the limit of a document, per byte of the image's file.
inline constexpr std::uint64_t kPixelsPerFileByte = 100;

}  // namespace orvprint

/// Overrides a limit of the process for the lifetime of this object.
class ORVScopedPrintLimit {
public:
    /// Sets the limit; the destructor restores the previous value.
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
