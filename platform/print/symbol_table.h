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

/// Use of a symbol in place of a primitive.
struct ORVPrintSymbolPlace {
    const void* key = nullptr;
    ORVMathAffine2D toSymbol;  ///< from the primitive's coordinates to the symbol's
    ORVMathAffine2D toPage;    ///< from the symbol's coordinates to the page
};

/// Finds primitives that occur several times in a drawing and are worth storing once. Their appearance must
/// not depend on their position, and they must not contain anything that is reported as a link, as the target
/// of a link or with a description. Takes time proportional to the number of distinct primitives.
class ORVPrintSymbolTable {
public:
    /// @param links  links of the drawing; must outlive the table
    explicit ORVPrintSymbolTable(const ORVPrintLinkTargets& links) : links_(links) {}

    /// Looks up the symbol for a primitive with several references.
    /// @param map    from the primitive's own coordinates to those that it is drawn in; unless it is a
    /// container, its own transformation is applied before this one
    /// @param place  set when there is a symbol
    /// @return false when the primitive must be drawn directly
    bool Find(const ORVPrtGraphicPrimitiveElt& primitive, const ORVMathAffine2D& map,
              const ORVPrtImageElt& page, ORVPrintSymbolPlace& place);

private:
    /// Summary of a primitive and its descendants.
    struct Content {
        double size = 0.0;        // approximate size in an output format, bytes
        bool isMovable = true;    // looks the same in every position, and contains nothing that is reported
        bool isReported = false;  // is reported itself
    };
    /// One of the symbols of a primitive. Uses at a very different scale get a separate symbol, to keep the
    /// precision of lengths; so do pages with other colours.
    struct Variant {
        ORVMathAffine2D toSymbol;
        const ORVPrtColourTable* colours;
        double mirrorHeight;  // mirror height of the page, which positions clipping boxes
        const void* key;
    };
    struct Entry {
        Content content;
        std::list<Variant> variants;
    };

    Content OwnContent(const ORVPrtGraphicPrimitiveElt& primitive) const;
    Content Survey(const ORVPrtGraphicPrimitiveElt& root);

    const ORVPrintLinkTargets& links_;
    std::unordered_map<const ORVPrtGraphicPrimitiveElt*, Entry> entries_;  // those with several references
};
