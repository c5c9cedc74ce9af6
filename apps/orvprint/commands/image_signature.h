// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// True for a file that an interpreter could take for an image, judging by its first bytes.
bool LooksLikeImage(const std::string& path);
