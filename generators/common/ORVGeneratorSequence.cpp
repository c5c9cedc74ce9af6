// SPDX-License-Identifier: Apache-2.0
#include "generators/common/ORVGeneratorSequence.h"

#include <utility>

int ORVGeneratorSequence::BeginDocument(const ORVPrintDocumentInfo& info) {
    ++drawings_;
    if (begun_) return 1;
    const int result = target_.BeginDocument({info.title, pageCount_});
    begun_ = result == 1;
    return result;
}

int ORVGeneratorSequence::BeginPage(const ORVPrintPageInfo& info) {
    ORVPrintPageInfo numbered = info;
    numbered.number = ++pages_;
    return target_.BeginPage(numbered);
}

std::string ORVGeneratorSequence::NameOf(std::string_view id) const {
    return id.empty() ? std::string() : std::to_string(drawings_) + ":" + std::string(id);
}

// Identifiers of the first drawing are kept, for links from outside.
int ORVGeneratorSequence::BeginGroup(const ORVPrintGroup& group) {
    if (drawings_ == 1) return target_.BeginGroup(group);
    const std::string id = NameOf(group.id), linked = NameOf(group.linkElementId);
    ORVPrintGroup renamed = group;
    renamed.id = id;
    renamed.linkElementId = linked;
    return target_.BeginGroup(renamed);
}

int ORVGeneratorSequence::DrawShape(const ORVPrintShape& shape) {
    if (drawings_ == 1 || shape.id.empty()) return target_.DrawShape(shape);
    const std::string id = NameOf(shape.id);
    ORVPrintShape renamed = shape;
    renamed.id = id;
    return target_.DrawShape(renamed);
}

int ORVGeneratorSequence::DrawText(const ORVPrintText& text) {
    if (drawings_ == 1 || text.id.empty()) return target_.DrawText(text);
    const std::string id = NameOf(text.id);
    ORVPrintText renamed = text;
    renamed.id = id;
    return target_.DrawText(renamed);
}

int ORVGeneratorSequence::DrawImage(const ORVPrintImage& image) {
    if (drawings_ == 1 || image.id.empty()) return target_.DrawImage(image);
    const std::string id = NameOf(image.id);
    ORVPrintImage renamed = image;
    renamed.id = id;
    return target_.DrawImage(renamed);
}

int ORVGeneratorSequence::Finish() { return std::exchange(begun_, false) ? target_.EndDocument() : 1; }
