// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/visualization/fonts/module/file_face.h"

/// The bytes of a blob; they share ownership of it. Throws std::bad_alloc.
ORVFontBytes BytesOf(HbBlob blob);

/// See ORVFontFace::MakeSubset.
/// @param axes  a value for each axis of a variable font; empty for the default instance
ORVFontSubset SubsetOf(hb_face_t* face, const std::vector<double>& axes,
                       const std::vector<std::uint32_t>& glyphs, std::string_view table);
