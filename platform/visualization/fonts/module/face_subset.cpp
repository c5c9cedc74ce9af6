// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/face_subset.h"

#include <hb-subset.h>

#include <cstddef>
#include <utility>

#include "platform/visualization/fonts/module/face_axes.h"

namespace {

using HbSubsetInput = std::unique_ptr<hb_subset_input_t, HbDestroy<hb_subset_input_destroy>>;
using HbSubsetPlan = std::unique_ptr<hb_subset_plan_t, HbDestroy<hb_subset_plan_destroy>>;

hb_tag_t TagOf(std::string_view name) {
    return hb_tag_from_string(name.data(), static_cast<int>(name.size()));
}

HbSubsetInput MakeInput(const std::vector<std::uint32_t>& glyphs) {
    HbSubsetInput input(hb_subset_input_create_or_fail());
    if (!input) return nullptr;
    for (const std::uint32_t glyph : glyphs) hb_set_add(hb_subset_input_glyph_set(input.get()), glyph);
    // These tables are redundant in a document.
    hb_set_t* const dropped = hb_subset_input_set(input.get(), HB_SUBSET_SETS_DROP_TABLE_TAG);
    for (const char* tag : {"GSUB", "GPOS", "GDEF", "BASE", "kern", "name", "OS/2", "post", "cmap", "DSIG",
                            "STAT", "vhea", "vmtx", "VORG", "gasp", "hdmx", "VDMX", "LTSH", "meta", "MATH"})
        hb_set_add(dropped, TagOf(tag));
    hb_subset_input_set_flags(input.get(), HB_SUBSET_FLAGS_NO_HINTING | HB_SUBSET_FLAGS_NOTDEF_OUTLINE);
    return input;
}

/// Makes the subset a fixed instance.
void PinAxes(hb_subset_input_t* input, hb_face_t* face, const std::vector<double>& values) {
    const std::vector<hb_ot_var_axis_info_t> axes = AxesOf(face);
    for (std::size_t i = 0; i < axes.size(); ++i) {
        if (i < values.size())
            hb_subset_input_pin_axis_location(input, face, axes[i].tag, static_cast<float>(values[i]));
        else
            hb_subset_input_pin_axis_to_default(input, face, axes[i].tag);
    }
}

HbBlob ProgramOf(hb_face_t* face, std::string_view table) {
    return HbBlob(table.empty() ? hb_face_reference_blob(face) : hb_face_reference_table(face, TagOf(table)));
}

}  // namespace

ORVFontBytes BytesOf(HbBlob blob) {
    unsigned int size = 0;
    const char* const bytes = hb_blob_get_data(blob.get(), &size);
    return {std::shared_ptr<const void>(std::move(blob)), {bytes, size}};
}

ORVFontSubset SubsetOf(hb_face_t* face, const std::vector<double>& axes,
                       const std::vector<std::uint32_t>& glyphs, std::string_view table) {
    ORVFontSubset whole{BytesOf(ProgramOf(face, table)), glyphs};
    const HbSubsetInput input = MakeInput(glyphs);
    if (input) PinAxes(input.get(), face, axes);
    const HbSubsetPlan plan(input ? hb_subset_plan_create_or_fail(face, input.get()) : nullptr);
    const HbFace reduced(plan ? hb_subset_plan_execute_or_fail(plan.get()) : nullptr);
    if (!reduced) return whole;
    ORVFontSubset subset{BytesOf(ProgramOf(reduced.get(), table)), {}};
    if (subset.program.bytes.empty()) return whole;
    const hb_map_t* const numbers = hb_subset_plan_old_to_new_glyph_mapping(plan.get());
    subset.glyphs.reserve(glyphs.size());
    for (const std::uint32_t glyph : glyphs) {
        const hb_codepoint_t number = hb_map_get(numbers, glyph);
        subset.glyphs.push_back(number == HB_MAP_VALUE_INVALID ? 0 : number);
    }
    return subset;
}
