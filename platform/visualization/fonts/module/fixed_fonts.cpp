// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/fixed_fonts.h"

#include <algorithm>
#include <array>

namespace {

constexpr const char* kTimes[] = {"Times New Roman", "Liberation Serif", "Tinos",
                                  "TeX Gyre Termes", "Nimbus Roman",     "FreeSerif"};
constexpr const char* kArial[] = {"Arial",          "Liberation Sans", "Arimo",
                                  "TeX Gyre Heros", "Nimbus Sans",     "FreeSans"};
constexpr const char* kCourier[] = {"Courier New",     "Liberation Mono", "Cousine",
                                    "TeX Gyre Cursor", "Nimbus Mono PS",  "FreeMono"};
constexpr const char* kCorsiva[] = {"Monotype Corsiva", "Z003", "TeX Gyre Chorus", "URW Chancery L",
                                    "Apple Chancery"};
constexpr const char* kPoetica[] = {"Poetica",         "Poetica Std",    "Z003",
                                    "TeX Gyre Chorus", "URW Chancery L", "Apple Chancery"};
constexpr const char* kGeometrique[] = {"Alpha Geometrique", "Impact", "Anton", "Oswald", "League Gothic"};

constexpr std::array kFixedFonts{
    FixedFont{"times.ttf", kTimes, FixedFont::kSerif},
    FixedFont{"arial.ttf", kArial, FixedFont::kSans},
    FixedFont{"cour.ttf", kCourier, FixedFont::kMono},
    FixedFont{"MTCORSVA.TTF", kCorsiva, FixedFont::kItalicSerif},
    FixedFont{"Adobe Poetica", kPoetica, FixedFont::kItalicSerif},
    FixedFont{"Alpha Geometrique", kGeometrique, FixedFont::kBoldSans},
};

constexpr const char* kSerifFamilies[] = {"Liberation Serif", "Times New Roman", "DejaVu Serif",
                                          "Noto Serif"};
constexpr const char* kSansFamilies[] = {"Liberation Sans", "Arial", "DejaVu Sans", "Noto Sans"};
constexpr const char* kMonoFamilies[] = {"Liberation Mono", "Courier New", "DejaVu Sans Mono",
                                         "Noto Sans Mono"};

}  // namespace

const FixedFont* FindFixedFont(std::string_view name) {
    const auto row = std::find_if(kFixedFonts.begin(), kFixedFonts.end(),
                                  [name](const FixedFont& fixed) { return fixed.name == name; });
    return row == kFixedFonts.end() ? nullptr : &*row;
}

std::span<const char* const> LastResortFamilies(FixedFont::Look look) {
    switch (look) {
        case FixedFont::kSerif:
        case FixedFont::kItalicSerif: return kSerifFamilies;
        case FixedFont::kMono: return kMonoFamilies;
        default: return kSansFamilies;
    }
}

const char* GenericFamily(FixedFont::Look look) {
    switch (look) {
        case FixedFont::kSerif:
        case FixedFont::kItalicSerif: return "serif";
        case FixedFont::kMono: return "monospace";
        default: return "sans-serif";
    }
}
