// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

namespace svg2 {

/// The layers of style sheets: what later ones state wins over earlier ones, whatever selects it, and what
/// stands in no layer wins over all. A layer comes after those within it.
class SheetLayers {
public:
    using Layer = std::uint32_t;
    static constexpr Layer kNone = std::numeric_limits<Layer>::max();  ///< what is in no layer

    /// The layer of a name such as "a.b" within another one, made when it is new. An empty name is that of a
    /// new layer.
    /// @return `outer` when there are too many
    Layer Find(std::string_view name, Layer outer);

    /// Ranks by layer, greater ones win, once all layers are known. That of kNone is kNone.
    std::vector<std::uint32_t> Rank() const;

private:
    Layer FindWithin(std::string_view name, Layer outer);
    Layer Add(Layer outer);

    std::vector<Layer> outer_;  // of each layer, in the order of their first mention
    std::map<std::pair<Layer, std::string_view>, Layer> byName_;
};

}  // namespace svg2
