// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

/// Encodes bytes as "%XX", as in URLs and headers.
/// @param isPlain  whether a character is left as it is; not called for "%", which is always encoded
std::string EncodePercent(std::string_view text, bool (*isPlain)(char c));

/// Decodes a text; a "%" without two hexadecimal digits is left as it is.
std::string DecodePercent(std::string_view text);
