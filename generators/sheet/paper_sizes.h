// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>

/// User units per inch.
inline constexpr double kPaperInch = 90.0;
inline constexpr double kPaperMillimetre = kPaperInch / 25.4;

/// A sheet of paper as its name states it; most names state the shorter side first. User units.
struct ORVPaperSize {
    double width = 0.0, height = 0.0;
};

/// A name that people use, and the self-describing name of PWG 5101.1 that states the size:
/// class_name_WIDTHxHEIGHTunit.
struct ORVPaperName {
    std::string_view common, standard;
};

/// All papers that are known by name. Every size with a unit, and every self-describing name, is understood
/// beside them.
std::span<const ORVPaperName> ORVPaperNames();

/// Finds a paper: by its common name ("A4", "ANSI C"), by its standard name with or without the size
/// ("iso_a4_210x297mm", "iso_a4"; the size counts, whatever stands before it), or by a size ("210x297mm",
/// "8.5x11in", also in cm and pt). Case does not matter, nor do blanks, hyphens and underscores in common
/// names.
/// @return true when `paper` was written; its sides are then between 1 mm and 100 m
bool ORVFindPaper(std::string_view text, ORVPaperSize& paper);

/// Reads a length on paper: a number of 0 or more and one of mm, cm, in, pt; 0 needs no unit.
/// @return true when `userUnits` was written
bool ORVParsePaperLength(std::string_view text, double& userUnits);
