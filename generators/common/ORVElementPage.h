// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "generators/common/ORVPageRecording.h"
#include "platform/print/ORVPrintFilter.h"
#include "platform/print/ORVPrintGenerator.h"

/// Passes on a single element of a drawing as a page fitted to it: the first group, shape, text or image
/// reported with the given identifier. The page covers the visible bounding box of the element. Parts hidden
/// by clips, masks and layers inside the element do not count; clips, masks and layers around the element are
/// not applied. If a page has the identifier, it is passed on unchanged.
///
/// Interpreters report single elements if ORVPrintParameters::SetReportedElement asks for them.
class ORVElementPage final : public ORVPrintGenerator {
public:
    /// @param target  must outlive this object; it gets no calls until the element is found
    ORVElementPage(ORVPrintGenerator& target, std::string id) : target_(target), id_(std::move(id)) {}

    /// True if the element was found, even if it shows nothing.
    bool IsFound() const { return isFound_; }
    /// True if the target got a page with the element. An element that shows nothing has no page.
    bool HasPage() const { return hasPage_; }

    int BeginDocument(const ORVPrintDocumentInfo& info) override;
    int BeginPage(const ORVPrintPageInfo& info) override;
    int BeginGroup(const ORVPrintGroup& group) override;
    int EndGroup() override;
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override;
    unsigned int GetPowers() const override { return target_.GetPowers(); }
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
    bool KeepsIdentifiers() const override { return target_.KeepsIdentifiers(); }
    int DrawShape(const ORVPrintShape& shape) override { return Draw(shape, &ORVPrintGenerator::DrawShape); }
    int DrawText(const ORVPrintText& text) override { return Draw(text, &ORVPrintGenerator::DrawText); }
    int DrawImage(const ORVPrintImage& image) override { return Draw(image, &ORVPrintGenerator::DrawImage); }
    int EndPage() override;
    int EndDocument() override;

private:
    /// Which part of the page the current calls belong to.
    enum class Place { kOutside, kElement, kWholePage };

    struct Page {
        unsigned int number = 0;
        std::string id, title, description;
    };

    /// An open filter of the element, and the bounding box of what was drawn before and around it.
    struct Filter {
        ORVPrintFilter filter;
        std::vector<ORVPrintFilterStep> steps;
        ORVMathBox2D shownAround;
    };

    template <class Call>
    int Draw(const Call& call, int (ORVPrintGenerator::*draw)(const Call&));
    /// @return where the current call goes (the recording or the target), or null if it is to be dropped
    ORVPrintGenerator* Receiver();
    void Show(const ORVMathBox2D& box);
    void BeginRegion(const ORVMathBox2D& box);
    void EndRegion();
    int BeginTarget();
    int DrawElement();

    ORVPrintGenerator& target_;
    const std::string id_;
    bool isFound_ = false, hasPage_ = false, isBegun_ = false;
    Place place_ = Place::kOutside;
    unsigned int openGroups_ = 0;  // nesting depth inside the element, counting its own group
    unsigned int openMasks_ = 0;   // and open filter inputs
    std::string title_;
    Page page_;
    std::optional<ORVPageRecording> recording_;
    // Areas left visible by the open clips and layers; each lies within the previous one.
    std::vector<ORVMathBox2D> regions_;
    std::deque<Filter> filters_;  // open filters
    ORVMathBox2D shown_;
};
