// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>

/// User units per inch.
inline constexpr double kPaperInch = 90.0;
inline constexpr double kPaperMillimetre = kPaperInch / 25.4;

/// A paper size in user units, as oriented in its name; most names state the shorter side first.
struct ORVPaperSize {
    double width = 0.0, height = 0.0;
};

/// A common name, and the self-describing name of PWG 5101.1 that states the size:
/// class_name_WIDTHxHEIGHTunit.
struct ORVPaperName {
    std::string_view common, standard;
};

/// All papers known by name. ORVFindPaper also accepts any size with a unit, and any self-describing name.
std::span<const ORVPaperName> ORVPaperNames();

/// Finds a paper by its common name ("A4", "ANSI C"), by its standard name with or without the size
/// ("iso_a4_210x297mm", "iso_a4"; if there is a size, only the size counts), or by a size ("210x297mm",
/// "8.5x11in", also in cm and pt). Case is ignored, as are spaces, hyphens and underscores in common names.
/// @return true if `paper` was set; its sides are then between 1 mm and 100 m
bool ORVFindPaper(std::string_view text, ORVPaperSize& paper);

/// Parses a length on paper: a non-negative number with the unit mm, cm, in or pt; 0 needs no unit.
/// @return true if `userUnits` was set
bool ORVParsePaperLength(std::string_view text, double& userUnits);
