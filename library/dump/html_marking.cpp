// SPDX-License-Identifier: Apache-2.0
#include "library/dump/html_marking.h"

// BeganUnseen handles both masks and filter inputs with one value.
static_assert(ORVPrintGenerator::kSkipMask == ORVPrintGenerator::kSkipInput);

template <class... Given>
int MarkingGenerator::Begin(int (ORVPrintGenerator::*call)(Given...), Given... given) {
    if (dump_) {
        elements_.push_back(origin_.first);
        if (const int result = (dump_->*call)(given...); result != 1) return result;
    }
    return (target_.*call)(given...);
}

int MarkingGenerator::End(int (ORVPrintGenerator::*call)()) {
    if (dump_)
        if (const int result = (dump_->*call)(); result != 1) return result;
    return (target_.*call)();
}

int MarkingGenerator::BeganUnseen(int answer, int (ORVPrintGenerator::*end)()) {
    if (answer == 1) ++unseen_;
    // The target skips the content, so the dump shows it as empty.
    if (answer == kSkipMask && dump_)
        if (const int result = (dump_->*end)(); result != 1) return result;
    return answer;
}

template <class Call>
int MarkingGenerator::Draw(const Call& call, int (ORVPrintGenerator::*draw)(const Call&)) {
    const std::string mark = Mark();
    if (dump_) {
        elements_.push_back(origin_.first);
        if (const int result = (dump_->*draw)(call); result != 1) return result;
    }
    Call marked = call;
    marked.id = mark;
    return (target_.*draw)(marked);
}

std::string MarkingGenerator::Mark() const {
    if (unseen_ > 0) return {};
    return dump_ ? "r" + std::to_string(elements_.size()) : MarkOfPrimitive();
}

std::string MarkingGenerator::MarkOfPrimitive() const {
    if (pages_ == 0 || pages_ > rows_.size()) return {};
    const std::span<const std::uint32_t> rows = rows_[pages_ - 1];
    if (origin_.first == 0 || origin_.last > rows.size()) return {};
    std::string mark = "r" + std::to_string(rows[origin_.first - 1]);
    if (origin_.last > origin_.first) mark += "-" + std::to_string(rows[origin_.last - 1]);
    return mark;
}

int MarkingGenerator::BeginDocument(const ORVPrintDocumentInfo& info) {
    if (dump_)
        if (const int result = dump_->BeginDocument(info); result != 1) return result;
    return target_.BeginDocument({{}, info.pageCount});
}

int MarkingGenerator::BeginPage(const ORVPrintPageInfo& info) {
    ++pages_;
    origin_ = {};
    if (dump_) {
        elements_.push_back(0);
        if (const int result = dump_->BeginPage(info); result != 1) return result;
    }
    ORVPrintPageInfo bare = info;
    bare.id = bare.title = bare.description = {};
    return target_.BeginPage(bare);
}

int MarkingGenerator::BeginGroup(const ORVPrintGroup& group) {
    if (dump_) {
        elements_.push_back(origin_.first);
        if (const int result = dump_->BeginGroup(group); result != 1) return result;
    }
    ORVPrintGroup bare;
    bare.layer = group.layer;
    return target_.BeginGroup(bare);
}

int MarkingGenerator::EndGroup() { return End(&ORVPrintGenerator::EndGroup); }

int MarkingGenerator::BeginClip(const ORVMathBox2D& box) {
    return Begin<const ORVMathBox2D&>(&ORVPrintGenerator::BeginClip, box);
}

int MarkingGenerator::EndClip() { return End(&ORVPrintGenerator::EndClip); }

int MarkingGenerator::BeginClipPath(const ORVPrintClipPath& clip) {
    return Begin<const ORVPrintClipPath&>(&ORVPrintGenerator::BeginClipPath, clip);
}

int MarkingGenerator::EndClipPath() { return End(&ORVPrintGenerator::EndClipPath); }

int MarkingGenerator::BeginLayer(const ORVPrintLayer& layer) {
    return Begin<const ORVPrintLayer&>(&ORVPrintGenerator::BeginLayer, layer);
}

int MarkingGenerator::EndLayer() { return End(&ORVPrintGenerator::EndLayer); }

int MarkingGenerator::BeginMask(const ORVPrintMask& mask) {
    return BeganUnseen(Begin<const ORVPrintMask&>(&ORVPrintGenerator::BeginMask, mask),
                       &ORVPrintGenerator::EndMask);
}

int MarkingGenerator::EndMask() {
    --unseen_;
    return End(&ORVPrintGenerator::EndMask);
}

int MarkingGenerator::BeginFilter(const ORVPrintFilter& filter) {
    return Begin<const ORVPrintFilter&>(&ORVPrintGenerator::BeginFilter, filter);
}

int MarkingGenerator::EndFilter() { return End(&ORVPrintGenerator::EndFilter); }

int MarkingGenerator::BeginFilterInput() {
    return BeganUnseen(Begin(&ORVPrintGenerator::BeginFilterInput), &ORVPrintGenerator::EndFilterInput);
}

int MarkingGenerator::EndFilterInput() {
    --unseen_;
    return End(&ORVPrintGenerator::EndFilterInput);
}

int MarkingGenerator::EndPage() { return End(&ORVPrintGenerator::EndPage); }
int MarkingGenerator::EndDocument() { return End(&ORVPrintGenerator::EndDocument); }
