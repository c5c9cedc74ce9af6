// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

class ORVPrtModel;

/// A whole model as JSON: every page, primitive and attribute, numbers in full, one that is not finite as
/// null.
/// @param result  what building it returned; goes into the document
nlohmann::json ModelToJson(const ORVPrtModel& model, int result);

/// Compares two such documents: numbers within 1e-9 (relative or absolute), angles within 1e-6, fonts not
/// at all. @return where they differ and how, one line each, at most ten; empty when they agree
std::string DifferencesOf(const nlohmann::json& expected, const nlohmann::json& actual);
