// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/visualization/fonts/ORVFont.h"

class FontCatalogue;

/// See ORVChooseFont. Results are cached. Throws FontFailure when fonts cannot be searched.
ORVFontChoice ChooseFont(const FontCatalogue& catalogue, const ORVFontQuery& query);
