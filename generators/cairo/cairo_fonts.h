// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <unordered_map>

#include "generators/cairo/cairo_handles.h"

class ORVFontFace;

/// The platform's font faces as cairo takes them.
class CairoFontCache {
public:
    /// Throws where the file cannot be opened, or out of memory.
    /// @return the face; null when cairo cannot use what the file holds
    cairo_font_face_t* Find(const ORVFontFace& face);

private:
    std::unordered_map<const ORVFontFace*, CairoFontFace> faces_;
};
