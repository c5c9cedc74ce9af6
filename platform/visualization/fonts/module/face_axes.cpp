// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/face_axes.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "platform/visualization/fonts/module/font_failure.h"

namespace {

constexpr hb_tag_t kWeight = HB_TAG('w', 'g', 'h', 't');
constexpr hb_tag_t kWidth = HB_TAG('w', 'd', 't', 'h');
constexpr hb_tag_t kSlant = HB_TAG('s', 'l', 'n', 't');
constexpr hb_tag_t kItalic = HB_TAG('i', 't', 'a', 'l');
constexpr hb_tag_t kOpticalSize = HB_TAG('o', 'p', 's', 'z');
// Angle of oblique letters, in degrees, counter-clockwise as in fonts.
constexpr double kObliqueAngle = -14.0;

bool HasAxis(const std::vector<hb_ot_var_axis_info_t>& axes, hb_tag_t tag) {
    return std::any_of(axes.begin(), axes.end(), [&](const auto& axis) { return axis.tag == tag; });
}

/// Parser of axis settings in CSS syntax.
class Settings {
public:
    explicit Settings(std::string_view text) : text_(text) {}

    /// Reads the next setting. @return false at the end or at a syntax error
    bool Take(hb_tag_t& tag, double& value) {
        constexpr std::size_t kLetters = 4;
        Skip(" \t\r\n\f,");
        if (text_.size() < kLetters + 2 || (text_.front() != '"' && text_.front() != '\'')) return false;
        if (text_[kLetters + 1] != text_.front()) return false;
        tag = hb_tag_from_string(text_.data() + 1, static_cast<int>(kLetters));
        text_.remove_prefix(kLetters + 2);
        Skip(" \t\r\n\f+");
        const auto [end, error] = std::from_chars(text_.data(), text_.data() + text_.size(), value);
        if (error != std::errc() || !std::isfinite(value)) return false;
        text_.remove_prefix(static_cast<std::size_t>(end - text_.data()));
        return true;
    }

private:
    void Skip(std::string_view characters) {
        text_.remove_prefix(std::min(text_.find_first_not_of(characters), text_.size()));
    }

    std::string_view text_;
};

/// Value of an axis according to the properties of a query; `otherwise` when they do not specify it.
double ValueFor(hb_tag_t axis, const ORVFontQuery& query, bool hasItalic, double otherwise) {
    switch (axis) {
        case kWeight: return query.weight;
        case kWidth: return query.stretch;
        case kItalic: return query.isItalic ? 1.0 : otherwise;
        case kSlant: return query.isItalic && !hasItalic ? kObliqueAngle : otherwise;
        case kOpticalSize: return query.size > 0.0 ? query.size : otherwise;
        default: return otherwise;
    }
}

std::vector<double> ValuesFor(const std::vector<hb_ot_var_axis_info_t>& axes, const ORVFontQuery& query) {
    std::vector<double> values;
    const bool hasItalic = HasAxis(axes, kItalic);
    for (const hb_ot_var_axis_info_t& axis : axes)
        values.push_back(ValueFor(axis.tag, query, hasItalic, axis.default_value));
    Settings settings(query.variations);
    hb_tag_t tag = 0;
    for (double value = 0.0; settings.Take(tag, value);)
        for (std::size_t i = 0; i < axes.size(); ++i)
            if (axes[i].tag == tag) values[i] = value;
    for (std::size_t i = 0; i < axes.size(); ++i)
        values[i] = std::clamp(values[i], double(axes[i].min_value), double(axes[i].max_value));
    return values;
}

double ValueOf(hb_tag_t tag, const std::vector<hb_ot_var_axis_info_t>& axes,
               const std::vector<double>& values, double otherwise) {
    for (std::size_t i = 0; i < axes.size(); ++i)
        if (axes[i].tag == tag) return values[i];
    return otherwise;
}

std::string TextOf(const std::vector<hb_ot_var_axis_info_t>& axes, const std::vector<double>& values) {
    std::string text;
    for (std::size_t i = 0; i < axes.size(); ++i) {
        char name[4], number[32];
        hb_tag_to_string(axes[i].tag, name);
        if (!text.empty()) text += ',';
        text.append(name, sizeof name) += '=';
        constexpr int kPlaces = 4;
        const auto end =
            std::to_chars(number, number + sizeof number, values[i], std::chars_format::fixed, kPlaces);
        if (end.ec == std::errc()) text.append(number, end.ptr);
    }
    return text;
}

/// All instances of variable fonts created so far.
class VariedFaces {
public:
    const FileFace& Find(const FileFace& base, FileFace::Description description,
                         const std::vector<double>& values) {
        constexpr std::size_t kMost = 1024;
        const std::lock_guard lock(mutex_);
        auto key = std::make_pair(&base, values);
        if (const auto found = faces_.find(key); found != faces_.end()) return *found->second;
        if (faces_.size() >= kMost)
            throw FontFailure({"more than 1024 variations of fonts; use fewer weights and sizes of them"});
        auto face = std::make_unique<const FileFace>(base, std::move(description), values);
        return *faces_.emplace(std::move(key), std::move(face)).first->second;
    }

private:
    std::mutex mutex_;
    std::map<std::pair<const FileFace*, std::vector<double>>, std::unique_ptr<const FileFace>> faces_;
};

}  // namespace

