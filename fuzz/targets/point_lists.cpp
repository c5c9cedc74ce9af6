// SPDX-License-Identifier: Apache-2.0

// Point lists: compares the reader with its plain transcription.

#include <string>
#include <vector>

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/same_numbers.h"
#include "interpreters/svg/values/point_list.h"
#include "tests/interpreters/svg/values/naive_values.h"
#include "tests/support/page_state.h"

namespace {

const FuzzTarget kTarget("point_lists", [](std::string_view text) {
    std::vector<double> numbers{99.0};
    for (const int flip : {0, 1}) {
        const PageState state(200.0, 100.0, flip);
        ReadCoordinateNumbers(state, text, numbers);
        Require(SameNumbers(numbers, naive::Numbers(state, std::string(text))));
    }
});

}  // namespace
