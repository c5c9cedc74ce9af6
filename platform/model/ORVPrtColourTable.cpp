#include "platform/model/ORVPrtColourTable.h"

const ORVMetaClass& ORVPrtColourTable::MetaClass() {
    static const ORVMetaClass metaClass("ORVPrtColourTable", &ORVBaseObject::MetaClass(), "ORVnull",
                                        "ORVPrt2DModel");
    return metaClass;
}

std::size_t ORVPrtColourTable::FindSlot(const Colour& colour) const {
    const std::uint64_t key =
        std::uint64_t{colour.red} << 16U | std::uint64_t{colour.green} << 8U | std::uint64_t{colour.blue};
    const std::size_t last = slots_.size() - 1;
    // The upper half of the product depends on all bits of the colour.
    std::size_t slot = static_cast<std::size_t>(key * 0x9E3779B97F4A7C15U >> 32U) & last;
    while (slots_[slot] != 0 && colours_[slots_[slot] - 1] != colour) slot = (slot + 1) & last;
    return slot;
}

int ORVPrtColourTable::GetColourIndex(unsigned int& index, std::uint8_t red, std::uint8_t green,
                                      std::uint8_t blue) const {
    if (slots_.empty()) return 0;
    const std::uint32_t found = slots_[FindSlot({red, green, blue})];
    if (found == 0) return 0;
    index = found - 1;
    return 1;
}

int ORVPrtColourTable::AddColour(std::uint8_t red, std::uint8_t green, std::uint8_t blue,
                                 unsigned int& index) {
    index = static_cast<unsigned int>(colours_.size());
    Append({red, green, blue});
    // A colour that is added again keeps its first index.
    std::uint32_t& slot = slots_[FindSlot(colours_[index])];
    if (slot == 0) slot = index + 1;
    return 1;
}

unsigned int ORVPrtColourTable::FindOrAddColour(const Colour& colour) {
    if (!slots_.empty()) {
        std::uint32_t& slot = slots_[FindSlot(colour)];
        if (slot != 0) return slot - 1;
        if (2 * (colours_.size() + 1) <= slots_.size()) {
            colours_.push_back(colour);
            slot = static_cast<std::uint32_t>(colours_.size());
            return slot - 1;
        }
    }
    unsigned int index = 0;
    AddColour(colour.red, colour.green, colour.blue, index);
    return index;
}

/// Appends a colour without entering it into the hash table, which has room for it afterwards.
void ORVPrtColourTable::Append(const Colour& colour) {
    constexpr std::size_t kFewestSlots = 16;
    const std::size_t before = colours_.size();
    colours_.push_back(colour);
    if (2 * colours_.size() <= slots_.size()) return;
    slots_.assign(slots_.empty() ? kFewestSlots : 2 * slots_.size(), 0);
    for (std::uint32_t i = 0; i < before; ++i) {
        std::uint32_t& slot = slots_[FindSlot(colours_[i])];
        if (slot == 0) slot = i + 1;
    }
}
