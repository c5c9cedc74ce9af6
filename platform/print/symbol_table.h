// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <list>
#include <unordered_map>

#include "platform/mathematics/geometry.h"

class ORVPrintLinkTargets;
class ORVPrtColourTable;
class ORVPrtGraphicPrimitiveElt;
class ORVPrtImageElt;

/// A symbol that stands for a primitive.
struct ORVPrintSymbolPlace {
    const void* key = nullptr;
    ORVMathAffine2D toSymbol;  ///< from the primitive's own coordinates
    ORVMathAffine2D toPage;    ///< from the symbol's coordinates
};

/// Finds the primitives that stand at several places of a drawing and are worth storing once. What one looks
/// like must not depend on its place, and nothing in it may be reported as a link, a link's target or with a
/// description. Takes time in proportion to the distinct primitives.
class ORVPrintSymbolTable {
public:
    /// @param links  of the drawing; must outlive the table
    explicit ORVPrintSymbolTable(const ORVPrintLinkTargets& links) : links_(links) {}

    /// The symbol of a primitive with several references.
    /// @param map    from the primitive's own coordinates to those that it is drawn in; the primitive's own
    ///               transform, when it is no container, comes before it
    /// @param place  written when there is one
    /// @return false when the primitive is to be drawn as it is
    bool Find(const ORVPrtGraphicPrimitiveElt& primitive, const ORVMathAffine2D& map,
              const ORVPrtImageElt& page, ORVPrintSymbolPlace& place);

private:
    /// What a primitive takes to draw.
    struct Content {
        double size = 0.0;        // bytes of an output format, roughly
        bool isMovable = true;    // looks the same everywhere, and nothing within is reported
        bool isReported = false;  // is something itself
    };
    /// One of the symbols of a primitive: places that are larger or smaller by far get another, so that
    /// lengths keep their digits, and so do pages of other colours.
    struct Variant {
        ORVMathAffine2D toSymbol;
        const ORVPrtColourTable* colours;
        double mirrorHeight;  // of the page, which places clipping boxes
        const void* key;
    };
    struct Entry {
        Content content;
        std::list<Variant> variants;
    };

    Content OwnContent(const ORVPrtGraphicPrimitiveElt& primitive) const;
    Content Survey(const ORVPrtGraphicPrimitiveElt& root);

    const ORVPrintLinkTargets& links_;
    std::unordered_map<const ORVPrtGraphicPrimitiveElt*, Entry> entries_;  // of what has several references
};
