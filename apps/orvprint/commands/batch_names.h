// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The base name of an input's output: its file name without the extension of a drawing (.svg, .svgz, .qvxml,
/// each optionally followed by .gz; case-insensitive).
std::string BaseName(std::string_view input);

/// Output names of a batch, one for each input: FOLDER/NAME.EXTENSION.
/// @param keepsFolders  FOLDER/FOLDERS/NAME.EXTENSION, with the folders of the input
/// @param error  receives the reason if the result is empty: two inputs with the same name, or an input
///         without a name
std::vector<std::string> PlanOutputs(const std::vector<std::string>& inputs, const std::string& folder,
                                     std::string_view ending, bool keepsFolders, std::string& error);
