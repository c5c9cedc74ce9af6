// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// A name of up to 15 characters packed into two words, the first character in the lowest byte, padded with
/// zeros.
struct ORVShortName {
    std::uint64_t first = 0, second = 0;
    bool operator==(const ORVShortName&) const = default;
};
/// Index of an attribute name; -1 when it is not known or longer than 15 characters.
std::int8_t FindAttributeName(const ORVShortName& name);
