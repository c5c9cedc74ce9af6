// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

/// The HTML page around its data: a JSON text is inserted between the two parts.
extern const std::string_view kInspectorHead, kInspectorTail;
