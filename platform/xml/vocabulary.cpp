// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/vocabulary.h"

#include <array>
#include <cstddef>

#include "platform/xml/short_names.h"

namespace {

// In the order of the enumerations.
constexpr std::array<std::string_view, 20> kElementTexts{
    "",     "a",       "circle",  "defs",     "desc", "ellipse", "g",      "image", "line",  "marker",
    "path", "pattern", "polygon", "polyline", "rect", "svg",     "symbol", "text",  "title", "use"};

constexpr std::array<std::string_view, static_cast<std::size_t>(AttributeName::kCount)> kAttributeTexts{
    "alignment-baseline",
    "color",
    "cx",
    "cy",
    "d",
    "display",
    "dx",
    "dy",
    "fill",
    "fill-opacity",
    "fill-rule",
    "font-family",
    "font-size",
    "font-style",
    "font-weight",
    "height",
    "id",
    "lengthAdjust",
    "letter-spacing",
    "marker",
    "marker-end",
    "markerHeight",
    "marker-mid",
    "marker-start",
    "markerWidth",
    "opacity",
    "pathLength",
    "patternTransform",
    "points",
    "r",
    "refX",
    "refY",
    "rotate",
    "rx",
    "ry",
    "stroke",
    "stroke-dasharray",
    "stroke-linecap",
    "stroke-linejoin",
    "stroke-opacity",
    "stroke-width",
    "style",
    "text-anchor",
    "textLength",
    "tlv:text-version",
    "transform",
    "viewBox",
    "visibility",
    "width",
    "writing-mode",
    "x",
    "x1",
    "x2",
    "xlink:href",
    "xlink:show",
    "y",
    "y1",
    "y2"};
static_assert(kElementTexts[static_cast<std::size_t>(ElementName::kUse)] == "use");
static_assert(kAttributeTexts[static_cast<std::size_t>(AttributeName::kY2)] == "y2");

constexpr std::size_t kSlots = 512;

// Four characters and the length distinguish all known names. The multiplier is chosen so that their slots
// differ, too.
constexpr std::size_t SlotOf(std::string_view text, std::uint32_t multiplier) {
    const std::size_t n = text.size();
    std::uint32_t hash = static_cast<std::uint32_t>(n);
    for (const char c : {text[0], text[n - 1], text[n / 2], text[n * 3 / 4]})
        hash = (hash ^ static_cast<unsigned char>(c)) * multiplier;
    return (hash >> 16U) % kSlots;
}

// Perfect hash table: each name has its own slot, so that a look-up needs one comparison.
struct NameTable {
    std::uint32_t multiplier = 0;
    std::array<std::uint8_t, kSlots> slots{};  // index of the name plus 1; 0 is a free slot

    template <std::size_t N>
    constexpr bool Fill(const std::array<std::string_view, N>& texts) {
        slots = {};
        for (std::size_t i = 0; i < N; ++i) {
            if (texts[i].empty()) continue;
            std::uint8_t& slot = slots[SlotOf(texts[i], multiplier)];
            if (slot != 0) return false;
            slot = static_cast<std::uint8_t>(i + 1);
        }
        return true;
    }

    template <std::size_t N>
    constexpr explicit NameTable(const std::array<std::string_view, N>& texts) {
        multiplier = 0x01000193U;
        while (!Fill(texts)) multiplier += 0x9E3778U;
    }

    // Index of `text` in `texts`; N when it is not found.
    template <std::size_t N>
    std::size_t Find(const std::array<std::string_view, N>& texts, std::string_view text) const {
        if (text.empty()) return N;
        const std::size_t slot = slots[SlotOf(text, multiplier)];
        return slot != 0 && texts[slot - 1] == text ? slot - 1 : N;
    }
};

constexpr std::size_t kLongestShortName = 15;

constexpr ORVShortName MakeShortName(std::string_view text) {
    ORVShortName name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::uint64_t& word = i < 8 ? name.first : name.second;
        word |= std::uint64_t{static_cast<unsigned char>(text[i])} << (i % 8 * 8);
    }
    return name;
}

// Perfect hash table for names packed into two words.
struct ShortNameTable {
    static constexpr unsigned kSlotBits = 10;
    std::uint64_t multiplier = 0x9E3779B97F4A7C15U;
    std::array<std::uint8_t, std::size_t{1} << kSlotBits> slots{};  // index of the name plus 1; 0 is free
    std::array<ORVShortName, kAttributeTexts.size()> names{};       // zeros for names that are too long

    constexpr std::size_t SlotOf(const ORVShortName& name) const {
        return static_cast<std::size_t>((name.first ^ name.second * 31U) * multiplier >> (64U - kSlotBits));
    }

    constexpr bool Fill() {
        slots = {};
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (names[i] == ORVShortName()) continue;
            std::uint8_t& slot = slots[SlotOf(names[i])];
            if (slot != 0) return false;
            slot = static_cast<std::uint8_t>(i + 1);
        }
        return true;
    }

    constexpr ShortNameTable() {
        for (std::size_t i = 0; i < names.size(); ++i)
            if (kAttributeTexts[i].size() <= kLongestShortName) names[i] = MakeShortName(kAttributeTexts[i]);
        while (!Fill()) multiplier += 0x9E3778U;
    }

    std::int8_t Find(const ORVShortName& name) const {
        const std::size_t slot = slots[SlotOf(name)];
        return slot != 0 && names[slot - 1] == name ? static_cast<std::int8_t>(slot - 1) : std::int8_t{-1};
    }
};

constexpr ShortNameTable kShortAttributeTable;
constexpr NameTable kElementTable(kElementTexts);
constexpr NameTable kAttributeTable(kAttributeTexts);

}  // namespace

ElementName orvprint::FindElementName(std::string_view text) {
    const std::size_t index = kElementTable.Find(kElementTexts, text);
    return index < kElementTexts.size() ? static_cast<ElementName>(index) : ElementName::kUnknown;
}

std::optional<AttributeName> orvprint::FindAttributeName(std::string_view text) {
    const std::size_t index = kAttributeTable.Find(kAttributeTexts, text);
    if (index >= kAttributeTexts.size()) return std::nullopt;
    return static_cast<AttributeName>(index);
}

std::int8_t FindAttributeName(const ORVShortName& name) { return kShortAttributeTable.Find(name); }

std::string_view orvprint::GetNameText(ElementName name) {
    const auto index = static_cast<std::size_t>(name);
    return index < kElementTexts.size() ? kElementTexts[index] : std::string_view();
}

std::string_view orvprint::GetNameText(AttributeName name) {
    const auto index = static_cast<std::size_t>(name);
    return index < kAttributeTexts.size() ? kAttributeTexts[index] : std::string_view();
}
