// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/print/ORVPrintGenerator.h"

/// Passes drawing calls to a generator and gives each shape, text and image the dump row it belongs to as its
/// identifier: "r7", or "r7-9" for a line of several rows. Other identifiers and links are removed, since the
/// surrounding HTML page has its own. Rows are counted from 0.
class MarkingGenerator final : public ORVPrintGenerator {
public:
    /// For drawing from a model.
    /// @param target  must outlive this object, as must the rows
    /// @param rows    for each page, its rows in rendering order
    MarkingGenerator(ORVPrintGenerator& target, std::vector<std::span<const std::uint32_t>> rows)
        : target_(target), rows_(std::move(rows)) {}
    /// For drawing without a model: each call is one row and is made to both generators. Both must outlive
    /// this object.
    /// @param dump  writes the rows
    MarkingGenerator(ORVPrintGenerator& target, ORVPrintGenerator& dump) : target_(target), dump_(&dump) {}

    /// For each call, the element it draws, as numbered by the interpreter; 0 if unknown.
    const std::vector<std::uint32_t>& GetElements() const { return elements_; }

    unsigned int GetPowers() const override { return target_.GetPowers(); }
    bool KeepsIdentifiers() const override { return true; }
    bool FollowsOrigins() const override { return true; }
    void NoteOrigin(const ORVPrintOrigin& origin) override { origin_ = origin; }
    int BeginDocument(const ORVPrintDocumentInfo& info) override;
    int BeginPage(const ORVPrintPageInfo& info) override;
    int BeginGroup(const ORVPrintGroup& group) override;
    int EndGroup() override;
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override;
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
    int DrawShape(const ORVPrintShape& shape) override { return Draw(shape, &ORVPrintGenerator::DrawShape); }
    int DrawText(const ORVPrintText& text) override { return Draw(text, &ORVPrintGenerator::DrawText); }
    int DrawImage(const ORVPrintImage& image) override { return Draw(image, &ORVPrintGenerator::DrawImage); }
    int EndPage() override;
    int EndDocument() override;

private:
    /// Makes a call to the target, and to the dump if the call is a row.
    template <class... Given>
    int Begin(int (ORVPrintGenerator::*call)(Given...), Given... given);
    int End(int (ORVPrintGenerator::*call)());
    /// Handles the result of beginning a mask or filter input: counts it as open or, if the target skips it,
    /// ends it in the dump, which then has it without content.
    int BeganUnseen(int answer, int (ORVPrintGenerator::*end)());
    template <class Call>
    int Draw(const Call& call, int (ORVPrintGenerator::*draw)(const Call&));
    /// The identifier of the current call; empty inside masks and filter inputs.
    std::string Mark() const;
    std::string MarkOfPrimitive() const;

    ORVPrintGenerator& target_;
    ORVPrintGenerator* const dump_ = nullptr;
    const std::vector<std::span<const std::uint32_t>> rows_;
    std::vector<std::uint32_t> elements_;  // of the calls so far
    std::size_t pages_ = 0;                // number of pages begun
    ORVPrintOrigin origin_;
    unsigned int unseen_ = 0;  // number of open masks and filter inputs
};
