// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <utility>

#include "platform/model/ORVPrtFillAttributes.h"
#include "platform/model/ORVPrtStrokeAttributes.h"
#include "platform/model/ORVPrtTextAttributes.h"
#include "platform/system/ORVSharedValue.h"
#include "platform/system/ORVUnicodeString.h"

class ORVPrintModelBoundingBoxComputer;
class ORVPrtImageElt;
class ORVPrtModel;
class SvgDefinitions;

/// Identifiers of the markers for start, middle and end vertices; empty means none.
struct SvgMarkerReferences {
    ORVUnicodeString start, mid, end;
    bool operator==(const SvgMarkerReferences&) const = default;
};

/// What children take over from their parent. Groups save it on entry and restore it on exit.
struct SvgInheritedState {
    ORVSharedValue<SvgMarkerReferences> markers;
    ORVPrtStrokeAttributes stroke;
    ORVPrtFillAttributes fill;
    ORVPrtTextAttributes text;
    int drawStyle = kDrawFill;
    unsigned int strokeCurrentColour = 0;  ///< what "currentColor" means for strokes
    unsigned int fillCurrentColour = 0;    ///< what "currentColor" means for fills
    /// User units. Inherited because letter spacing in a style replaces it for an element and its
    /// descendants.
    double pageWidth = 0.0;
};

/// State of building one page, handed down the element tree. Copying one is cheap: leaf handlers work on a
/// copy, so that nothing they change reaches a sibling. It owns its attribute sets and nothing else.
struct SvgDrawState : SvgInheritedState {
    ORVPrtModel* model = nullptr;
    ORVPrtImageElt* page = nullptr;  ///< the model holds it
    double pageHeight = 0.0;         ///< user units; 0 inside an embedded fragment
    SvgDefinitions* definitions = nullptr;
    ORVPrintModelBoundingBoxComputer* boxes = nullptr;
    const ORVUnicodeString* currentPath = nullptr;  ///< file of the document, for relative references
    std::uint8_t yFlip = 1;                         ///< 1: y is mirrored against the page height
    std::uint8_t embeddedFragment = 0;              ///< 1: the drawing is a fragment of a QVXML document
};

/// Restores the inherited part of a state when it goes out of scope.
class SvgInheritedStateGuard {
public:
    explicit SvgInheritedStateGuard(SvgDrawState& state) : state_(state), saved_(state) {}
    ~SvgInheritedStateGuard() { static_cast<SvgInheritedState&>(state_) = std::move(saved_); }
    SvgInheritedStateGuard(const SvgInheritedStateGuard&) = delete;
    SvgInheritedStateGuard& operator=(const SvgInheritedStateGuard&) = delete;

private:
    SvgDrawState& state_;
    SvgInheritedState saved_;
};
