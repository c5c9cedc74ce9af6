// SPDX-License-Identifier: Apache-2.0
#include "generators/common/ORVElementPage.h"

#include <algorithm>

#include "generators/common/filter_reach.h"
#include "generators/common/generator_status.h"
#include "generators/common/visible_box.h"

namespace {

ORVMathBox2D BoxOf(const ORVPrintClipPath& clip) {
    const ORVPrintFill inside;
    return ORVVisibleBox(ORVPrintShape{clip.path, clip.toPage, &inside, nullptr});
}

}  // namespace

int ORVElementPage::BeginDocument(const ORVPrintDocumentInfo& info) {
    title_ = info.title;
    return kGeneratorDone;
}

int ORVElementPage::BeginTarget() {
    if (isBegun_) return kGeneratorDone;
    isBegun_ = true;
    return target_.BeginDocument({title_, 1});
}

int ORVElementPage::BeginPage(const ORVPrintPageInfo& info) {
    if (isFound_ || info.id != id_) {
        page_ = {1, std::string(info.id), std::string(info.title), std::string(info.description)};
        return kGeneratorDone;
    }
    isFound_ = hasPage_ = true;
    place_ = Place::kWholePage;
    if (const int result = BeginTarget(); result != kGeneratorDone) return result;
    ORVPrintPageInfo first = info;
    first.number = 1;
    return target_.BeginPage(first);
}

ORVPrintGenerator* ORVElementPage::Receiver() {
    switch (place_) {
        case Place::kOutside: return nullptr;
        case Place::kElement: return &*recording_;
        case Place::kWholePage: break;
    }
    return &target_;
}

int ORVElementPage::BeginGroup(const ORVPrintGroup& group) {
    if (!isFound_ && group.id == id_) {
        isFound_ = true;
        place_ = Place::kElement;
        recording_.emplace();
    }
    ORVPrintGenerator* const to = Receiver();
    if (!to) return kGeneratorDone;
    if (place_ == Place::kElement) ++openGroups_;
    return to->BeginGroup(group);
}

int ORVElementPage::EndGroup() {
    ORVPrintGenerator* const to = Receiver();
    if (!to) return kGeneratorDone;
    const int result = to->EndGroup();
    if (place_ == Place::kElement && --openGroups_ == 0) place_ = Place::kOutside;
    return result;
}

void ORVElementPage::BeginRegion(const ORVMathBox2D& box) {
    if (place_ == Place::kElement)
        regions_.push_back(regions_.empty() ? box : regions_.back().Intersection(box));
}

void ORVElementPage::EndRegion() {
    if (place_ == Place::kElement && !regions_.empty()) regions_.pop_back();
}

int ORVElementPage::BeginClip(const ORVMathBox2D& box) {
    BeginRegion(box);
    ORVPrintGenerator* const to = Receiver();
    return to ? to->BeginClip(box) : static_cast<int>(kGeneratorDone);
}

int ORVElementPage::EndClip() {
    EndRegion();
    ORVPrintGenerator* const to = Receiver();
    return to ? to->EndClip() : static_cast<int>(kGeneratorDone);
}

int ORVElementPage::BeginClipPath(const ORVPrintClipPath& clip) {
    ORVPrintGenerator* const to = Receiver();
    if (!to) return kGeneratorDone;
    if (place_ == Place::kElement) BeginRegion(BoxOf(clip));
    return to->BeginClipPath(clip);
}

int ORVElementPage::EndClipPath() {
    EndRegion();
    ORVPrintGenerator* const to = Receiver();
    return to ? to->EndClipPath() : static_cast<int>(kGeneratorDone);
}

int ORVElementPage::BeginLayer(const ORVPrintLayer& layer) {
    BeginRegion(layer.box);
    ORVPrintGenerator* const to = Receiver();
    return to ? to->BeginLayer(layer) : static_cast<int>(kGeneratorDone);
}

int ORVElementPage::EndLayer() {
    EndRegion();
    ORVPrintGenerator* const to = Receiver();
    return to ? to->EndLayer() : static_cast<int>(kGeneratorDone);
}

