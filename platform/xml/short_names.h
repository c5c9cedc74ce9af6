// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// A name of at most 15 characters in two words, its first character in the lowest byte, zero behind the
/// last.
struct ORVShortName {
    std::uint64_t first = 0, second = 0;
    bool operator==(const ORVShortName&) const = default;
};
/// Number of an attribute name, -1 when it is not among the known ones or longer than 15 characters.
std::int8_t FindAttributeName(const ORVShortName& name);
