// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// When the output counts as made, in seconds since 1970: as the environment says for builds that are to be
/// repeated, else when the newest input was changed, so that the same inputs give the same output.
/// @param inputs  files; what is none does not count
std::optional<std::int64_t> CreationTime(const std::vector<std::string>& inputs);
