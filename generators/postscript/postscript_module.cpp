// SPDX-License-Identifier: Apache-2.0
#include "generators/postscript/postscript_module.h"

#include <string>

#include "generators/common/generator_status.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/modules.h"

namespace {

/// Placeholder for a generator that cannot be loaded.
class MissingGenerator final : public ORVFormatGenerator, public ORVPrintGenerator {
public:
    explicit MissingGenerator(ORVFailure failure) : failure_(std::move(failure)) {}
    ORVPrintGenerator& Get() override { return *this; }
    const ORVFailure& GetFailure() const override { return failure_; }

    int BeginDocument(const ORVPrintDocumentInfo& /*info*/) override { return kDrawingFailed; }
    int BeginPage(const ORVPrintPageInfo& /*info*/) override { return kDrawingFailed; }
    int BeginGroup(const ORVPrintGroup& /*group*/) override { return kDrawingFailed; }
    int EndGroup() override { return kDrawingFailed; }
    int BeginClip(const ORVMathBox2D& /*box*/) override { return kDrawingFailed; }
    int EndClip() override { return kDrawingFailed; }
    int DrawShape(const ORVPrintShape& /*shape*/) override { return kDrawingFailed; }
    int DrawText(const ORVPrintText& /*text*/) override { return kDrawingFailed; }
    int DrawImage(const ORVPrintImage& /*image*/) override { return kDrawingFailed; }
    int EndPage() override { return kDrawingFailed; }
    int EndDocument() override { return kDrawingFailed; }

private:
    const ORVFailure failure_;
};

}  // namespace

std::unique_ptr<ORVFormatGenerator> LoadPostScriptGenerator(ORVOutput& output,
                                                            const ORVFormatOptions& options,
                                                            bool encapsulated) {
    std::string error;
    void* module = ORVLoadModule(kPostScriptModule, error);
    void* factory = module ? ORVFindInModule(module, kPostScriptFactory, error) : nullptr;
    if (!factory)
        return std::make_unique<MissingGenerator>(ORVFailure::Of(
            ORVFailureReason::kNotDrawn,
            std::string("PostScript needs ") + kPostScriptModule + ", which cannot be used: " + error));
    std::unique_ptr<ORVFormatGenerator> generator(
        reinterpret_cast<PostScriptFactory>(factory)(output, options, encapsulated));
    if (!generator) return std::make_unique<MissingGenerator>(ORVFailure::OutOfMemory());
    return generator;
}
