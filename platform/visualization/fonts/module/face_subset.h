// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/visualization/fonts/module/file_face.h"

/// A blob's bytes, with the blob. Throws std::bad_alloc.
ORVFontBytes BytesOf(HbBlob blob);

/// See ORVFontFace::MakeSubset.
ORVFontSubset SubsetOf(hb_face_t* face, const std::vector<std::uint32_t>& glyphs, std::string_view table);
