// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

/// True when a CFF table (Compact Font Format, Adobe Technical Note 5176) is sound as far as is looked at,
/// and its glyphs go by their plain numbers: it is no font of numbered characters ("CID-keyed").
bool IsPlainCffTable(std::string_view table);
