// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

/// Decodes base64 (RFC 4648, "+" and "/"). Blanks, tabs and line breaks count nowhere. A "=" in the first
/// three places of a group ends the data; in the fourth it counts as zero bits and decoding goes on. A last
/// group of fewer than four characters yields nothing.
/// @return false when a character outside the alphabet was met
[[nodiscard]] bool DecodeBase64(std::string_view text, std::string& bytes);
