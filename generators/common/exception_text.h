// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Puts into words what was thrown. To be called where an exception is being handled; throws nothing: where
/// there is no memory for the words, it says just that.
/// @param error  replaced
void ORVNameException(std::string& error) noexcept;
