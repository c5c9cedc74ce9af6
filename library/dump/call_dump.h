// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/dump/json_writer.h"
#include "platform/print/ORVPrintFilter.h"
#include "platform/print/ORVPrintGenerator.h"

/// Writes the drawing calls it receives as JSON: pages with their content, and nested groups, layers and
/// clips, all in page coordinates.
class CallDump final : public ORVPrintGenerator {
public:
    /// @param json  must outlive this object
    explicit CallDump(JsonWriter& json);
    /// Closes all open objects.
    /// @param result  result of the drawing
    void Finish(int result);

    unsigned int GetPowers() const override {
        return kGradients | kClipPaths | kLayers | kBlendModes | kMasks | kFilters | kContentLayers;
    }
    bool KeepsIdentifiers() const override { return true; }
    int BeginDocument(const ORVPrintDocumentInfo& info) override;
    int BeginPage(const ORVPrintPageInfo& info) override;
    int BeginGroup(const ORVPrintGroup& group) override;
    int EndGroup() override { return Close(); }
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override { return Close(); }
    int BeginClipPath(const ORVPrintClipPath& clip) override;
    int EndClipPath() override { return Close(); }
    int BeginLayer(const ORVPrintLayer& layer) override;
    int EndLayer() override { return Close(); }
    int BeginMask(const ORVPrintMask& mask) override;
    int EndMask() override { return Close(); }
    int BeginFilter(const ORVPrintFilter& filter) override;
    int EndFilter() override { return Close(); }
    int BeginFilterInput() override;
    int EndFilterInput() override { return Close(); }
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;
    int EndPage() override { return Close(); }
    int EndDocument() override { return 1; }

private:
    /// Begins an object with a member naming the kind of call.
    void Open(const char* kind);
    /// Begins the array of the open object's content.
    int OpenContent();
    int Close();
    void WriteText(const char* key, std::string_view text);
    void WriteNumber(const char* key, double number);
    void WriteBox(const char* key, const ORVMathBox2D& box);
    void WriteExtent(const char* key, const ORVMathBox2D& box);
    void WriteStep(const ORVPrintFilterStep& step);
    void WriteMap(const ORVMathAffine2D& map);
    void WritePath(const ORVPrintPath& path);
    void WriteColour(const char* key, const ORVPrintColour& colour);
    void WriteGradient(const ORVPrintGradient& gradient);
    void WriteFill(const ORVPrintFill& fill);
    void WriteStroke(const ORVPrintStroke& stroke);

    JsonWriter& json_;
    unsigned int open_ = 0;
};
