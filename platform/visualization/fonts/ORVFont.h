// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <atomic>
#include <string_view>

#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVString.h"
#include "platform/system/ORVUnicodeString.h"
#include "platform/system/namespace.h"

class ORVFont;
class ORVFontFace;

/// A font that a style sheet asks for.
struct ORVFontQuery {
    std::string_view families;  ///< list as CSS writes it: names, perhaps quoted, and generic ones
    int weight = 400;           ///< 1 to 1000
    bool isItalic = false;      ///< or oblique
    double stretch = 100.0;     ///< percent of the normal width
    double size = 0.0;          ///< of an em in px, for fonts that vary with it; 0 for none
    /// Of fonts that vary: names of axes in quotes, each with a number, as "font-variation-settings" of CSS
    /// lists them. They go before what the other members ask for.
    std::string_view variations;
};

/// The font that comes nearest to a query.
struct ORVFontChoice {
    const ORVFont* font = nullptr;  ///< never null; text cannot be set in ORVFont::Unavailable()
    int weight = 25;                ///< of ORVTextStyle, for the very face: 26 where it is to be thickened
    bool isToBeSlanted = false;     ///< the family has nothing italic
    const ORVFontFace* face = nullptr;  ///< the font's at that weight; null where text cannot be set
    bool dependsOnSize = false;         ///< another size may give another face
    bool isOfFamily = true;  ///< false: none of the families is installed, nor one that stands for it
};

/// Chooses a font: of the first family that is installed, or that fontconfig has another one for, the face
/// nearest in slant, width and weight; else of the usual serif fonts. May be called from any thread.
ORV_PLATFORM_EXPORT ORVFontChoice ORVChooseFont(const ORVFontQuery& query);

/// A font of the catalogue. The catalogue lists the outline fonts installed on the machine, and the plain
/// fonts that the host registered; it is built at the first question and owns its fonts, which live as long
/// as the process. All questions may be asked from any thread. Where it cannot be built, because the font
/// libraries cannot be loaded or asked, every name gives a font that no text can be set in, Unavailable().
///
/// Order: families by name (bytes), in a family the upright regular face before the others, then by slant,
/// width, weight, format, style and file. Registered fonts follow. Names are unique: the file's name
/// ("Example.ttf"), with "#1", "#2" ... for further faces of a collection, and "~2", "~3" ... where two files
/// are called alike.
class ORV_PLATFORM_EXPORT ORVFont {
public:
    /// What a font is made of.
    enum Kind {
        kPlain = 0,       ///< registered by the host
        kTrueType = 1,    ///< quadratic outlines
        kPostScript = 2,  ///< Type 1 and its relatives
        kCFF = 4,         ///< OpenType with cubic outlines
    };

    ORVFont(const ORVFont&) = delete;
    ORVFont& operator=(const ORVFont&) = delete;

    /// Finds a font by its catalogue name, exactly. "times.ttf", "arial.ttf", "cour.ttf", "MTCORSVA.TTF",
    /// "Adobe Poetica" and "Alpha Geometrique" are always found: where no such font is installed, the font
    /// keeps that name and has the face that comes nearest.
    /// @param flag, defaultFont  of no effect
    /// @return null when there is none
    static const ORVFont* sGetFont(std::string_view name, int flag = 0, int defaultFont = 0);
    /// Number of fonts of the catalogue; the stand-ins for the names above do not count.
    static int sGetFontCount();
    /// Catalogue name of font `index`, from 1; empty for any other index.
    static const ORVUnicodeString& sGetFontName(int index);
    /// Lets the process do without the index of faces (false), which spares the next run most of the start of
    /// fontconfig, or with it (true, the default). To be said before the first question.
    static void sUseFaceIndex(bool use);
    /// Name, kind and file of font `index`.
    /// @return 1, or -1 for an unknown index, when nothing is written
    static int sGetFontGeneralInformation(int index, ORVUnicodeString& name, int& kind,
                                          ORVUnicodeString& file);

    /// What stands for every font while the catalogue cannot be built: text in it cannot be set, so that none
    /// comes out in another font.
    static const ORVFont* Unavailable();
    /// Whether a font of such a family, full or PostScript name is installed that has pixels only: the
    /// catalogue lists none of those. Asks fontconfig, which takes a while.
    static bool sIsBitmapFont(std::string_view family);

    /// Adds a plain font at the end of the catalogue.
    /// @param name      catalogue name, customarily ending in ".font"
    /// @param faceFile  the outline font that it is drawn with
    /// @return the new font, or null when the name is taken or the file holds no outline font
    static const ORVFont* sRegisterPlainFont(std::string_view name, const ORVString& faceFile);

    /// Catalogue name.
    const ORVUnicodeString& GetName() const { return name_; }
    /// From 1. A stand-in gives the index of the font whose face it has, 0 when no font is installed.
    int GetCatalogueIndex() const { return index_; }
    /// What the font is made of.
    Kind GetKind() const { return kind_; }

    /// The face that draws this font at a weight of 24 (light), 25 (normal), 26 (bold) or 27 (heaviest);
    /// other weights count as 25. Normal is the font's own face, the others are its family's nearest faces of
    /// the same slant and width.
    /// @return a face that lives as long as the process; null when no usable font is installed
    const ORVFontFace* GetFace(int weight) const;

protected:
    friend class FontCatalogue;
    friend struct CatalogueDelete;
    /// For the catalogue, which makes all fonts.
    ORVFont(ORVUnicodeString name, int index, Kind kind);
    ~ORVFont() = default;

private:
    ORVUnicodeString name_;
    int index_;
    Kind kind_;
    mutable std::array<std::atomic<const ORVFontFace*>, 4> faces_ = {};  // found so far, by weight
};

/// An outline font of the catalogue.
class ORV_PLATFORM_EXPORT ORVOutlineFont final : public ORVFont {
public:
    /// The six names of outline font `index`.
    /// @return 1, or -1 when `index` is unknown or that of a plain font, when nothing is written
    static int sGetFontOtherGeneralInformation(int index, ORVUnicodeString& fileName,
                                               ORVUnicodeString& foundry, ORVUnicodeString& family,
                                               ORVUnicodeString& style, ORVUnicodeString& fullName,
                                               ORVUnicodeString& postScriptName);

private:
    friend class FontCatalogue;
    friend struct CatalogueDelete;
    using ORVFont::ORVFont;
};

/// Puts the font fit for a text version in place of `font`. Every font of this catalogue fits every version.
/// @return 0, or -1 when `font` is null
ORV_PLATFORM_EXPORT int ORVFontCheckFontForVersion(const ORVFont*& font, int version);

namespace orvprint {

/// The first font of the catalogue that answers to a family name, exactly; null when none does. One look-up,
/// however many fonts there are. An outline font answers to its family, its full name and its PostScript
/// name. For the attribute a plain font answers to its name without ".font"; for style plain fonts, and all
/// fonts whose catalogue name contains ".font", are passed over.
ORV_PLATFORM_EXPORT const ORVFont* FindFontForAttribute(std::string_view family);
/// The same for the style property.
ORV_PLATFORM_EXPORT const ORVFont* FindFontForStyle(std::string_view family);

}  // namespace orvprint
