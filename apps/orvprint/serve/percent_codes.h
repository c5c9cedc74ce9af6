// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

/// A text with bytes written as "%XX", as addresses and headers take it.
/// @param isPlain  whether a character stands for itself; never asked for "%", which does not
std::string EncodePercent(std::string_view text, bool (*isPlain)(char c));

/// The text that was encoded; a "%" without two hexadecimal digits stays.
std::string DecodePercent(std::string_view text);
