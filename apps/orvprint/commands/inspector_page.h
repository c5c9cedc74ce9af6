// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

/// The page that shows a drawing with its rows, but for its data: a JSON text stands between the two.
extern const std::string_view kInspectorHead, kInspectorTail;
