// SPDX-License-Identifier: Apache-2.0
#include "generators/common/ORVGuardedGenerator.h"

#include <gtest/gtest.h>

#include <array>
#include <new>
#include <system_error>

#include "generators/common/generator_status.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/visualization/fonts/ORVTextLayout.h"
#include "platform/visualization/images/ORVPixelImage.h"
#include "tests/generators/drawing_calls.h"

namespace {

/// Counts its calls and throws in one of them.
class ThrowingGenerator final : public ORVPrintGenerator {
public:
    explicit ThrowingGenerator(int throwsAt, bool throwsForMemory = true)
        : throwsAt_(throwsAt), throwsForMemory_(throwsForMemory) {}
    int GetCalls() const { return calls_; }

    int BeginDocument(const ORVPrintDocumentInfo& /*info*/) override { return Count(); }
    int BeginPage(const ORVPrintPageInfo& /*info*/) override { return Count(); }
    int BeginGroup(const ORVPrintGroup& /*group*/) override { return Count(); }
    int EndGroup() override { return Count(); }
    int BeginClip(const ORVMathBox2D& /*box*/) override { return Count(); }
    int EndClip() override { return Count(); }
    unsigned int GetPowers() const override { return kGradients | kMasks; }
    int BeginClipPath(const ORVPrintClipPath& /*clip*/) override { return Count(); }
    int EndClipPath() override { return Count(); }
    int BeginLayer(const ORVPrintLayer& /*layer*/) override { return Count(); }
    int EndLayer() override { return Count(); }
    int BeginMask(const ORVPrintMask& /*mask*/) override { return Count(); }
    int EndMask() override { return Count(); }
    int BeginSymbol(const ORVPrintSymbol& /*symbol*/) override { return Count(); }
    int EndSymbol() override { return Count(); }
    int BeginTiles(const ORVPrintTiles& /*tiles*/) override { return Count(); }
    int EndTiles() override { return Count(); }
    int DrawShape(const ORVPrintShape& /*shape*/) override { return Count(); }
    int DrawText(const ORVPrintText& /*text*/) override { return Count(); }
    int DrawImage(const ORVPrintImage& /*image*/) override { return Count(); }
    int EndPage() override { return Count(); }
    int EndDocument() override { return Count(); }

private:
    int Count() {
        if (++calls_ != throwsAt_) return 100 + calls_;  // a different result for each call
        if (throwsForMemory_) throw std::bad_alloc();
        throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
    }

    const int throwsAt_;
    const bool throwsForMemory_;
    int calls_ = 0;
};

constexpr int kCalls = 21;

/// Makes every call once. @return the results, in order
std::array<int, kCalls> CallAll(ORVPrintGenerator& generator) {
    const ORVPrintPath path;
    const ORVTextLayout layout;
    const auto image = PlainImage(1, 1, {});
    return {generator.BeginDocument({}),
            generator.BeginPage({}),
            generator.BeginGroup({}),
            generator.EndGroup(),
            generator.BeginClip({}),
            generator.EndClip(),
            generator.BeginClipPath({path, {}}),
            generator.EndClipPath(),
            generator.BeginLayer({}),
            generator.EndLayer(),
            generator.BeginMask({}),
            generator.EndMask(),
            generator.BeginSymbol({}),
            generator.EndSymbol(),
            generator.BeginTiles({}),
            generator.EndTiles(),
            generator.DrawShape({path, {}}),
            generator.DrawText({layout, {}, {}}),
            generator.DrawImage({*image, {}}),
            generator.EndPage(),
            generator.EndDocument()};
}

TEST(ORVGuardedGeneratorTest, PassesOnWhatIsReturned) {
    ThrowingGenerator target(0);
    ORVGuardedGenerator guard(target);
    const std::array<int, kCalls> results = CallAll(guard);
    for (int call = 1; call <= kCalls; ++call)
        EXPECT_EQ(results[static_cast<std::size_t>(call) - 1], 100 + call);
    EXPECT_FALSE(guard.GetFailure());
    EXPECT_EQ(guard.GetPowers(), target.GetPowers());
}

TEST(ORVGuardedGeneratorTest, WhatIsThrownFailsFromThenOn) {
    for (const bool throwsForMemory : {true, false})
        for (int at = 1; at <= kCalls; ++at) {
            ThrowingGenerator target(at, throwsForMemory);
            ORVGuardedGenerator guard(target);
            const std::array<int, kCalls> results = CallAll(guard);
            for (int call = 1; call <= kCalls; ++call)
                EXPECT_EQ(results[static_cast<std::size_t>(call) - 1],
                          call < at ? 100 + call : static_cast<int>(kDrawingFailed))
                    << call << " of " << at;
            EXPECT_EQ(target.GetCalls(), at) << "a generator that threw is left alone";
            EXPECT_EQ(guard.GetFailure().text,
                      throwsForMemory ? "out of memory" : "a thread could not be started");
            EXPECT_EQ(guard.GetFailure().reason,
                      throwsForMemory ? ORVFailureReason::kOutOfMemory : ORVFailureReason::kNotDrawn);
        }
}

}  // namespace
