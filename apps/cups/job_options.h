// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The value of one option in the text of a job's options, as filters get it: "name=value name='two words'
/// name" with backslashes before characters that stand for themselves. The last one of a name counts; what
/// stands within the value of another option does not. An option without value, or with braces around several
/// values, is taken as it stands.
std::optional<std::string> FindJobOption(std::string_view options, std::string_view name);
