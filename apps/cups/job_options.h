// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Value of one option in the options of a job, as filters get them: "name=value name='two words' name", with
/// backslash escapes. The last occurrence counts; text inside other values is ignored. Options without a
/// value, and values in braces, are returned verbatim.
std::optional<std::string> FindJobOption(std::string_view options, std::string_view name);
