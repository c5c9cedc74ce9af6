#pragma once

#include <mutex>
#include <string>

#include <ft2build.h>
#include FT_FREETYPE_H
#include <hb.h>

#include "platform/visualization/fonts/ORVFontFace.h"

/// What the catalogue knows of a face, and the libraries' objects once somebody asked for them.
struct ORVFontFace::Content {
    std::string path;
    unsigned int index = 0;
    std::string family, style, postScriptName;
    int weight = 400;
    bool italic = false;

    std::once_flag fontLoaded, freeTypeLoaded;
    hb_font_t* font = nullptr;
    FT_Face freeType = nullptr;
    double unitsPerEm = 1000.0;  ///< of the HarfBuzz font's scale
    double ascent = 0.8, descent = 0.2;

    Content() = default;
    Content(const Content&) = delete;
    Content& operator=(const Content&) = delete;
    ~Content();

    void LoadFont();
    void LoadFreeType();
};
