// SPDX-License-Identifier: Apache-2.0

// View boxes: compares the reader with its plain transcription.

#include <string>

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/same_numbers.h"
#include "interpreters/svg/values/view_box.h"
#include "tests/interpreters/svg/values/naive_values.h"

namespace {

const FuzzTarget kTarget("view_boxes", [](std::string_view text) {
    ORVPrtViewBox a{-1.0, -2.0, -3.0, -4.0}, b = a;
    Require(ReadViewBox(text, a) == naive::ViewBox(std::string(text), b));
    Require(SameNumbers({a.minX, a.minY, a.width, a.height}, {b.minX, b.minY, b.width, b.height}));
});

}  // namespace
