// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/visualization/fonts/module/file_face.h"

/// A blob's bytes, with the blob. Throws std::bad_alloc.
ORVFontBytes BytesOf(HbBlob blob);

/// See ORVFontFace::MakeSubset.
/// @param axes  of a font that varies: a value for each axis, or none for the default
ORVFontSubset SubsetOf(hb_face_t* face, const std::vector<double>& axes,
                       const std::vector<std::uint32_t>& glyphs, std::string_view table);
