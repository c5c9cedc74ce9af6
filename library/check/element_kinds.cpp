// SPDX-License-Identifier: Apache-2.0
#include "library/check/element_kinds.h"

bool IsContainer(ElementName name) {
    switch (name) {
        case ElementName::kA:
        case ElementName::kDefs:
        case ElementName::kG:
        case ElementName::kMarker:
        case ElementName::kPattern:
        case ElementName::kSvg:
        case ElementName::kSymbol: return true;
        default: return false;
    }
}

bool IsDefinition(ElementName name) {
    return name == ElementName::kMarker || name == ElementName::kPattern || name == ElementName::kSymbol;
}

bool IsDescription(ElementName name) { return name == ElementName::kDesc || name == ElementName::kTitle; }

bool HasVertices(ElementName name) {
    return name == ElementName::kLine || name == ElementName::kPath || name == ElementName::kPolygon ||
           name == ElementName::kPolyline;
}
