// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/system/ORVBaseObject.h"

/// The colours of a page, each once, by index from 0 in the order in which they were added.
class ORV_PLATFORM_EXPORT ORVPrtColourTable : public ORVBaseObject {
public:
    /// A colour in sRGB.
    struct Colour {
        std::uint8_t red = 0, green = 0, blue = 0;  ///< 0 to 255
        bool operator==(const Colour&) const = default;
    };

    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    /// Index of a colour. @return 1 found, 0 not in the table (`index` is left alone)
    int GetColourIndex(unsigned int& index, std::uint8_t red, std::uint8_t green, std::uint8_t blue) const;
    /// Appends a colour. @return 1 added
    int AddColour(std::uint8_t red, std::uint8_t green, std::uint8_t blue, unsigned int& index);

    /// Index of a colour, which is added when it is not there.
    unsigned int FindOrAddColour(const Colour& colour);

    /// True when the table is too large to stay near the processor: Prefetch then saves time.
    bool IsLarge() const {
        constexpr std::size_t kNearSlots = std::size_t{8} << 10U;
        return slots_.size() > kNearSlots;
    }
    /// Has the memory fetched where a colour will be looked for soon. Changes nothing.
    void Prefetch(const Colour& colour) const;

    /// All colours, by their indices.
    const std::vector<Colour>& GetColours() const { return colours_; }
    /// The colour at `index`; black for an index beyond the table.
    Colour GetColour(unsigned int index) const {
        return index < colours_.size() ? colours_[index] : Colour{};
    }

private:
    /// Where the colour is in `slots_`, or could be put. There is always a free slot.
    std::size_t FindSlot(const Colour& colour) const;
    /// Enters the colour at `index` into the hash table, unless it is there already.
    void Enter(std::size_t index);

    std::vector<Colour> colours_;
    /// A hash table, open addressing: an index plus 1 in the lower bits, so that 0 is free, and some bits of
    /// the colour's hash above, which mostly save a look at the colour.
    std::vector<std::uint32_t> slots_;
};
