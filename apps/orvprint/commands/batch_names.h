// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The name that a batch gives to what comes out of an input: the input's own without its folder and without
/// an ending that tells a drawing (.svg, .svgz, .qvxml, each also with .gz behind), in letters of either
/// case.
std::string BaseName(std::string_view input);

/// The outputs of a batch, one for each input: FOLDER/NAME.ENDING.
/// @param keepsFolders  FOLDER/FOLDERS/NAME.ENDING instead, with the input's own folders
/// @param error  receives why there is no such list (two inputs of one name, an input without one), when the
///               list returned is empty
std::vector<std::string> PlanOutputs(const std::vector<std::string>& inputs, const std::string& folder,
                                     std::string_view ending, bool keepsFolders, std::string& error);
