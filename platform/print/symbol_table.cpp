// SPDX-License-Identifier: Apache-2.0
#include "platform/print/symbol_table.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <type_traits>
#include <vector>

#include "platform/model/visit_primitive.h"
#include "platform/print/link_targets.h"

namespace {

// Sizes in compressed bytes, measured on drawings: of a symbol without its content, of a use of it, of a
// shape without its points, and of a point.
constexpr double kSymbolBytes = 170.0, kPlaceBytes = 14.0, kShapeBytes = 8.0, kPointBytes = 5.0;
constexpr double kMostBytes = 1e12;

// A symbol is used at up to this factor larger or smaller than it is stored, to keep enough digits.
constexpr double kLargestRatio = 2.0;
constexpr std::size_t kMostVariants = 16;
// Beyond this distance (user units), clipping of far coordinates depends on the position.
constexpr double kFarthest = 20'000.0;
// Beyond these limits of scale and flatness, stored numbers would not have enough digits.
constexpr double kLargestScale = 1e4, kFlattest = 1e-4;

double ToBytes(std::size_t points) { return kShapeBytes + kPointBytes * static_cast<double>(points); }

ORVMathAffine2D LinearPart(ORVMathAffine2D map) {
    map.dx = map.dy = 0.0;
    return map;
}

bool IsModerate(const ORVMathAffine2D& map) {
    const double scale = map.Enlargement();
    return map.IsFinite() && std::fabs(map.dx) < kFarthest && std::fabs(map.dy) < kFarthest &&
           scale < kLargestScale && scale > 1.0 / kLargestScale &&
           std::fabs(map.Determinant()) > kFlattest * scale * scale;
}

/// The linear transformation from coordinates transformed by `from` to those transformed by `to`. `from` must
/// be invertible.
ORVMathAffine2D Between(const ORVMathAffine2D& from, const ORVMathAffine2D& to) {
    return LinearPart(to) * LinearPart(from).Inverse().value_or(ORVMathAffine2D());
}

/// Whether a symbol stored under `from` is precise enough to be drawn under `to`.
bool IsNear(const ORVMathAffine2D& from, const ORVMathAffine2D& to) {
    const auto fits = [](const ORVMathAffine2D& ratio) { return ratio.Enlargement() <= kLargestRatio; };
    return LinearPart(from) == LinearPart(to) || (fits(Between(from, to)) && fits(Between(to, from)));
}

/// A key that is unique within the process, because one document may contain several drawings.
const void* NewKey() {
    static std::atomic<std::uintptr_t> latest{0};
    return reinterpret_cast<const void*>(++latest);
}

}  // namespace

ORVPrintSymbolTable::Content ORVPrintSymbolTable::OwnContent(
    const ORVPrtGraphicPrimitiveElt& primitive) const {
    Content content;
    VisitPrimitive(primitive, [&]<class Primitive>(const Primitive& one) {
        content.isReported = !links_.IsEmpty() && links_.Contains(one.GetID());
        if constexpr (std::is_same_v<Primitive, ORVPrtGroupElt> || std::is_same_v<Primitive, ORVPrtSymbolElt>)
            content.isReported = content.isReported || !one.GetDescription().IsEmpty();
        if constexpr (std::is_same_v<Primitive, ORVPrtGroupElt>) {
            const ORVPrintLinkURI& link = one.GetGroupAttributes().GetLinkURI();
            content.isReported =
                content.isReported || !link.GetBaseURL().IsEmpty() || links_.Contains(link.GetElementId());
        } else if constexpr (std::is_base_of_v<ORVPrtPointList, Primitive>) {
            content.size = ToBytes(one.GetPoints().size());
        } else if constexpr (std::is_same_v<Primitive, ORVPrtTextElt>) {
            content.size = 2.0 * kShapeBytes + static_cast<double>(one.GetText().GetView().size());
        } else if constexpr (std::is_same_v<Primitive, ORVPrtBitmapImageElt>) {
            content.size = kPlaceBytes;
        } else if constexpr (!std::is_base_of_v<ORVPrtContainerElt, Primitive>) {
            content.size = ToBytes(4);
        }
        // A pattern is positioned relative to the page, not to the shape.
        if constexpr (std::is_base_of_v<ORVPrtFilled, Primitive>)
            content.isMovable = one.GetFillAttributes().GetFillStyle() != kFillPattern;
    });
    return content;
}

ORVPrintSymbolTable::Content ORVPrintSymbolTable::Survey(const ORVPrtGraphicPrimitiveElt& root) {
    struct Frame {
        const ORVPrtGraphicPrimitiveElt* primitive;
        std::size_t next;
        Content content;
    };
    const auto add = [](Content& whole, const Content& part) {
        whole.size = std::min(whole.size + part.size, kMostBytes);
        whole.isMovable = whole.isMovable && part.isMovable && !part.isReported;
    };
    std::vector<Frame> open{{&root, 0, OwnContent(root)}};
    for (;;) {
        Frame& frame = open.back();
        const ORVPrtChildList* children = frame.primitive->GetChildList();
        if (children && frame.next < children->size()) {
            const ORVPrtGraphicPrimitiveElt* child = (*children)[frame.next++];
            if (child->GetKind() == ORVPrtKind::kPattern) continue;  // not drawn
            const auto known = child->GetReferenceCount() > 1 ? entries_.find(child) : entries_.end();
            if (known != entries_.end())
                add(frame.content, known->second.content);
            else
                open.push_back({child, 0, OwnContent(*child)});
            continue;
        }
        const Frame done = frame;
        open.pop_back();
        if (done.primitive->GetReferenceCount() > 1) entries_[done.primitive].content = done.content;
        if (open.empty()) return done.content;
        add(open.back().content, done.content);
    }
}

bool ORVPrintSymbolTable::Find(const ORVPrtGraphicPrimitiveElt& primitive, const ORVMathAffine2D& map,
                               const ORVPrtImageElt& page, ORVPrintSymbolPlace& place) {
    auto entry = entries_.find(&primitive);
    if (entry == entries_.end()) {
        Survey(primitive);
        entry = entries_.try_emplace(&primitive).first;
    }
    const Content& content = entry->second.content;
    const double places = static_cast<double>(primitive.GetReferenceCount());
    if (!content.isMovable || places * (content.size - kPlaceBytes) < content.size + kSymbolBytes)
        return false;
    if (!IsModerate(map)) return false;

    std::list<Variant>& variants = entry->second.variants;
    const ORVPrtColourTable* colours = page.GetColourTable();
    const double mirrorHeight = page.GetMirrorHeight();
    const auto fitting = [&](const Variant& variant) {
        return variant.colours == colours && variant.mirrorHeight == mirrorHeight &&
               IsNear(variant.toSymbol, map);
    };
    auto variant = std::find_if(variants.begin(), variants.end(), fitting);
    if (variant == variants.end()) {
        if (variants.size() == kMostVariants) return false;
        // Stored as in its first use, so that uses which are only translated need no matrix.
        variants.push_back({LinearPart(map), colours, mirrorHeight, NewKey()});
        variant = std::prev(variants.end());
    }
    place.key = variant->key;
    place.toSymbol = variant->toSymbol;
    place.toPage = variant->toSymbol == LinearPart(map) ? ORVMathAffine2D() : Between(variant->toSymbol, map);
    place.toPage.dx = map.dx;
    place.toPage.dy = map.dy;
    return true;
}
