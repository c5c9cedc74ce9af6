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

/// What an element becomes; elements without a row become nothing that stands on a page.
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

/// Elements whose children become the primitives in their group.
bool IsLookedInto(const ORVXmlNode& element) {
    return element.id == ElementName::kG || element.id == ElementName::kA || element.id == ElementName::kSvg;
}

/// The elements that a container's primitives were made of, one by one; none when they do not match.
Elements Match(const ORVXmlNode* container, const ORVPrtChildList& primitives) {
    Elements made;
    if (!container) return made;
    std::size_t place = 0;
    for (const ORVXmlNode* child = container->firstChild; child; child = child->nextSibling) {
        const MadePrimitive* row = child->IsElement() ? FindMade(child->id) : nullptr;
        if (!row) continue;
        if (place == primitives.size() || primitives[place]->GetKind() != row->kind) return {};
        made.push_back(child);
        ++place;
    }
    if (place != primitives.size()) made.clear();
    return made;
}

/// The elements that become pages: the root, or of a set of drawings each of them.
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

/// Goes through the primitives of a model and the elements beside them.
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
        Elements elements;  // of the children; none when they are not known
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
