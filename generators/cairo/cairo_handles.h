// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cairo.h>

#include <memory>

/// Owning handles for cairo objects.
template <auto kDestroy>
struct CairoDestroy {
    template <class Object>
    void operator()(Object* object) const {
        kDestroy(object);
    }
};
using CairoContext = std::unique_ptr<cairo_t, CairoDestroy<cairo_destroy>>;
using CairoSurface = std::unique_ptr<cairo_surface_t, CairoDestroy<cairo_surface_destroy>>;
using CairoPattern = std::unique_ptr<cairo_pattern_t, CairoDestroy<cairo_pattern_destroy>>;
using CairoFontFace = std::unique_ptr<cairo_font_face_t, CairoDestroy<cairo_font_face_destroy>>;
using CairoScaledFont = std::unique_ptr<cairo_scaled_font_t, CairoDestroy<cairo_scaled_font_destroy>>;
