// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string_view>

#include "tests/support/named_rows.h"

/// A test case: the content of a drawing of 200 x 100 user units, and the expected sketch.
struct SketchCase {
    const char* name;
    const char* content;
    const char* expected;

    friend std::ostream& operator<<(std::ostream& out, const SketchCase& row) { return out << row.content; }
};

/// Builds a document with both back-ends and expects this sketch of the first page's children from each.
void ExpectSketch(std::string_view document, std::string_view expected);

/// Like ExpectSketch, with paint; see PaintedSketchOfChildren.
void ExpectPaintedSketch(std::string_view document, std::string_view expected);
