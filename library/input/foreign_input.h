// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

/// What an input is that is no drawing, as its first bytes tell, such as "a PDF document"; empty when they
/// tell nothing. Markup is not looked at: see IsHtml.
std::string_view DescribeForeignInput(std::string_view bytes);
/// Whether the text begins as a page of HTML does.
bool IsHtml(std::string_view bytes);
