// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/visualization/fonts/ORVFont.h"

class FontCatalogue;

/// See ORVChooseFont. Answers are kept. Throws FontFailure where fonts cannot be looked for.
ORVFontChoice ChooseFont(const FontCatalogue& catalogue, const ORVFontQuery& query);
