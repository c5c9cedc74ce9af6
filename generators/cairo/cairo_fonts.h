// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <unordered_map>

#include "generators/cairo/cairo_handles.h"

class ORVFontFace;

/// Cairo font faces for the platform's font faces.
class CairoFontCache {
public:
    /// Throws if the file cannot be opened or memory runs out.
    /// @return the face, owned by the cache; null if cairo cannot use the file
    cairo_font_face_t* Find(const ORVFontFace& face);

private:
    std::unordered_map<const ORVFontFace*, CairoFontFace> faces_;
};
