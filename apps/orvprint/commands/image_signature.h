// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// True if the first bytes of a file look like an image that an interpreter reads.
bool LooksLikeImage(const std::string& path);
