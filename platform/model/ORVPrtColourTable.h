// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/system/ORVBaseObject.h"

/// The distinct colours of a page, indexed from 0 in the order in which they were added.
class ORV_PLATFORM_EXPORT ORVPrtColourTable : public ORVBaseObject {
public:
    /// An sRGB colour.
    struct Colour {
        std::uint8_t red = 0, green = 0, blue = 0;  ///< 0 to 255
        bool operator==(const Colour&) const = default;
    };

    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    /// Looks up the index of a colour. @return 1 when found, 0 when not (`index` is unchanged)
    int GetColourIndex(unsigned int& index, std::uint8_t red, std::uint8_t green, std::uint8_t blue) const;
    /// Appends a colour, even if the table contains it. @return 1; `index` is that of the new entry
    int AddColour(std::uint8_t red, std::uint8_t green, std::uint8_t blue, unsigned int& index);

    /// Index of a colour, which is added if necessary.
    unsigned int FindOrAddColour(const Colour& colour);

    /// True when the table does not fit into the processor's caches, so that Prefetch saves time.
    bool IsLarge() const {
        constexpr std::size_t kNearSlots = std::size_t{8} << 10U;
        return slots_.size() > kNearSlots;
    }
    /// Prefetches the hash table slot of a colour that will be looked up soon.
    void Prefetch(const Colour& colour) const;

    /// All colours, in order of index.
    const std::vector<Colour>& GetColours() const { return colours_; }
    /// The colour at `index`; black when the index is out of range.
    Colour GetColour(unsigned int index) const {
        return index < colours_.size() ? colours_[index] : Colour{};
    }

private:
    /// Index in `slots_` of the colour or of a free slot for it. There is always a free slot.
    std::size_t FindSlot(const Colour& colour) const;
    /// Adds the colour at `index` to the hash table, unless it is there already.
    void Enter(std::size_t index);

    std::vector<Colour> colours_;
    /// Hash table with open addressing. A slot holds the index plus 1 in its lower bits (0 means free) and
    /// part of the colour's hash in its upper bits, which avoids most comparisons of colours.
    std::vector<std::uint32_t> slots_;
};
