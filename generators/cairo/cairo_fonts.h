#pragma once

#include <unordered_map>

#include "generators/cairo/cairo_handles.h"

class ORVFontFace;

/// The platform's font faces as cairo takes them.
class CairoFontCache {
public:
    /// @return the face; null when cairo cannot read its file
    cairo_font_face_t* Find(const ORVFontFace& face);

private:
    std::unordered_map<const ORVFontFace*, CairoFontFace> faces_;
};
