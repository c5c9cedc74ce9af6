// SPDX-License-Identifier: Apache-2.0
#include "library/check/resource_checks.h"

#include <array>
#include <cstdio>
#include <new>

#include "interpreters/svg/geometry/images.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/style/text_properties.h"
#include "interpreters/svg/values/text_scan.h"
#include "platform/model/ORVPrtBitmapImageElt.h"
#include "platform/system/ORVRef.h"
#include "platform/system/files.h"
#include "platform/visualization/fonts/ORVFont.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/ORVTextLayout.h"
#include "platform/visualization/fonts/text_failure.h"

namespace {

using enum FindingCode;

// Recognises supported image formats by the first bytes of the file.
bool HasReadableFormat(const std::string& path) {
    std::array<unsigned char, 4> start{};
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return false;
    const std::size_t size = std::fread(start.data(), 1, start.size(), file);
    std::fclose(file);
    if (size < 2) return false;
    const bool isPng = start[0] == 0x89 && start[1] == 'P', isJpeg = start[0] == 0xFF && start[1] == 0xD8;
    return isPng || isJpeg || (start[0] == 'B' && start[1] == 'M');
}

bool IsRemote(std::string_view reference) {
    return reference.starts_with("http:") || reference.starts_with("https:") ||
           reference.starts_with("ftp:") || reference.starts_with("//");
}

// Why a reference yielded no file. The policy is asked first, so that nothing is revealed about files that it
// forbids.
ValueProblem ExplainMissingFile(const SvgDrawState& state, std::string_view reference) {
    ORVUnicodeString folder, name;
    // The interpreter looks for every name in the drawing's folder, but an absolute path means that file.
    if (!reference.starts_with('/')) ORVSplitPath(*state.currentPath, folder, name);
    const ORVFileAccessPolicy* const policy = ORVFileAccessPolicy::GetCurrent();
    bool isAllowed = false;
    for (const ORVUnicodeString& candidate :
         {ORVUnicodeString(reference), ORVMakePath(folder, ORVUnicodeString(reference))}) {
        if (!policy || !policy->MayRead(candidate)) continue;
        isAllowed = true;
        if (ORVFileStat(candidate) == 1) return {kImageMissing, "this user may not read the file"};
    }
    if (isAllowed) return {kImageMissing, "there is no such file"};
    return {kImageRefused, "the drawing may not read files there: see --allow-dir"};
}

// Why a reference yielded no pixels.
ValueProblem ExplainFailure(const SvgDrawState& state, std::string_view reference) {
    if (reference.empty()) return {kImageMissing, "has no image"};
    if (HoldsImageData(reference)) return {kImageBroken, "the image data are damaged"};
    if (reference.starts_with("data:"))
        return {kImageFormat, "only data:image/png, jpeg, jpg and bmp with ;base64, are read"};
    if (IsRemote(reference)) return {kImageRemote, "nothing is loaded from the network"};
    ORVUnicodeString path;
    if (FindImageFile(state, reference, path))
        return HasReadableFormat(std::string(path.GetView()))
                   ? ValueProblem{kImageBroken, "the file is damaged, or exceeds the limits for images"}
                   : ValueProblem{kImageFormat, "the file is not a PNG, JPEG or BMP image"};
    if (reference.starts_with("file:"))
        return {kImageMissing, "file: addresses are not read: give the path alone"};
    constexpr std::size_t kLongestName = 4096;
    if (reference.size() > kLongestName || reference.find('\0') != reference.npos)
        return {kImageMissing, "is not a file name"};
    return ExplainMissingFile(state, reference);
}

MaybeProblem Explain(ORVImageRemark remark) {
    switch (remark) {
        case ORVImageRemark::kNone: break;
        case ORVImageRemark::kBrokenProfile:
            return ValueProblem{kImageColours,
                                "its colour profile is damaged, or does not fit its pixels, and is ignored"};
        case ORVImageRemark::kNotConverted:
            return ValueProblem{
                kImageColours,
                "its colours are not sRGB, and liborvcolour.so, which converts them, cannot be loaded"};
        case ORVImageRemark::kOtherColours:
            return ValueProblem{kImageColours, "its colours are described in an unsupported way"};
        case ORVImageRemark::kNotTurned:
            return ValueProblem{kImageNotTurned, "states an orientation other than upright: save it upright"};
    }
    return std::nullopt;
}

// One pixel is one user unit unless the image specifies a resolution, in pixels per metre.
double TileSize(int pixels, double resolution) {
    constexpr double kUnitsPerMetre = 90.0 / 0.0254;
    return resolution > 0.0 ? pixels / resolution * kUnitsPerMetre : pixels;
}

std::string FamilyOf(const ORVFont* font) {
    const ORVFontFace* face = font ? font->GetFace(kWeightNormal) : nullptr;
    return face ? face->GetFamily() : "none";
}

// Why the font catalogue has no such family.
std::string WhyNotUsed(std::string_view family) {
    std::string name(family);
    std::erase_if(name, [](char c) { return c == '"' || c == '\''; });
    return Excerpt(family) + (ORVFont::sIsBitmapFont(TrimBlanks(name))
                                  ? " is installed, but has pixels and no outlines, and cannot be used"
                                  : " is not installed");
}

bool IsFallbackOf(const ORVGlyphRun& run) {
    for (const ORVGlyph& glyph : run.glyphs)
        if (glyph.index == 0) return true;
    return false;
}

// Removes and decodes the first character of `text`. Invalid bytes count as U+FFFD.
char32_t CutCharacter(std::string_view& text, std::string_view& bytes) {
    const auto lead = static_cast<unsigned char>(text.front());
    std::size_t length = lead < 0x80 ? 1 : lead < 0xC0 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t code = lead < 0x80 ? lead : lead & (0xFFU >> (length + 1));
    if (length == 0 || length > text.size() || !ORVIsWellFormedUTF8(text.substr(0, length))) {
        length = 1;
        code = 0xFFFD;
    } else {
        for (std::size_t i = 1; i < length; ++i)
            code = code << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    bytes = text.substr(0, length);
    text.remove_prefix(length);
    return code;
}

}  // namespace

const ImageFacts& ResourceChecks::CheckImage(const SvgDrawState& state, std::string_view reference) {
    const auto [found, isNew] = images_.try_emplace(reference);
    ImageFacts& facts = found->second;
    if (!isNew) return facts;
    const ORVRef<ORVPrtBitmapImageElt> bitmap(new ORVPrtBitmapImageElt);
    if (!LoadPixelImage(state, reference, *bitmap)) throw std::bad_alloc();
    if (const ORVPixelImage* image = bitmap->GetPixelImage()) {
        facts.remark = Explain(image->GetRemark());
        facts.width = image->GetWidth();
        facts.height = image->GetHeight();
        facts.tileWidth = TileSize(facts.width, image->GetHorizontalResolution());
        facts.tileHeight = TileSize(facts.height, image->GetVerticalResolution());
    } else {
        facts.problem = ExplainFailure(state, reference);
    }
    return facts;
}

MaybeProblem ResourceChecks::CheckFont(const SvgDrawState& state) {
    const ORVFont* const font = state.text.GetFont();
    const int weight = state.text.GetWeight();
    if (isTextUnset_ || !knownFonts_.emplace(font, weight).second) return std::nullopt;
    isTextUnset_ = !ORVMeasureText(" ", {.font = font, .weight = weight}).isSet;
    if (!isTextUnset_) return std::nullopt;
    return ValueProblem{kTextCannotBeSet, std::string(ORVGetTextFailure())};
}

MaybeProblem ResourceChecks::CheckFamilies(std::string_view families, PropertySource source) {
    if (isTextUnset_) return std::nullopt;
    std::string_view rest = families, first;
    while (!rest.empty()) {
        const std::string_view family = TrimBlanks(CutUpTo(rest, ','));
        if (family.empty()) continue;
        SvgDrawState state;
        ApplyFontFamily(state, family, source);
        if (const ORVFont* font = state.text.GetFont()) {
            if (first.empty()) return std::nullopt;
            return ValueProblem{kFontFallback, WhyNotUsed(first) + "; " + FamilyOf(font) + " is taken"};
        }
        if (first.empty()) first = family;
    }
    if (first.empty()) return std::nullopt;
    return ValueProblem{kFontMissing, WhyNotUsed(first) + ", nor is any other of the list: the font " +
                                          "does not change: " + FamilyOf(ORVFont::sGetFont("arial.ttf")) +
                                          " where none was found before"};
}

MaybeProblem ResourceChecks::CheckDefaultFont(const SvgDrawState& state) {
    if (isTextUnset_ || isDefaultFontTold_) return std::nullopt;
    isDefaultFontTold_ = true;
    const ORVFont* const font = state.text.GetFont();
    return ValueProblem{kFontUnspecified,
                        "has no font-family: it is set in " +
                            FamilyOf(font ? font : ORVFont::sGetFont("arial.ttf")) +
                            ", and in the default font of each other program; reported once"};
}

MaybeProblem ResourceChecks::CheckGlyphs(std::string_view text, const SvgDrawState& state) {
    constexpr std::size_t kCharacters = 0x110000;
    if (isTextUnset_) return std::nullopt;
    if (knownCharacters_.empty()) knownCharacters_.resize(kCharacters);
    MaybeProblem problem;
    for (std::string_view bytes; !text.empty();) {
        const char32_t character = CutCharacter(text, bytes);
        if (character < 0x20 || character >= kCharacters || knownCharacters_[character]) continue;
        knownCharacters_[character] = true;
        const ORVTextLayout layout = ORVLayoutText(bytes, {.font = state.text.GetFont()});
        if (!problem && !layout.isSet) {
            isTextUnset_ = true;
            return ValueProblem{kTextCannotBeSet, std::string(ORVGetTextFailure())};
        }
        for (const ORVGlyphRun& run : layout.runs) {
            if (problem || !IsFallbackOf(run)) continue;
            char code[16];
            std::snprintf(code, sizeof code, "U+%04X", static_cast<unsigned int>(character));
            problem = ValueProblem{kMissingGlyph, std::string("no installed font has ") + code};
        }
    }
    return problem;
}
