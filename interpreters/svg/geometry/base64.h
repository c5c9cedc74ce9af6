// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

/// Decodes base64 (RFC 4648, with "+" and "/"), ignoring spaces, tabs and line breaks. A "=" in one of the
/// first three positions of a group ends the data; in the fourth it counts as zero bits and decoding
/// continues. An incomplete last group yields nothing.
/// @return false if there is a character outside the alphabet
[[nodiscard]] bool DecodeBase64(std::string_view text, std::string& bytes);
