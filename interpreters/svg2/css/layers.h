// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

namespace svg2 {

/// The cascade layers of style sheets. Declarations in later layers override those in earlier ones, whatever
/// their specificity, and those outside all layers override both. A layer overrides those nested in it.
class SheetLayers {
public:
    using Layer = std::uint32_t;
    static constexpr Layer kNone = std::numeric_limits<Layer>::max();  ///< outside all layers

    /// Finds or adds a layer with a name such as "a.b" inside another one. An empty name always adds an
    /// anonymous layer.
    /// @return `outer` if there are too many layers
    Layer Find(std::string_view name, Layer outer);

    /// Precedence of each layer, once all are known; greater ones win. kNone keeps its value.
    std::vector<std::uint32_t> Rank() const;

private:
    Layer FindWithin(std::string_view name, Layer outer);
    Layer Add(Layer outer);

    std::vector<Layer> outer_;  // the enclosing layer of each layer, in order of first occurrence
    std::map<std::pair<Layer, std::string_view>, Layer> byName_;
};

}  // namespace svg2
