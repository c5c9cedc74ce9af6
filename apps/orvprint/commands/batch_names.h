// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The base name of a batch's output: that of the input without folder and without the extension of a drawing
/// (.svg, .svgz, .qvxml, optionally followed by .gz), in upper or lower case.
std::string BaseName(std::string_view input);

/// The outputs of a batch, one per input: FOLDER/NAME.EXTENSION.
/// @param keepsFolders  FOLDER/SUBFOLDERS/NAME.EXTENSION instead, with the input's folders
/// @param error  receives the reason (two inputs with the same name, or one without a name) if the result is
///               empty
std::vector<std::string> PlanOutputs(const std::vector<std::string>& inputs, const std::string& folder,
                                     std::string_view ending, bool keepsFolders, std::string& error);
