// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/model/ORVPrtTransformAttributes.h"
#include "platform/model/ORVPrtViewBox.h"

struct SvgDrawState;

/// The value readers once more, as the edits of a string by which their results are defined: slow, plain, and
/// independent of the readers in use, which are held to them.
namespace naive {

int Length(const SvgDrawState& state, std::string value, double& out);
int HorizontalLength(const SvgDrawState& state, std::string value, double& out);
int VerticalLength(const SvgDrawState& state, std::string value, double& out);
int VerticalCoordinate(const SvgDrawState& state, std::string value, double& out);
/// @return false where the value is no colour
bool Colour(std::string value, int (&components)[3]);
std::vector<ORVPrtTransformOperation> Transform(const SvgDrawState& state, std::string text);
int ViewBox(std::string text, ORVPrtViewBox& box);
std::vector<double> Numbers(const SvgDrawState& state, std::string value);
/// Name and value of every declaration, trimmed.
std::vector<std::pair<std::string, std::string>> Declarations(std::string style);
std::vector<float> Dashes(std::string value);
std::vector<std::string> Families(std::string value);

}  // namespace naive
