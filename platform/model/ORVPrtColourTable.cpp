// SPDX-License-Identifier: Apache-2.0
#include "platform/model/ORVPrtColourTable.h"

namespace {

constexpr std::uint32_t kNumberBits = (std::uint32_t{1} << 26U) - 1;

// Mixes all bits of the colour into the upper half.
std::uint64_t Hash(const ORVPrtColourTable::Colour& colour) {
    const std::uint64_t key =
        std::uint64_t{colour.red} << 16U | std::uint64_t{colour.green} << 8U | std::uint64_t{colour.blue};
    return key * 0x9E3779B97F4A7C15U;
}

std::size_t FirstPlace(std::uint64_t hash, std::size_t count) {
    return static_cast<std::size_t>(hash >> 32U) & (count - 1);
}

std::uint32_t Tag(std::uint64_t hash) { return static_cast<std::uint32_t>(hash >> 32U) & ~kNumberBits; }

}  // namespace

const ORVMetaClass& ORVPrtColourTable::MetaClass() {
    static const ORVMetaClass metaClass("ORVPrtColourTable", &ORVBaseObject::MetaClass(), "ORVnull",
                                        "ORVPrt2DModel");
    return metaClass;
}

std::size_t ORVPrtColourTable::FindSlot(const Colour& colour) const {
    const std::uint64_t hash = Hash(colour);
    const std::uint32_t tag = Tag(hash);
    const std::size_t last = slots_.size() - 1;
    std::size_t place = FirstPlace(hash, slots_.size());
    for (;; place = (place + 1) & last) {
        const std::uint32_t slot = slots_[place];
        if (slot == 0) return place;
        if ((slot & ~kNumberBits) == tag && colours_[(slot & kNumberBits) - 1] == colour) return place;
    }
}

void ORVPrtColourTable::Prefetch(const Colour& colour) const {
    if (!slots_.empty()) __builtin_prefetch(&slots_[FirstPlace(Hash(colour), slots_.size())], 1);
}

int ORVPrtColourTable::GetColourIndex(unsigned int& index, std::uint8_t red, std::uint8_t green,
                                      std::uint8_t blue) const {
    if (slots_.empty()) return 0;
    const std::uint32_t slot = slots_[FindSlot({red, green, blue})];
    if (slot == 0) return 0;
    index = (slot & kNumberBits) - 1;
    return 1;
}

int ORVPrtColourTable::AddColour(std::uint8_t red, std::uint8_t green, std::uint8_t blue,
                                 unsigned int& index) {
    index = static_cast<unsigned int>(colours_.size());
    colours_.push_back({red, green, blue});
    constexpr std::size_t kFewestSlots = 16;
    // At most three quarters full.
    if (4 * colours_.size() <= 3 * slots_.size()) {
        Enter(index);
    } else {
        slots_.assign(slots_.empty() ? kFewestSlots : 2 * slots_.size(), 0);
        for (std::size_t i = 0; i < colours_.size(); ++i) Enter(i);
    }
    return 1;
}

void ORVPrtColourTable::Enter(std::size_t index) {
    // An index this large occurs only when the table contains duplicates, because there are fewer distinct
    // colours. It need not be found.
    if (index >= kNumberBits) return;
    std::uint32_t& slot = slots_[FindSlot(colours_[index])];
    if (slot == 0) slot = static_cast<std::uint32_t>(index + 1) | Tag(Hash(colours_[index]));
}

unsigned int ORVPrtColourTable::FindOrAddColour(const Colour& colour) {
    if (!slots_.empty()) {
        std::uint32_t& slot = slots_[FindSlot(colour)];
        if (slot != 0) return (slot & kNumberBits) - 1;
        const std::size_t index = colours_.size();
        if (4 * (index + 1) <= 3 * slots_.size() && index < kNumberBits) {
            colours_.push_back(colour);
            slot = static_cast<std::uint32_t>(index + 1) | Tag(Hash(colour));
            return static_cast<unsigned int>(index);
        }
    }
    unsigned int index = 0;
    AddColour(colour.red, colour.green, colour.blue, index);
    return index;
}
