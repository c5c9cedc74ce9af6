// SPDX-License-Identifier: Apache-2.0
#include "library/check/model_rows.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <utility>

#include "interpreters/svg/structure/walker.h"
#include "library/check/document_order.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"

namespace {

using Elements = std::vector<const ORVXmlNode*>;

/// The primitive made from an element. Elements without an entry make none.
struct MadePrimitive {
    ElementName name;
    ORVPrtKind kind;
};
constexpr std::array kMade{
    MadePrimitive{ElementName::kA, ORVPrtKind::kGroup},
    MadePrimitive{ElementName::kCircle, ORVPrtKind::kCircle},
    MadePrimitive{ElementName::kEllipse, ORVPrtKind::kEllipse},
    MadePrimitive{ElementName::kG, ORVPrtKind::kGroup},
    MadePrimitive{ElementName::kImage, ORVPrtKind::kBitmapImage},
    MadePrimitive{ElementName::kLine, ORVPrtKind::kLine},
    MadePrimitive{ElementName::kPath, ORVPrtKind::kGroup},
    MadePrimitive{ElementName::kPolygon, ORVPrtKind::kPolygon},
    MadePrimitive{ElementName::kPolyline, ORVPrtKind::kPolyline},
    MadePrimitive{ElementName::kRect, ORVPrtKind::kRectangle},
    MadePrimitive{ElementName::kSvg, ORVPrtKind::kGroup},
    MadePrimitive{ElementName::kText, ORVPrtKind::kText},
    MadePrimitive{ElementName::kUse, ORVPrtKind::kGroup},
};

const MadePrimitive* FindMade(ElementName name) {
    const auto* const found =
        std::find_if(kMade.begin(), kMade.end(), [name](const auto& row) { return row.name == name; });
    return found != kMade.end() && HasHandler(name) ? found : nullptr;
}

/// Elements whose children become primitives of their group.
bool IsLookedInto(const ORVXmlNode& element) {
    return element.id == ElementName::kG || element.id == ElementName::kA || element.id == ElementName::kSvg;
}

/// Elements whose primitive is followed by groups for their markers.
bool MayHaveMarkers(const ORVXmlNode& element) {
    return element.id == ElementName::kLine || element.id == ElementName::kPolyline ||
           element.id == ElementName::kPolygon;
}

/// The children that become primitives.
Elements MadeChildren(const ORVXmlNode& container) {
    Elements made;
    for (const ORVXmlNode* child = container.firstChild; child; child = child->nextSibling)
        if (child->IsElement() && FindMade(child->id)) made.push_back(child);
    return made;
}

/// Number of consecutive groups from an index on.
std::size_t CountGroups(const Elements& elements, std::size_t from) {
    std::size_t end = from;
    while (end < elements.size() && FindMade(elements[end]->id)->kind == ORVPrtKind::kGroup) ++end;
    return end - from;
}

std::size_t CountGroups(const ORVPrtChildList& primitives, std::size_t from) {
    std::size_t end = from;
    while (end < primitives.size() && primitives[end]->GetKind() == ORVPrtKind::kGroup) ++end;
    return end - from;
}

/// The element of each primitive of a container; empty if they do not match.
Elements Match(const ORVXmlNode* container, const ORVPrtChildList& primitives) {
    Elements matched;
    if (!container) return matched;
    const Elements made = MadeChildren(*container);
    for (std::size_t i = 0; i < made.size(); ++i) {
        const std::size_t place = matched.size();
        if (place == primitives.size() || primitives[place]->GetKind() != FindMade(made[i]->id)->kind)
            return {};
        matched.push_back(made[i]);
        if (!MayHaveMarkers(*made[i])) continue;
        // The last of the following groups belong to the elements that follow; the others are markers.
        const std::size_t groups = CountGroups(primitives, place + 1);
        const std::size_t ofOthers = CountGroups(made, i + 1);
        if (groups < ofOthers) return {};
        matched.insert(matched.end(), groups - ofOthers, made[i]);
    }
    if (matched.size() != primitives.size()) matched.clear();
    return matched;
}

/// The elements that become pages: the root, or each drawing of a set.
Elements PagesOf(const ORVXmlNode& root) {
    Elements inner;
    for (const ORVXmlNode* child = root.firstChild; child; child = child->nextSibling)
        if (child->id == ElementName::kSvg) inner.push_back(child);
    if (root.id == ElementName::kSvg && inner.size() < 2) return {&root};
    return inner;
}

const ORVPrtChildList* DumpedChildren(const ORVPrtGraphicPrimitiveElt& primitive) {
    const ORVPrtKind kind = primitive.GetKind();
    return kind == ORVPrtKind::kPattern || kind == ORVPrtKind::kOther ? nullptr : primitive.GetChildList();
}

/// Walks the primitives of a model and the corresponding elements.
class RowCounter {
public:
    explicit RowCounter(const ORVXmlNode& top) {
        DocumentOrder order(top);
        std::uint32_t number = 0;
        while (const ORVXmlNode* node = order.Next())
            if (node->IsElement()) numbers_.emplace(node, ++number);
    }

    void AddPage(const ORVPrtImageElt& page, const ORVXmlNode* element) {
        rows_.ofOrigins.emplace_back();
        AddRow(element);
        Enter(*page.GetChildList(), element, false);
        while (!open_.empty()) Step();
    }
    ModelRows TakeRows() { return std::move(rows_); }

private:
    struct Frame {
        const ORVPrtChildList* children;
        std::size_t next;
        Elements elements;  // of the children; empty if unknown
        bool isInFigure;
    };

    void AddRow(const ORVXmlNode* element) {
        const auto found = element ? numbers_.find(element) : numbers_.end();
        rows_.elements.push_back(found == numbers_.end() ? 0 : found->second);
    }

    void Enter(const ORVPrtChildList& children, const ORVXmlNode* element, bool isInFigure) {
        open_.push_back({&children, 0, Match(element, children), isInFigure});
    }

    void Step() {
        Frame& frame = open_.back();
        if (frame.next == frame.children->size()) return open_.pop_back();
        const std::size_t place = frame.next++;
        const ORVPrtGraphicPrimitiveElt& child = *(*frame.children)[place];
        const ORVXmlNode* element = frame.elements.empty() ? nullptr : frame.elements[place];
        const bool isInFigure = frame.isInFigure || child.GetKind() == ORVPrtKind::kClosedFigure;
        if (!frame.isInFigure)
            rows_.ofOrigins.back().push_back(static_cast<std::uint32_t>(rows_.elements.size()));
        AddRow(element);
        if (const ORVPrtChildList* children = DumpedChildren(child))
            Enter(*children, element && IsLookedInto(*element) ? element : nullptr, isInFigure);
    }

    std::unordered_map<const ORVXmlNode*, std::uint32_t> numbers_;
    ModelRows rows_;
    std::vector<Frame> open_;
};

}  // namespace

ModelRows CountModelRows(const ORVPrtModel& model, const ORVXmlNode& root, const ORVXmlNode& top) {
    const Elements pages = PagesOf(root);
    const auto& images = *model.GetImages();
    RowCounter counter(top);
    for (std::size_t i = 0; i < images.size(); ++i)
        counter.AddPage(*images[i], pages.size() == images.size() ? pages[i] : nullptr);
    return counter.TakeRows();
}
