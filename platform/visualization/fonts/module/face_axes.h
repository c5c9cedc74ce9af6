// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include <hb-ot.h>

#include "platform/visualization/fonts/ORVFont.h"
#include "platform/visualization/fonts/module/file_face.h"

/// The axes of a variable font; empty for other fonts.
std::vector<hb_ot_var_axis_info_t> AxesOf(hb_face_t* face);
/// Sets the values of all axes.
void ApplyAxes(hb_font_t* font, const std::vector<double>& values);

/// Axis values for a query; `values` is empty for a font that is not variable.
struct AxisValues {
    std::vector<double> values;
    bool isSlanted = false;  ///< slanted by one of the axes
    bool dependsOnSize = false;
    bool isDefault = true;  ///< the values are those of the default instance
};
/// @param description  of the face; on return, of the instance
AxisValues FindAxisValues(const FileFace& face, const ORVFontQuery& query,
                          FileFace::Description& description);

/// The face of a variable font that matches a query.
struct VariedFace {
    const FileFace* face = nullptr;  ///< never null; lives as long as the process
    bool isSlanted = false;          ///< slanted by one of its axes
    bool dependsOnSize = false;
};

/// Returns the instance of a face that matches a query, or the face itself if it is not variable.
/// Thread-safe. Throws FontFailure when there would be too many instances.
VariedFace VaryFace(const FileFace& face, const ORVFontQuery& query);
