// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/print/ORVPrintGenerator.h"

/// Gives every shape, text and image the row of a dump that it belongs to as its identifier: "r7", or "r7-9"
/// for a line of several rows. What else is called something is not, and links lead nowhere: a page to look
/// at has its own. Rows are counted from 0.
class MarkingGenerator final : public ORVPrintGenerator {
public:
    /// For what is drawn from a model.
    /// @param target  as all that is given, must outlive this object
    /// @param rows    for each page that comes, its rows as the renderer comes to them
    MarkingGenerator(ORVPrintGenerator& target, std::vector<std::span<const std::uint32_t>> rows)
        : target_(target), rows_(std::move(rows)) {}
    /// For what is drawn without one: each call is a row, and is made to both.
    /// @param dump  what says so
    MarkingGenerator(ORVPrintGenerator& target, ORVPrintGenerator& dump) : target_(target), dump_(&dump) {}

    /// Of calls, the elements that they show, as the interpreter counts them; 0 when it is not known.
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
    /// Makes a call to the dump, where it is a row, and to the target.
    template <class... Given>
    int Begin(int (ORVPrintGenerator::*call)(Given...), Given... given);
    int End(int (ORVPrintGenerator::*call)());
    /// What becomes of the answer to the beginning of what is not seen by itself.
    int BeganUnseen(int answer, int (ORVPrintGenerator::*end)());
    template <class Call>
    int Draw(const Call& call, int (ORVPrintGenerator::*draw)(const Call&));
    /// The identifier of what is drawn now; empty where nothing is seen by itself.
    std::string Mark() const;
    std::string MarkOfPrimitive() const;

    ORVPrintGenerator& target_;
    ORVPrintGenerator* const dump_ = nullptr;
    const std::vector<std::span<const std::uint32_t>> rows_;
    std::vector<std::uint32_t> elements_;  // of the calls so far
    std::size_t pages_ = 0;                // begun
    ORVPrintOrigin origin_;
    unsigned int unseen_ = 0;  // masks and inputs of filters that are open
};
