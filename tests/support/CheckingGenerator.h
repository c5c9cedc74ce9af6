// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "platform/print/ORVPrintGenerator.h"

/// Validates drawing calls and passes them to another generator: numbers must be finite and in range,
/// everything begun must be ended, and after a failure only the end of the document may follow.
class CheckingGenerator final : public ORVPrintGenerator {
public:
    /// @param target        receives every call; may be null. Must outlive this object
    /// @param takesSymbols  the answer to symbols if there is no target
    explicit CheckingGenerator(ORVPrintGenerator* target = nullptr, bool takesSymbols = false)
        : target_(target), takesSymbols_(takesSymbols) {}

    /// The first fault; empty if there was none.
    std::string GetFault() const;

    int BeginDocument(const ORVPrintDocumentInfo& info) override;
    int BeginPage(const ORVPrintPageInfo& info) override;
    int BeginGroup(const ORVPrintGroup& group) override;
    int EndGroup() override;
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override;
    unsigned int GetPowers() const override;
    int BeginClipPath(const ORVPrintClipPath& clip) override;
    int EndClipPath() override;
    int BeginLayer(const ORVPrintLayer& layer) override;
    int EndLayer() override;
    int BeginMask(const ORVPrintMask& mask) override;
    int EndMask() override;
    int BeginFilter(const ORVPrintFilter& filter) override;
    int EndFilter() override;
    int BeginFilterInput() override;
    int EndFilterInput() override;
    int BeginSymbol(const ORVPrintSymbol& symbol) override;
    int EndSymbol() override;
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;
    int EndPage() override;
    int EndDocument() override;

private:
    enum class Part {
        kDocument,
        kPage,
        kGroup,
        kClip,
        kSymbol,
        kClipPath,
        kLayer,
        kMask,
        kFilter,
        kFilterInput,
    };
    int Enter(Part part, int result);
    void Leave(Part part);
    void Expect(bool condition, const char* fault);
    void ExpectPage();
    void CheckMap(const ORVMathAffine2D& map);
    void CheckPath(const ORVPrintPath& path);
    void CheckBox(const ORVMathBox2D& box);
    void CheckGradient(const ORVPrintGradient* gradient);
    void CheckFill(const ORVPrintFill* fill);
    void CheckStroke(const ORVPrintStroke* stroke);
    int Note(int result);

    ORVPrintGenerator* const target_;
    const bool takesSymbols_;
    std::vector<Part> open_;
    std::vector<const void*> symbols_;
    bool hasFailed_ = false;
    std::vector<unsigned int> pendingInputs_;  // remaining inputs of each filter that encloses an open input
    unsigned int inputsExpected_ = 0;          // inputs of the filter that has just begun
    bool expectsMask_ = false;                 // the layer that has just begun must have a mask
    std::string fault_;
};
