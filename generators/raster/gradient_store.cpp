// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/gradient_store.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <memory>
#include <new>
#include <optional>

#include "generators/common/path_range.h"
#include "generators/raster/plane_vectors.h"

namespace {

using Stop = RasterGradientStops::Stop;

constexpr std::uint32_t kFewestEntries = 256, kMostEntries = 1024;
// Maximum number of table entries between two stops.
constexpr float kEntriesBetween = 256.0F;

std::uint32_t BitsOf(const ORVPrintColour& colour) { return std::bit_cast<std::uint32_t>(colour); }

bool IsSameStop(const Stop& a, const Stop& b) {
    return a.offset == b.offset && BitsOf(a.colour) == BitsOf(b.colour);
}

std::uint64_t HashOf(std::span<const Stop> stops) {
    std::uint64_t hash = stops.size();
    for (const Stop& stop : stops) {
        const std::uint64_t bits =
            std::uint64_t{std::bit_cast<std::uint32_t>(stop.offset)} << 32U | BitsOf(stop.colour);
        hash = (hash ^ bits) * 0x9E3779B97F4A7C15U;
        hash ^= hash >> 29U;
    }
    return hash;
}

/// Number of table entries: enough for smooth transitions between neighbours, and for abrupt ones to stay
/// sharp.
std::uint32_t EntriesFor(std::span<const Stop> stops) {
    float shortest = 1.0F;
    for (std::size_t i = 0; i + 1 < stops.size(); ++i) {
        const Stop &a = stops[i], &b = stops[i + 1];
        // A change at either end needs no entry.
        if (BitsOf(a.colour) == BitsOf(b.colour) || b.offset == 0.0F || a.offset == 1.0F) continue;
        shortest = std::min(shortest, b.offset - a.offset);
    }
    std::uint32_t entries = kFewestEntries;
    while (entries < kMostEntries && static_cast<float>(entries) * shortest < kEntriesBetween) entries *= 2;
    return entries;
}

bool IsSameGradient(const RasterGradient& a, const RasterGradient& b) {
    const ORVMathAffine2D &m = a.fromDevice, &n = b.fromDevice;
    return a.stops == b.stops && a.kind == b.kind && a.spread == b.spread && m.m11 == n.m11 &&
           m.m12 == n.m12 && m.m21 == n.m21 && m.m22 == n.m22 && m.dx == n.dx && m.dy == n.dy &&
           a.startRadius == b.startRadius && a.growth == b.growth && a.distance == b.distance;
}

/// The similarity transformation that maps `origin` to (0, 0) and the end of the vector `toUnit` to (1, 0).
ORVMathAffine2D ToUnit(const ORVMathPoint2D& origin, const ORVMathVector2D& toUnit) {
    const double square = Dot(toUnit, toUnit);
    const double c = toUnit.x / square, s = toUnit.y / square;
    return ORVMathAffine2D{c, s, -s, c, 0.0, 0.0} * ORVMathAffine2D::Translation(-origin.x, -origin.y);
}

bool SetLinear(const ORVPrintGradient& from, const ORVMathAffine2D& fromDevice, RasterGradient& to) {
    const ORVMathVector2D along{from.end.x - from.start.x, from.end.y - from.start.y};
    if (!(Dot(along, along) > 0.0)) return false;
    to.fromDevice = ToUnit(from.start, along) * fromDevice;
    // A change this small across a page was meant to be none.
    constexpr double kParallel = 1e-9;
    double &x = to.fromDevice.m11, &y = to.fromDevice.m12;
    if (std::fabs(x) < std::fabs(y) * kParallel) x = 0.0;
    if (std::fabs(y) < std::fabs(x) * kParallel) y = 0.0;
    return true;
}

bool SetRadial(const ORVPrintGradient& from, const ORVMathAffine2D& fromDevice, RasterGradient& to) {
    const ORVMathVector2D apart{from.end.x - from.start.x, from.end.y - from.start.y};
    const double distance = std::sqrt(Dot(apart, apart));
    const double growth = from.endRadius - from.startRadius;
    // Normalised to the largest value, so that floats suffice.
    const double unit = std::max({distance, from.startRadius, from.endRadius});
    if (!(unit > 0.0) || (distance == 0.0 && growth == 0.0)) return false;
    const bool isConcentric = distance < unit * 1e-9 && growth != 0.0;
    to.kind = isConcentric ? RasterGradient::Kind::kConcentric : RasterGradient::Kind::kTwoCircles;
    const ORVMathVector2D right = isConcentric ? ORVMathVector2D{unit, 0.0} : apart * (unit / distance);
    to.fromDevice = ToUnit(from.start, right) * fromDevice;
    to.startRadius = static_cast<float>(from.startRadius / unit);
    to.growth = static_cast<float>(growth / unit);
    to.distance = static_cast<float>(distance / unit);
    const double curvature = (distance / unit) * (distance / unit) - (growth / unit) * (growth / unit);
    constexpr double kTouching = 1e-9;
    to.curvature = std::fabs(curvature) < kTouching ? 0.0F : static_cast<float>(curvature);
    return true;
}

}  // namespace

const RasterGradient* GradientStore::Find(const ORVPrintGradient& gradient, const ORVMathAffine2D& toDevice) {
    const std::optional<ORVMathAffine2D> inverse = toDevice.Inverse();
    if (gradient.stops.empty() || !inverse) return nullptr;
    const ORVMathAffine2D& fromDevice = *inverse;
    RasterGradient made;
    made.spread = gradient.spread;
    const bool isMade = gradient.kind == ORVPrintGradient::Kind::kLinear
                            ? SetLinear(gradient, fromDevice, made)
                            : SetRadial(gradient, fromDevice, made);
    if (!isMade || !made.fromDevice.IsFinite()) return nullptr;
    made.stops = FindStops(gradient.stops);
    for (const RasterGradient* known : latest_)
        if (known && IsSameGradient(*known, made)) return known;
    const auto* kept = new (arena_.Make<RasterGradient>(1)) RasterGradient(made);
    latest_[next_] = kept;
    next_ = (next_ + 1) % latest_.size();
    return kept;
}

const RasterGradientStops* GradientStore::FindStops(std::span<const ORVPrintGradientStop> stops) {
    draft_.clear();
    float least = 0.0F;
    for (const ORVPrintGradientStop& stop : stops) {
        // Written so that NaN becomes 1.
        const auto offset = static_cast<float>(stop.offset);
        if (offset > least) least = std::min(offset, 1.0F);
        draft_.push_back({least, stop.colour});
    }
    const std::uint64_t hash = HashOf(draft_);
    const auto [first, last] = stops_.equal_range(hash);
    for (auto entry = first; entry != last; ++entry) {
        const RasterGradientStops& known = *entry->second;
        if (std::equal(draft_.begin(), draft_.end(), known.stops, known.stops + known.count, IsSameStop))
            return &known;
    }
    auto* kept = arena_.Make<Stop>(draft_.size());
    std::uninitialized_copy(draft_.begin(), draft_.end(), kept);
    auto* made = new (arena_.Make<RasterGradientStops>(1)) RasterGradientStops;
    made->stops = kept;
    made->count = static_cast<std::uint32_t>(draft_.size());
    made->entries = EntriesFor(draft_);
    made->isGrey = std::all_of(draft_.begin(), draft_.end(), [](const Stop& stop) {
        return stop.colour.red == stop.colour.green && stop.colour.green == stop.colour.blue;
    });
    stops_.emplace(hash, made);
    return made;
}

void GradientStore::Clear() {
    stops_.clear();
    latest_ = {};
}
