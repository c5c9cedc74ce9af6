// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "generators/common/ORVPageRecording.h"
#include "platform/print/ORVPrintFilter.h"
#include "platform/print/ORVPrintGenerator.h"

/// Lets one element of a drawing through, as a page of the size of all that the element shows: the first
/// group, shape, text or image that is reported by the element's identifier. What of it clips, masks and
/// layers within the element hide does not count; clips, masks and layers around the element do not apply.
/// A page of that identifier goes through as it is.
///
/// Interpreters report single elements when asked to by ORVPrintParameters::SetReportedElement.
class ORVElementPage final : public ORVPrintGenerator {
public:
    /// @param target  must outlive this object; gets neither document nor page while the element is not found
    ORVElementPage(ORVPrintGenerator& target, std::string id) : target_(target), id_(std::move(id)) {}

    /// Whether the element came, though perhaps with nothing to show.
    bool IsFound() const { return isFound_; }
    /// Whether there is a page of it.
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
    /// What of the page calls are for.
    enum class Place { kOutside, kElement, kWholePage };

    struct Page {
        unsigned int number = 0;
        std::string id, title, description;
    };

    /// A filter of the element, and what the content around it shows so far.
    struct Filter {
        ORVPrintFilter filter;
        std::vector<ORVPrintFilterStep> steps;
        ORVMathBox2D shownAround;
    };

    template <class Call>
    int Draw(const Call& call, int (ORVPrintGenerator::*draw)(const Call&));
    /// Makes a call where it is wanted, if it is. @return the generator, null when the call is for nobody
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
    unsigned int openGroups_ = 0;  // of the element, its own included
    unsigned int openMasks_ = 0;
    std::string title_;
    Page page_;
    std::optional<ORVPageRecording> recording_;
    std::vector<ORVMathBox2D> regions_;  // that open clips and layers leave, each within those around it
    std::deque<Filter> filters_;         // that are open
    ORVMathBox2D shown_;
};
