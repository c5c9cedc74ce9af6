// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

/// HTML before and after the JSON data, of a page that shows a drawing with its elements.
extern const std::string_view kInspectorHead, kInspectorTail;
