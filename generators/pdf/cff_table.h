// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

/// True if a CFF table (Compact Font Format, Adobe Technical Note 5176) passes some sanity checks and its
/// glyphs are addressed by index: it must not be a CID-keyed font.
bool IsPlainCffTable(std::string_view table);
