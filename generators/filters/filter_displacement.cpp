// SPDX-License-Identifier: Apache-2.0
#include "generators/filters/filter_displacement.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>

#include "generators/filters/pixel_steps.h"

namespace {

/// Converts a channel of the map to a displacement.
class Displacer {
public:
    Displacer(double scale, int channel)
        : scale_(UsableNumber(scale)), channel_(std::clamp(channel, 0, kFilterChannels - 1)) {}
    /// Transparent pixels have colours of 0.
    double operator()(const std::uint16_t* map) const {
        const double full = channel_ == 3 ? kFilterFull : map[3];
        const double value = full > 0.0 ? std::min(1.0, map[channel_] / full) : 0.0;
        return scale_ * (value - 0.5);
    }

private:
    double scale_;
    int channel_;
};

}  // namespace

FilterPixels DisplaceFilterPixels(const FilterPixels& input, const FilterPixels& map,
                                  const FilterDisplacement& displacement, const FilterBox& box) {
    FilterPixels out(box, input.GetColours());
    out.SetAlphaOnly(input.IsAlphaOnly());
    const Displacer across(displacement.scaleX, displacement.channelX);
    const Displacer down(displacement.scaleY, displacement.channelY);
    const FilterBox made = out.GetBox(), from = input.GetBox();
    FilterRows maps(map, made);
    for (int y = made.top; y < made.Bottom(); ++y) {
        const std::uint16_t* shift = maps(y);
        std::uint16_t* pixel = out.Row(y);
        for (int x = made.left; x < made.Right(); ++x, shift += kFilterChannels, pixel += kFilterChannels) {
            // The pixel that contains the displaced centre. Scales are bounded, so the numbers fit.
            const int fromX = static_cast<int>(std::floor(x + 0.5 + across(shift)));
            const int fromY = static_cast<int>(std::floor(y + 0.5 + down(shift)));
            if (from.Contains(fromX, fromY)) std::memcpy(pixel, input.At(fromX, fromY), PixelSize(1));
        }
    }
    return out;
}

double FilterDisplacementWork(const FilterBox& box) { return 3.0 * box.Area(); }
