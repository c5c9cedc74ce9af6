// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/tree/DocumentFonts.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

#include "interpreters/svg2/document/outer_files.h"
#include "platform/visualization/fonts/ORVDocumentFont.h"
#include "platform/visualization/fonts/ORVFontFace.h"

namespace svg2 {
namespace {

constexpr int kLeastBoldWeight = 600;
constexpr int kOwnStyleWeight = 25, kBoldStyleWeight = 26;  // in units of ORVTextStyle

double Nearest(const std::pair<double, double>& span, double value) {
    return std::clamp(value, span.first, span.second);
}

/// Distance of a rule's width from the wanted one. For normal and narrow widths, narrower fonts are
/// preferred; otherwise wider ones.
std::pair<int, double> StretchDistance(const FontFaceRule& rule, double wanted) {
    const double nearest = Nearest(rule.stretches, wanted);
    const bool isOnRightSide = nearest == wanted || (wanted <= 100.0) == (nearest < wanted);
    return {isOnRightSide ? 0 : 1, std::abs(nearest - wanted)};
}

/// Distance of a rule's weight from the wanted one. Weights from 400 to 500 substitute for each other; light
/// weights prefer lighter fonts, and bold ones bolder fonts.
std::pair<int, double> WeightDistance(const FontFaceRule& rule, double wanted) {
    constexpr double kRegular = 400.0, kMedium = 500.0;
    const double nearest = Nearest(rule.weights, wanted);
    const double distance = std::abs(nearest - wanted);
    if (nearest == wanted) return {0, 0.0};
    if (wanted >= kRegular && wanted <= kMedium)
        return {nearest < wanted ? 1 : nearest <= kMedium ? 0 : 2, distance};
    return {(wanted < kRegular) == (nearest < wanted) ? 0 : 1, distance};
}

using Distance = std::tuple<std::pair<int, double>, bool, std::pair<int, double>>;

Distance DistanceOf(const FontFaceRule& rule, const ORVFontQuery& query) {
    return {StretchDistance(rule, query.stretch), rule.isItalic != query.isItalic,
            WeightDistance(rule, query.weight)};
}

std::string KeyOf(const ORVFontQuery& query) {
    std::string key(query.families);
    key += '\0';
    key += std::to_string(query.weight) + (query.isItalic ? 'i' : 'n') + std::to_string(query.stretch);
    key += query.variations;
    return key;
}

}  // namespace

DocumentFonts::DocumentFonts(std::span<const FontFaceRule> rules) {
    fonts_.reserve(rules.size());
    for (const FontFaceRule& rule : rules) {
        byFamily_[rule.family].push_back(fonts_.size());
        fonts_.push_back({rule, nullptr, nullptr, false});
    }
}

DocumentFonts::~DocumentFonts() = default;

const ORVFontFace* DocumentFonts::OpenSource(const FontSource& source, Font& font) {
    if (source.kind == FontSource::Kind::kLocal) {
        const ORVFont* const installed = orvprint::FindFontForStyle(source.text);
        return installed ? installed->GetFace(kOwnStyleWeight) : nullptr;
    }
    ORVDocumentFont brought;
    if (source.kind != FontSource::Kind::kData || opened_ >= kMostFonts || bytes_ >= kMostBytes ||
        !ReadDataUri(source.text, brought.bytes))
        return nullptr;
    const FontFaceRule& rule = font.rule;
    brought.family = rule.writtenFamily;
    brought.weight = static_cast<int>(Nearest(rule.weights, rule.weights.second));
    brought.isItalic = rule.isItalic;
    brought.ranges = rule.ranges;
    ++opened_;
    font.own = ORVOpenDocumentFont(std::move(brought));
    if (font.own) bytes_ += font.own->GetDocumentBytes().size();
    return font.own.get();
}

const ORVFontFace* DocumentFonts::Open(std::size_t rule) {
    Font& font = fonts_[rule];
    if (font.isOpened) return font.face;
    for (const FontSource& source : font.rule.sources) {
        font.face = OpenSource(source, font);
        if (font.face) break;
    }
    font.isOpened = true;
    return font.face;
}

/// The properties of a font at its declared weight and width.
DocumentFonts::Look DocumentFonts::LookOf(Font& font, const ORVFontQuery& query) {
    Look look{font.face, font.rule.isItalic, font.rule.weights.second >= kLeastBoldWeight, false};
    if (!font.own) return look;
    ORVFontQuery own = query;
    own.families = {};
    own.weight = static_cast<int>(std::lround(Nearest(font.rule.weights, query.weight)));
    own.stretch = Nearest(font.rule.stretches, query.stretch);
    ORVVariedDocumentFace varied = ORVVaryDocumentFont(*font.own, own);
    look.isItalic = look.isItalic || varied.isSlanted;
    look.dependsOnSize = varied.dependsOnSize;
    if (!varied.face) return look;
    constexpr std::size_t kMostVariations = 1024;
    if (varied_.size() >= kMostVariations) return look;
    std::shared_ptr<const ORVFontFace>& kept =
        varied_[std::to_string(&font - fonts_.data()) + varied.face->GetVariations()];
    if (!kept) kept = std::move(varied.face);
    look.face = kept.get();
    return look;
}

/// Equally suitable fonts of a family cover different characters; among those for the same characters, the
/// last one wins.
void DocumentFonts::AddFamily(const std::vector<std::size_t>& family, const ORVFontQuery& query,
                              OrderedFont& made) {
    std::vector<std::pair<Distance, std::size_t>> candidates;
    candidates.reserve(family.size());
    for (const std::size_t i : family) candidates.emplace_back(DistanceOf(fonts_[i].rule, query), i);
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    for (std::size_t first = 0, end = 0; first < candidates.size(); first = end) {
        while (end < candidates.size() && candidates[end].first == candidates[first].first) ++end;
        bool hasAny = false;
        for (std::size_t i = end; i-- > first;) {
            Font& font = fonts_[candidates[i].second];
            if (!Open(candidates[i].second)) continue;
            hasAny = true;
            const Look look = LookOf(font, query);
            made.choice.dependsOnSize = made.choice.dependsOnSize || look.dependsOnSize;
            made.order.push_back(look.face);
            // The metrics are those of the first font with a space.
            const auto& ranges = font.rule.ranges;
            const bool isForSpaces =
                ranges.empty() || std::any_of(ranges.begin(), ranges.end(), [](auto& range) {
                    return range.first <= U' ' && U' ' <= range.second;
                });
            if (made.choice.face || !isForSpaces) continue;
            made.choice.face = look.face;
            made.choice.isToBeSlanted = query.isItalic && !look.isItalic;
            made.choice.weight =
                query.weight >= kLeastBoldWeight && !look.isBold ? kBoldStyleWeight : kOwnStyleWeight;
        }
        if (hasAny) return;  // otherwise try the next nearest fonts
    }
}

std::unique_ptr<OrderedFont> DocumentFonts::Make(const ORVFontQuery& query) {
    auto made = std::make_unique<OrderedFont>();
    const std::vector<std::string> families = SplitFamilies(query.families);
    bool hasOwn = false;
    std::string rest;  // families since the last one found
    for (const std::string& family : families) {
        const auto own = byFamily_.find(family);
        ORVFontQuery one = query;
        const std::string quoted = '"' + family + '"';
        one.families = quoted;
        const std::size_t before = made->order.size();
        if (own != byFamily_.end()) AddFamily(own->second, query, *made);
        if (made->order.size() > before) {
            hasOwn = true;
            continue;
        }
        // Generic family names must not be quoted.
        one.families = family;
        const ORVFontChoice installed = ORVChooseFont(one);
        if (!installed.face || !installed.isOfFamily) continue;
        made->order.push_back(installed.face);
        if (!made->choice.face) made->choice = installed;
    }
    if (!hasOwn) return nullptr;
    const ORVFontChoice installed = ORVChooseFont(query);
    if (installed.face) made->order.push_back(installed.face);
    if (!made->choice.face) made->choice.face = made->order.front();
    made->choice.font = installed.font;
    made->choice.isOfFamily = true;
    return made;
}

const OrderedFont* DocumentFonts::Choose(const ORVFontQuery& query) {
    std::string key = KeyOf(query);
    if (const auto found = chosen_.find(key); found != chosen_.end()) {
        if (!found->second || !found->second->choice.dependsOnSize) return found->second.get();
        key += '\0' + std::to_string(query.size);
        if (const auto sized = chosen_.find(key); sized != chosen_.end()) return sized->second.get();
    }
    std::unique_ptr<OrderedFont>& made = chosen_[key];
    made = Make(query);
    return made.get();
}

}  // namespace svg2
