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

/// Identifiers of the markers for the first, middle and last vertices; empty for none.
struct SvgMarkerReferences {
    ORVUnicodeString start, mid, end;
    bool operator==(const SvgMarkerReferences&) const = default;
};

/// The part of the state that children inherit. Groups save it on entry and restore it on exit.
struct SvgInheritedState {
    ORVSharedValue<SvgMarkerReferences> markers;
    ORVPrtStrokeAttributes stroke;
    ORVPrtFillAttributes fill;
    ORVPrtTextAttributes text;
    int drawStyle = kDrawFill;
    unsigned int strokeCurrentColour = 0;  ///< the value of "currentColor" for strokes
    unsigned int fillCurrentColour = 0;    ///< the value of "currentColor" for fills
    /// In user units. Inherited because letter spacing in a style replaces it for an element and its
    /// descendants.
    double pageWidth = 0.0;
};

/// State of building one page, passed down the element tree. Copies are cheap: leaf handlers work on a copy,
/// so that their changes do not affect siblings. Owns its attribute sets; all pointers are borrowed.
struct SvgDrawState : SvgInheritedState {
    ORVPrtModel* model = nullptr;
    ORVPrtImageElt* page = nullptr;  ///< owned by the model
    double pageHeight = 0.0;         ///< in user units; 0 inside an embedded fragment
    SvgDefinitions* definitions = nullptr;
    ORVPrintModelBoundingBoxComputer* boxes = nullptr;
    const ORVUnicodeString* currentPath = nullptr;  ///< path of the document's file, for relative references
    std::uint8_t yFlip = 1;                         ///< 1 if y is mirrored against the page height
    std::uint8_t embeddedFragment = 0;              ///< 1 if the drawing is a fragment of a QVXML document
};

/// Restores the inherited part of a state at the end of its scope.
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
