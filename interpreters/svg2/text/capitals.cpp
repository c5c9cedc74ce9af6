// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/text/capitals.h"

namespace svg2 {
namespace {

constexpr bool IsBetween(char32_t c, char32_t first, char32_t last) { return c >= first && c <= last; }

/// Blocks in which each capital letter is followed by its small letter, starting at an even or an odd code
/// point.
bool IsSmallOfPair(char32_t c) {
    const bool isOdd = c % 2 == 1;
    if (IsBetween(c, 0x100, 0x137) || IsBetween(c, 0x14A, 0x177)) return isOdd && c != 0x131;
    if (IsBetween(c, 0x139, 0x148) || IsBetween(c, 0x179, 0x17E)) return !isOdd;
    return isOdd && (IsBetween(c, 0x460, 0x481) || IsBetween(c, 0x48A, 0x4BF) || IsBetween(c, 0x4D0, 0x52F) ||
                     IsBetween(c, 0x1E00, 0x1E95) || IsBetween(c, 0x1EA0, 0x1EFF));
}

}  // namespace

char32_t CapitalOf(char32_t c) {
    constexpr char32_t kLatinStep = 0x20, kCyrillicStep = 0x50;
    if (IsBetween(c, 'a', 'z')) return c - kLatinStep;
    if (c < 0xDF) return c;
    if (IsBetween(c, 0xE0, 0xFE) && c != 0xF7) return c - kLatinStep;
    if (c == 0xFF) return 0x178;
    if (c == 0x131) return 'I';
    if (c == 0x3C2) return 0x3A3;
    if (IsBetween(c, 0x3B1, 0x3CB) || IsBetween(c, 0x430, 0x44F)) return c - kLatinStep;
    if (c == 0x3AC) return 0x386;
    if (IsBetween(c, 0x3AD, 0x3AF)) return c - 0x25;
    if (c == 0x3CC) return 0x38C;
    if (c == 0x3CD || c == 0x3CE) return c - 0x3F;
    if (IsBetween(c, 0x450, 0x45F)) return c - kCyrillicStep;
    return IsSmallOfPair(c) ? c - 1 : c;
}

}  // namespace svg2
