// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string_view>

/// Reports what is ignored of a property of standard SVG.
/// @param report  called with a message, worded to follow the value, for each thing that is lost
void ForEachLossOf(std::string_view property, std::string_view value,
                   const std::function<void(const char* message)>& report);
