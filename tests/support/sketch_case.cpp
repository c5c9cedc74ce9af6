// SPDX-License-Identifier: Apache-2.0
#include "tests/support/sketch_case.h"

#include "tests/support/built_model.h"
#include "tests/support/model_sketch.h"

void ExpectSketch(std::string_view document, std::string_view expected) {
    for (const Backend backend : kBackends) {
        SCOPED_TRACE(NameOf(backend));
        const BuiltModel model(document, {.backend = backend});
        ASSERT_GT(model.GetPageCount(), 0U);
        EXPECT_EQ(SketchOfChildren(model.GetPage()), expected);
    }
}

void ExpectPaintedSketch(std::string_view document, std::string_view expected) {
    for (const Backend backend : kBackends) {
        SCOPED_TRACE(NameOf(backend));
        const BuiltModel model(document, {.backend = backend});
        ASSERT_GT(model.GetPageCount(), 0U);
        EXPECT_EQ(PaintedSketchOfChildren(model.GetPage()), expected);
    }
}