std::vector<hb_ot_var_axis_info_t> AxesOf(hb_face_t* face) {
    constexpr unsigned int kMost = 64;
    if (!hb_ot_var_has_data(face)) return {};
    std::vector<hb_ot_var_axis_info_t> axes(std::min(hb_ot_var_get_axis_count(face), kMost));
    auto count = static_cast<unsigned int>(axes.size());
    hb_ot_var_get_axis_infos(face, 0, &count, axes.data());
    axes.resize(count);
    return axes;
}

void ApplyAxes(hb_font_t* font, const std::vector<double>& values) {
    const std::vector<hb_ot_var_axis_info_t> axes = AxesOf(hb_font_get_face(font));
    std::vector<hb_variation_t> variations;
    for (std::size_t i = 0; i < std::min(axes.size(), values.size()); ++i)
        variations.push_back({axes[i].tag, static_cast<float>(values[i])});
    hb_font_set_variations(font, variations.data(), static_cast<unsigned int>(variations.size()));
}

AxisValues FindAxisValues(const FileFace& face, const ORVFontQuery& query,
                          FileFace::Description& description) {
    AxisValues found;
    hb_font_t* const font = face.GetHarfBuzzFont();
    if (!font) return found;
    const std::vector<hb_ot_var_axis_info_t> axes = AxesOf(hb_font_get_face(font));
    if (axes.empty()) return found;
    std::vector<double>& values = found.values = ValuesFor(axes, query);
    found.dependsOnSize = HasAxis(axes, kOpticalSize);
    found.isSlanted = ValueOf(kItalic, axes, values, 0.0) > 0.0 || ValueOf(kSlant, axes, values, 0.0) < 0.0;
    found.isDefault =
        std::equal(values.begin(), values.end(), axes.begin(),
                   [](double value, const auto& axis) { return value == double(axis.default_value); });
    if (found.isDefault) return found;
    description.weight = static_cast<int>(std::lround(ValueOf(kWeight, axes, values, description.weight)));
    description.isItalic = description.isItalic || found.isSlanted;
    description.variations = TextOf(axes, values);
    return found;
}

VariedFace VaryFace(const FileFace& face, const ORVFontQuery& query) {
    FileFace::Description description = face.GetDescription();
    const AxisValues axes = FindAxisValues(face, query, description);
    VariedFace varied{&face, axes.isSlanted, axes.dependsOnSize};
    if (axes.isDefault) return varied;
    static auto* const faces = new VariedFaces;
    varied.face = &faces->Find(face, std::move(description), axes.values);
    return varied;
}
