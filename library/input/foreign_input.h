// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

/// Recognises other file types by their first bytes and names them, such as "a PDF document"; empty if the
/// type is not recognised. Markup is not examined: see IsHtml.
std::string_view DescribeForeignInput(std::string_view bytes);
/// Whether the text starts like an HTML page.
bool IsHtml(std::string_view bytes);
