// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Creation time of the output in seconds since 1970: the one set in the environment for reproducible builds,
/// else the modification time of the newest input, so that the same inputs give the same output.
/// @param inputs  paths; those that are not files are ignored
std::optional<std::int64_t> CreationTime(const std::vector<std::string>& inputs);
