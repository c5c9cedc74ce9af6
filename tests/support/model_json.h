// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

class ORVPrtModel;

/// Converts a whole model to JSON: all pages, primitives and attributes, with numbers in full precision;
/// those that are not finite become null.
/// @param result  result of building the model, which is included
nlohmann::json ModelToJson(const ORVPrtModel& model, int result);

/// Compares two such documents: numbers within 1e-9 (relative or absolute), angles within 1e-6; fonts are
/// ignored.
/// @return one line per difference, at most ten; empty if they are equal
std::string DifferencesOf(const nlohmann::json& expected, const nlohmann::json& actual);
