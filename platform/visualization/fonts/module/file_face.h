// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <ft2build.h>
#include FT_FREETYPE_H
#include <hb.h>

#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/module/font_file.h"

/// Smart pointers to HarfBuzz objects.
template <auto kDestroy>
struct HbDestroy {
    template <class Object>
    void operator()(Object* object) const {
        kDestroy(object);
    }
};
using HbBlob = std::unique_ptr<hb_blob_t, HbDestroy<hb_blob_destroy>>;
using HbFace = std::unique_ptr<hb_face_t, HbDestroy<hb_face_destroy>>;
using HbFont = std::unique_ptr<hb_font_t, HbDestroy<hb_font_destroy>>;

/// Closes a FreeType face, under the lock that FreeType requires.
struct FreeTypeFaceClose {
    void operator()(FT_FaceRec_* face) const;
};
using FreeTypeFace = std::unique_ptr<FT_FaceRec_, FreeTypeFaceClose>;
/// Opens a face from bytes, which must outlive it. @return null when there is no usable face
FreeTypeFace OpenFreeTypeFace(std::string_view bytes, unsigned int index);

/// A call-once flag. If the function throws, the next call tries again. Unlike std::call_once, no exception
/// propagates through the C library, which would load its own unwinder and abort when memory is short.
class OnceDone {
public:
    template <class Function>
    void Do(const Function& function) {
        if (isDone_.load(std::memory_order_acquire)) return;
        const std::lock_guard lock(mutex_);
        if (isDone_.load(std::memory_order_relaxed)) return;
        function();
        isDone_.store(true, std::memory_order_release);
    }

private:
    std::atomic<bool> isDone_ = false;
    std::mutex mutex_;
};

/// A face of a font file. The objects of the font libraries are created on demand.
class FileFace final : public ORVFontFace {
public:
    using ORVFontFace::Description;
    using ORVFontFace::GetDescription;
    explicit FileFace(Description description) : ORVFontFace(std::move(description)) {}
    /// Another instance of a variable font, with the same lifetime.
    /// @param axes  a value for each axis of the font, in the font's order
    FileFace(const FileFace& base, Description description, std::vector<double> axes)
        : ORVFontFace(std::move(description)),
          base_(&base),
          keptBase_(base.Share()),
          ranges_(base.ranges_),
          axes_(std::move(axes)) {}
    /// A face of a document font.
    FileFace(Description description, std::string bytes, std::vector<std::pair<char32_t, char32_t>> ranges);
    ~FileFace() override;

    unsigned int GetUnitsPerEm() const override;
    double GetAscent() const override;
    double GetDescent() const override;
    std::uint32_t GetGlyph(char32_t codePoint) const override;
    double GetAdvance(std::uint32_t glyph) const override;
    bool DrawGlyph(std::uint32_t glyph, double size, ORVGlyphOutlineSink& sink) const override;
    ORVFontBytes GetTable(std::string_view name) const override;
    ORVFontSubset MakeSubset(const std::vector<std::uint32_t>& glyphs, std::string_view table) const override;
    FT_FaceRec_* GetFreeTypeFace() const override;
    std::string_view GetDocumentBytes() const override;
    /// Whether the face has an OpenType feature in any script. Results are cached.
    bool HasFeature(hb_tag_t tag) const;

    /// The HarfBuzz object; hb_font_get_scale tells its units per em. Throws FontFailure when the file cannot
    /// be opened. @return null when it contains no usable font
    hb_font_t* GetHarfBuzzFont() const;
    /// The FreeType object; otherwise as above.
    FT_Face LoadFreeType() const;

    /// Checks, once per script and direction, that there is enough memory for HarfBuzz's shaping plan. For
    /// one thread at a time.
    void PrepareFor(hb_script_t script, hb_direction_t direction) const;

private:
    hb_font_t* FindFont() const;
    const FontFile& File() const;
    bool IsFor(char32_t codePoint) const;
    FT_Face OpenFreeType() const;
    HbFont LoadOpenType() const;
    HbFont LoadOther() const;
    void LoadFont() const;

    const FileFace* const base_ = nullptr;               // owner of the file, if that is another face
    const std::shared_ptr<const ORVFontFace> keptBase_;  // keeps `base_` alive for a document font
    const std::vector<std::pair<char32_t, char32_t>> ranges_;
    const std::vector<double> axes_;
    mutable OnceDone fileLoaded_, fontLoaded_, freeTypeLoaded_;
    mutable std::unique_ptr<const FontFile> file_;
    mutable HbFont font_;
    mutable FT_Face freeType_ = nullptr;
    mutable double unitsPerEm_ = 1000.0;  // scale of the HarfBuzz font
    mutable double ascent_ = 0.8, descent_ = 0.2;
    mutable std::vector<std::pair<hb_script_t, hb_direction_t>> prepared_;
    mutable std::vector<std::pair<hb_tag_t, bool>> features_;  // cached results of HasFeature
};
