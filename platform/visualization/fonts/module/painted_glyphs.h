// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/visualization/fonts/glyph_paint.h"
#include "platform/visualization/fonts/module/file_face.h"

/// See ORVPaintGlyph. @param sink  null to test only. Throws FontFailure or std::bad_alloc.
bool PaintGlyph(const FileFace& face, std::uint32_t glyph, ORVGlyphPaintSink* sink);
