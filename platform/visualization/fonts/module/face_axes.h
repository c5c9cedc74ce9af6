// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include <hb-ot.h>

#include "platform/visualization/fonts/ORVFont.h"
#include "platform/visualization/fonts/module/file_face.h"

/// The axes of a font that varies; none for others.
std::vector<hb_ot_var_axis_info_t> AxesOf(hb_face_t* face);
/// Sets a value for each axis.
void ApplyAxes(hb_font_t* font, const std::vector<double>& values);

/// A value for each axis, as a query asks for it. Those of a font that does not vary are none.
struct AxisValues {
    std::vector<double> values;
    bool isSlanted = false;  ///< by one of the axes
    bool dependsOnSize = false;
    bool isDefault = true;  ///< the face as it is
};
/// @param description  of the face; out: of this look of it
AxisValues FindAxisValues(const FileFace& face, const ORVFontQuery& query,
                          FileFace::Description& description);

/// How a query is met by a face that varies.
struct VariedFace {
    const FileFace* face = nullptr;  ///< never null; lives as long as the process
    bool isSlanted = false;          ///< by one of its axes
    bool dependsOnSize = false;
};

/// The look of a face that a query asks for: the face itself where it does not vary. May be called from any
/// thread. Throws FontFailure where there would be too many.
VariedFace VaryFace(const FileFace& face, const ORVFontQuery& query);
