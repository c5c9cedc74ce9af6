// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The value of an option in a job's options as filters get them: "name=value name='two words' name", with
/// backslashes for escaping. The last occurrence counts; text inside the value of another option does not.
/// Returns the raw value of an option in braces, and of one without a value.
std::optional<std::string> FindJobOption(std::string_view options, std::string_view name);
