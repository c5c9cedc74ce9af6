#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "platform/system/ORVBaseObject.h"

/// The colours of a page, each once, by index from 0 in the order in which they were added.
class ORV_PLATFORM_EXPORT ORVPrtColourTable : public ORVBaseObject {
public:
    struct Colour {
        std::uint8_t red = 0, green = 0, blue = 0;
    };

    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    /// Index of a colour. @return 1 found, 0 not in the table (`index` is left alone)
    int GetColourIndex(unsigned int& index, std::uint8_t red, std::uint8_t green, std::uint8_t blue) const;
    /// Appends a colour. @return 1 added
    int AddColour(std::uint8_t red, std::uint8_t green, std::uint8_t blue, unsigned int& index);

    const std::vector<Colour>& GetColours() const { return colours_; }
    /// The colour at `index`; black for an index beyond the table.
    Colour GetColour(unsigned int index) const {
        return index < colours_.size() ? colours_[index] : Colour{};
    }

private:
    std::vector<Colour> colours_;
    std::unordered_map<std::uint32_t, unsigned int> indices_;
};
