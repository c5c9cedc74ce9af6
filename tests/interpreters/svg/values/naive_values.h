// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/model/ORVPrtTransformAttributes.h"
#include "platform/model/ORVPrtViewBox.h"

struct SvgDrawState;

/// Reference implementation of the value parsers by string editing: slow, simple and independent of the
/// parsers tested against it.
namespace naive {

int Length(const SvgDrawState& state, std::string value, double& out);
int HorizontalLength(const SvgDrawState& state, std::string value, double& out);
int VerticalLength(const SvgDrawState& state, std::string value, double& out);
int VerticalCoordinate(const SvgDrawState& state, std::string value, double& out);
/// @return false if the value is not a colour
bool Colour(std::string value, int (&components)[3]);
std::vector<ORVPrtTransformOperation> Transform(const SvgDrawState& state, std::string text);
int ViewBox(std::string text, ORVPrtViewBox& box);
std::vector<double> Numbers(const SvgDrawState& state, std::string value);
/// Trimmed name and value of every declaration.
std::vector<std::pair<std::string, std::string>> Declarations(std::string style);
std::vector<float> Dashes(std::string value);
std::vector<std::string> Families(std::string value);

}  // namespace naive
