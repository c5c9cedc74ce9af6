// SPDX-License-Identifier: Apache-2.0
#include "platform/system/ORVPrintLimits.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <utility>

#include "platform/system/ORVThreadLimits.h"

namespace {

using Row = ORVPrintLimits::Row;

constexpr std::uint64_t kThousand = 1'000, kMillion = 1'000'000, kBillion = 1'000'000'000;
constexpr std::uint64_t kMebibyte = std::uint64_t{1} << 20U;
constexpr std::uint64_t kMost = std::uint64_t{1} << 56U;

// The walker recurses with the depth of elements; this depth fits into a stack of one megabyte.
constexpr std::uint64_t kDeepest = 1024;

constexpr std::array<Row, kPrintLimitCount> kRows{{
    {ORVPrintLimit::kInputBytes, "input-bytes", kMost, 1024 * kMebibyte, kMost, "bytes"},
    {ORVPrintLimit::kUnpackedBytes, "unpacked-bytes", 1024 * kMebibyte, 1024 * kMebibyte, kMost,
     "bytes when decompressed"},
    {ORVPrintLimit::kUnpackedGrowth, "unpacked-growth", 250, 250, kMost, "times its size when decompressed"},
    {ORVPrintLimit::kElementDepth, "element-depth", kDeepest, kDeepest, kDeepest,
     "elements within each other"},
    {ORVPrintLimit::kEntityGrowth, "entity-growth", 100, 100, kMillion, "times its size with entities"},
    {ORVPrintLimit::kPrimitives, "primitives", 50 * kMillion, 50 * kMillion, kMost, "primitives"},
    {ORVPrintLimit::kDuplicates, "duplicates", 50 * kMillion, 2 * kMillion, kMost,
     "duplicates of definitions"},
    {ORVPrintLimit::kVisits, "visits", 100 * kMillion, 20 * kMillion, kMost,
     "visits to primitives for boxes and colours"},
    {ORVPrintLimit::kPathPoints, "path-points", 50 * kMillion, 10 * kMillion, kMost, "points in one path"},
    {ORVPrintLimit::kDashes, "dashes", kMillion, 10 * kThousand, kMost, "numbers in a list of dashes"},
    {ORVPrintLimit::kImagePixels, "image-pixels", std::uint64_t{1} << 28U, std::uint64_t{1} << 27U, kMost,
     "pixels in one image"},
    {ORVPrintLimit::kDocumentPixels, "document-pixels", kMost, std::uint64_t{1} << 28U, kMost,
     "pixels in all images"},
    {ORVPrintLimit::kDrawn, "drawn", 200 * kMillion, 200 * kMillion, kMost, "primitives to draw"},
    {ORVPrintLimit::kRepeats, "repeats", 200 * kMillion, kMillion, kMost, "repeats to draw"},
    {ORVPrintLimit::kPages, "pages", kMost, 100 * kThousand, kMost, "pages"},
    {ORVPrintLimit::kPagePixels, "page-pixels", 4 * kBillion, 4 * kBillion, kMost, "pixels on a page"},
    {ORVPrintLimit::kOutputPixels, "output-pixels", 1000 * kBillion, 20 * kBillion, kMost,
     "pixels on all pages"},
    {ORVPrintLimit::kOutputBytes, "output-bytes", kMost, 2048 * kMebibyte, kMost, "bytes of output"},
    {ORVPrintLimit::kPaintedPixels, "painted-pixels", kMost, 200 * kBillion, kMost, "pixels to paint"},
    {ORVPrintLimit::kMemory, "memory", kMost, 900 * kMebibyte, kMost, "bytes of memory"},
}};

constexpr bool IsOrdered() {
    for (std::size_t i = 0; i < kRows.size(); ++i)
        if (static_cast<std::size_t>(kRows[i].limit) != i) return false;
    return true;
}
static_assert(IsOrdered());

// Zero means the default value, so that the order of initialisation does not matter.
std::array<std::atomic<std::uint64_t>, kPrintLimitCount> changed;

// A plain pointer, because a thread_local variable with a destructor would allocate memory.
constinit thread_local const ORVPrintLimitValues* ofThread = nullptr;

}  // namespace

std::span<const Row> ORVPrintLimits::Rows() { return kRows; }

const Row& ORVPrintLimits::RowOf(ORVPrintLimit limit) { return kRows[static_cast<std::size_t>(limit)]; }

const Row* ORVPrintLimits::Find(std::string_view name) {
    const auto* const found =
        std::find_if(kRows.begin(), kRows.end(), [&](const Row& row) { return row.name == name; });
    return found == kRows.end() ? nullptr : found;
}

std::uint64_t ORVPrintLimits::Get(ORVPrintLimit limit) {
    if (ofThread) return ofThread->Get(limit);
    const auto index = static_cast<std::size_t>(limit);
    const std::uint64_t value = changed[index].load(std::memory_order_relaxed);
    return value == 0 ? kRows[index].standard : value - 1;
}

void ORVPrintLimits::Set(ORVPrintLimit limit, std::uint64_t value) {
    const auto index = static_cast<std::size_t>(limit);
    changed[index].store(std::min(value, kRows[index].greatest) + 1, std::memory_order_relaxed);
}

void ORVPrintLimits::UseStandard() {
    for (const Row& row : kRows) Set(row.limit, row.standard);
}

void ORVPrintLimits::UseUnchecked() {
    for (const Row& row : kRows) Set(row.limit, row.unchecked);
}

ORVPrintLimitValues::ORVPrintLimitValues() {
    for (const Row& row : kRows) Set(row.limit, row.unchecked);
}

void ORVPrintLimitValues::Set(ORVPrintLimit limit, std::uint64_t value) {
    values_[static_cast<std::size_t>(limit)] = std::min(value, ORVPrintLimits::RowOf(limit).greatest);
}

ORVThreadLimits::ORVThreadLimits(const ORVPrintLimitValues* values)
    : before_(std::exchange(ofThread, values)) {}

ORVThreadLimits::~ORVThreadLimits() { ofThread = before_; }
