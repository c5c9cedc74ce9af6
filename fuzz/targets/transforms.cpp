// SPDX-License-Identifier: Apache-2.0

// Transform lists: compares the reader with its plain transcription.

#include <string>
#include <vector>

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/same_numbers.h"
#include "interpreters/svg/values/transform_list.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtTransformAttributes.h"
#include "tests/interpreters/svg/values/naive_values.h"
#include "tests/support/page_state.h"

namespace {

std::vector<double> NumbersOf(const std::vector<ORVPrtTransformOperation>& operations) {
    std::vector<double> numbers;
    for (const ORVPrtTransformOperation& one : operations)
        numbers.insert(numbers.end(), {static_cast<double>(one.kind), one.a, one.b, one.c, one.d});
    return numbers;
}

const FuzzTarget kTarget("transforms", [](std::string_view text) {
    for (const int flip : {0, 1}) {
        const PageState state(30.0, 40.0, flip);
        const ORVRef<ORVPrtGroupElt> group(new ORVPrtGroupElt);
        Require(ApplyTransformList(state, text, group.get()) == 1);
        Require(SameNumbers(NumbersOf(group->GetTransformAttributes().GetOperations()),
                            NumbersOf(naive::Transform(state, std::string(text)))));
    }
});

}  // namespace