int ORVElementPage::BeginMask(const ORVPrintMask& mask) {
    ORVPrintGenerator* const to = Receiver();
    if (!to) return kSkipMask;
    // The layer of a mask is limited to the box of the mask.
    if (place_ == Place::kElement && !regions_.empty())
        regions_.back() = regions_.back().Intersection(mask.box);
    const int result = to->BeginMask(mask);
    if (result == kGeneratorDone) ++openMasks_;
    return result;
}

int ORVElementPage::EndMask() {
    if (openMasks_ == 0) return kDrawingFailed;
    --openMasks_;
    ORVPrintGenerator* const to = Receiver();
    return to ? to->EndMask() : static_cast<int>(kGeneratorDone);
}

int ORVElementPage::BeginFilter(const ORVPrintFilter& filter) {
    ORVPrintGenerator* const to = Receiver();
    if (!to) return kGeneratorDone;
    if (place_ == Place::kElement) {
        filters_.push_back({filter, {filter.steps.begin(), filter.steps.end()}, shown_});
        filters_.back().filter.steps = filters_.back().steps;
        shown_ = {};
    }
    return to->BeginFilter(filter);
}

// The visible area of a filter's result may be larger or smaller than that of its content.
int ORVElementPage::EndFilter() {
    ORVPrintGenerator* const to = Receiver();
    if (!to) return kGeneratorDone;
    if (place_ == Place::kElement && !filters_.empty()) {
        const ORVMathBox2D reach = ORVReachOfFilter(filters_.back().filter, shown_);
        shown_ = filters_.back().shownAround;
        filters_.pop_back();
        Show(reach);
    }
    return to->EndFilter();
}

int ORVElementPage::BeginFilterInput() {
    ORVPrintGenerator* const to = Receiver();
    if (!to) return kSkipInput;
    const int result = to->BeginFilterInput();
    if (result == kGeneratorDone) ++openMasks_;
    return result;
}

int ORVElementPage::EndFilterInput() {
    if (openMasks_ == 0) return kDrawingFailed;
    --openMasks_;
    ORVPrintGenerator* const to = Receiver();
    return to ? to->EndFilterInput() : static_cast<int>(kGeneratorDone);
}

void ORVElementPage::Show(const ORVMathBox2D& box) {
    if (openMasks_ == 0 && !box.IsEmpty())
        shown_.Unite(regions_.empty() ? box : box.Intersection(regions_.back()));
}

template <class Call>
int ORVElementPage::Draw(const Call& call, int (ORVPrintGenerator::*draw)(const Call&)) {
    const bool isElement = !isFound_ && call.id == id_;
    if (isElement) {
        isFound_ = true;
        recording_.emplace();
    } else if (place_ != Place::kElement) {
        ORVPrintGenerator* const to = Receiver();
        return to ? (to->*draw)(call) : static_cast<int>(kGeneratorDone);
    }
    Show(ORVVisibleBox(call));
    return ((*recording_).*draw)(call);
}

int ORVElementPage::DrawElement() {
    const double width = shown_.xMax - shown_.xMin, height = shown_.yMax - shown_.yMin;
    if (shown_.IsEmpty() || !(width > 0.0) || !(height > 0.0)) return kGeneratorDone;
    hasPage_ = true;
    if (const int result = BeginTarget(); result != kGeneratorDone) return result;
    ORVPrintPageInfo info;
    info.number = page_.number;
    info.width = width;
    info.height = height;
    info.id = page_.id;
    info.title = page_.title;
    info.description = page_.description;
    int result = target_.BeginPage(info);
    recording_->Finish(shown_);
    recording_->SelectBand(shown_.yMin, shown_.yMax);
    if (result == kGeneratorDone)
        result =
            recording_->Replay(target_, shown_, ORVMathAffine2D::Translation(-shown_.xMin, -shown_.yMin));
    return result == kGeneratorDone ? target_.EndPage() : result;
}

int ORVElementPage::EndPage() {
    if (place_ == Place::kWholePage) {
        place_ = Place::kOutside;
        return target_.EndPage();
    }
    place_ = Place::kOutside;
    if (!recording_) return kGeneratorDone;
    const int result = DrawElement();
    recording_.reset();
    return result;
}

int ORVElementPage::EndDocument() {
    recording_.reset();
    return isBegun_ ? target_.EndDocument() : static_cast<int>(kGeneratorDone);
}
