// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_content_layers.h"

#include "generators/pdf/pdf_file.h"
#include "generators/pdf/pdf_syntax.h"

void PdfContentLayers::BeginPage() {
    onPage_.clear();
    open_.clear();
}

unsigned int PdfContentLayers::Begin(const ORVPrintContentLayer& layer, PdfFile& file) {
    const std::size_t around = open_.empty() ? kNone : open_.back();
    const std::string label(layer.label);
    const std::size_t place = onPage_[{around, label}]++;
    const auto [known, isNew] = known_.try_emplace({around, label, place}, groups_.size());
    if (isNew) {
        (around == kNone ? outermost_ : groups_[around].children).push_back(groups_.size());
        groups_.push_back({file.Reserve(), layer.isShown, layer.isLocked});
        std::string group = "<</Type/OCG/Name";
        AppendPdfText(group, label);
        file.WriteObject(groups_.back().object, group + ">>");
    }
    open_.push_back(known->second);
    return groups_[known->second].object;
}

void PdfContentLayers::AppendOrder(std::string& text, const std::vector<std::size_t>& groups) const {
    text += '[';
    for (const std::size_t index : groups) {
        AppendPdfReference(text, groups_[index].object);
        text += ' ';
        if (!groups_[index].children.empty()) AppendOrder(text, groups_[index].children);
    }
    text += ']';
}

std::string PdfContentLayers::List(const char* key, bool (*isListed)(const Group&)) const {
    std::string list;
    for (const Group& group : groups_)
        if (isListed(group)) list += PdfReference(group.object) + " ";
    return list.empty() ? list : key + ("[" + list) + "]";
}

std::string PdfContentLayers::MakeProperties() const {
    if (groups_.empty()) return {};
    std::string text = "/OCProperties<<" + List("/OCGs", [](const Group&) { return true; }) + "/D<</Order";
    AppendOrder(text, outermost_);
    text += List("/ON", [](const Group& group) { return group.isShown; });
    text += List("/OFF", [](const Group& group) { return !group.isShown; });
    text += List("/Locked", [](const Group& group) { return group.isLocked; });
    return text + ">>>>";
}
