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

/// Font properties requested by a style sheet.
struct ORVFontQuery {
    std::string_view families;  ///< CSS list of family names, which may be quoted, and generic families
    int weight = 400;           ///< 1 to 1000
    bool isItalic = false;      ///< italic or oblique
    double stretch = 100.0;     ///< percentage of the normal width
    double size = 0.0;          ///< font size in px, for fonts with an optical size; 0 for none
    /// Axis values in the syntax of the CSS property font-variation-settings. They override the other
    /// members.
    std::string_view variations;
};

/// Result of a font query.
struct ORVFontChoice {
    const ORVFont* font = nullptr;      ///< never null; Unavailable() when text cannot be set
    int weight = 25;                    ///< of ORVTextStyle, selects `face`; 26 if it must be emboldened
    bool isToBeSlanted = false;         ///< the family has no italic face: slant synthetically
    const ORVFontFace* face = nullptr;  ///< the font's face at that weight; null when text cannot be set
    bool dependsOnSize = false;         ///< another font size may give another face
    bool isOfFamily = true;  ///< false when neither any of the families nor a substitute is installed
};

/// Chooses a font. Takes the first family that is installed or for which fontconfig has a substitute, and its
/// face closest in slant, width and weight; otherwise one of the usual serif fonts. Thread-safe.
ORV_PLATFORM_EXPORT ORVFontChoice ORVChooseFont(const ORVFontQuery& query);

/// A font of the catalogue. The catalogue lists the installed outline fonts and the plain fonts registered by
/// the host. It is built on first use and owns its fonts, which live as long as the process. All functions
/// are thread-safe. If it cannot be built, because the font libraries cannot be loaded or fail, every look-up
/// returns Unavailable(), in which no text can be set.
///
/// Order: families by name (bytewise); within a family the upright regular face first, then by slant, width,
/// weight, format, style and file. Registered fonts come last. Names are unique: the file name
/// ("Example.ttf"), with "#1", "#2" ... for further faces of a collection and "~2", "~3" ... for files of the
/// same name.
class ORV_PLATFORM_EXPORT ORVFont {
public:
    /// Kind of font.
    enum Kind {
        kPlain = 0,       ///< registered by the host
        kTrueType = 1,    ///< quadratic outlines
        kPostScript = 2,  ///< Type 1 and its relatives
        kCFF = 4,         ///< OpenType with cubic outlines
    };

    ORVFont(const ORVFont&) = delete;
    ORVFont& operator=(const ORVFont&) = delete;

    /// Finds a font by its exact catalogue name. "times.ttf", "arial.ttf", "cour.ttf", "MTCORSVA.TTF", "Adobe
    /// Poetica" and "Alpha Geometrique" are always found: if no such font is installed, a font with that name
    /// and the closest installed face is returned.
    /// @param flag, defaultFont  ignored
    /// @return null when there is none
    static const ORVFont* sGetFont(std::string_view name, int flag = 0, int defaultFont = 0);
    /// Number of fonts in the catalogue, without the substitutes for the names above.
    static int sGetFontCount();
    /// Catalogue name of font `index`, counted from 1; empty for an invalid index.
    static const ORVUnicodeString& sGetFontName(int index);
    /// Enables (default) or disables the face index, which avoids most of fontconfig's start-up time in
    /// subsequent runs. Must be called before any other function.
    static void sUseFaceIndex(bool use);
    /// Name, kind and file of font `index`.
    /// @return 1, or -1 for an invalid index, in which case no output is set
    static int sGetFontGeneralInformation(int index, ORVUnicodeString& name, int& kind,
                                          ORVUnicodeString& file);

    /// The font returned for every name while the catalogue cannot be built. Text in it cannot be set, so
    /// that no text silently appears in another font.
    static const ORVFont* Unavailable();
    /// Whether a bitmap-only font with that family, full or PostScript name is installed; the catalogue does
    /// not list those. Slow, because it queries fontconfig.
    static bool sIsBitmapFont(std::string_view family);

    /// Adds a plain font at the end of the catalogue.
    /// @param name      catalogue name, customarily ending in ".font"
    /// @param faceFile  file of the outline font that it is drawn with
    /// @return the new font; null when the name is taken or the file contains no outline font
    static const ORVFont* sRegisterPlainFont(std::string_view name, const ORVString& faceFile);

    /// Catalogue name.
    const ORVUnicodeString& GetName() const { return name_; }
    /// Index in the catalogue, from 1. For a substitute, the index of the font whose face it uses; 0 when no
    /// font is installed.
    int GetCatalogueIndex() const { return index_; }
    /// Kind of font.
    Kind GetKind() const { return kind_; }

    /// The face for a weight of 24 (light), 25 (normal), 26 (bold) or 27 (heaviest); any other weight counts
    /// as 25. Normal is the font's own face; the others are the closest faces of the family with the same
    /// slant and width.
    /// @return a face that lives as long as the process; null when no usable font is installed
    const ORVFontFace* GetFace(int weight) const;

protected:
    friend class FontCatalogue;
    friend struct CatalogueDelete;
    /// Used by the catalogue, which creates all fonts.
    ORVFont(ORVUnicodeString name, int index, Kind kind);
    ~ORVFont() = default;

private:
    ORVUnicodeString name_;
    int index_;
    Kind kind_;
    mutable std::array<std::atomic<const ORVFontFace*>, 4> faces_ = {};  // faces found so far, by weight
};

/// An outline font of the catalogue.
class ORV_PLATFORM_EXPORT ORVOutlineFont final : public ORVFont {
public:
    /// The names of outline font `index`.
    /// @return 1, or -1 when `index` is invalid or refers to a plain font, in which case no output is set
    static int sGetFontOtherGeneralInformation(int index, ORVUnicodeString& fileName,
                                               ORVUnicodeString& foundry, ORVUnicodeString& family,
                                               ORVUnicodeString& style, ORVUnicodeString& fullName,
                                               ORVUnicodeString& postScriptName);

private:
    friend class FontCatalogue;
    friend struct CatalogueDelete;
    using ORVFont::ORVFont;
};

/// Replaces `font` by a font suitable for a text version. All fonts of this catalogue suit every version, so
/// nothing is changed.
/// @return 0, or -1 when `font` is null
ORV_PLATFORM_EXPORT int ORVFontCheckFontForVersion(const ORVFont*& font, int version);

namespace orvprint {

/// The first font of the catalogue with exactly that family name, found with one look-up; null when there is
/// none. An outline font matches by its family, full or PostScript name. For the attribute, a plain font
/// matches by its name without ".font"; for the style property, plain fonts and all fonts whose catalogue
/// name contains
/// ".font" are skipped.
ORV_PLATFORM_EXPORT const ORVFont* FindFontForAttribute(std::string_view family);
/// Like FindFontForAttribute, for the style property.
ORV_PLATFORM_EXPORT const ORVFont* FindFontForStyle(std::string_view family);

}  // namespace orvprint
