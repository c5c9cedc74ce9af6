// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>

#include "platform/model/ORVPrtContainerElt.h"
#include "platform/model/ORVPrtFillAttributes.h"
#include "platform/model/ORVPrtStrokeAttributes.h"
#include "platform/model/ORVPrtTextAttributes.h"
#include "platform/model/ORVPrtTransformAttributes.h"

/// Container for definitions: primitives that are built but not drawn in place, together with the drawing
/// state in force there. It is kept in the registry of a page's definitions, never on the page itself.
class ORVPrtDefsElt final : public ORVPrtContainerElt {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtDefsElt() : ORVPrtContainerElt(ORVPrtKind::kOther) {}

    /// The draw style in force at the definitions.
    void SetType(int type) { type_ = type; }
    int GetType() const { return type_; }
    void SetStroke(ORVPrtStrokeAttributes stroke) { stroke_ = std::move(stroke); }
    const ORVPrtStrokeAttributes& GetStroke() const { return stroke_; }
    void SetFill(ORVPrtFillAttributes fill) { fill_ = std::move(fill); }
    const ORVPrtFillAttributes& GetFill() const { return fill_; }
    void SetText(ORVPrtTextAttributes text) { text_ = std::move(text); }
    const ORVPrtTextAttributes& GetText() const { return text_; }
    void SetTransform(ORVPrtTransformAttributes transform) { transform_ = std::move(transform); }
    const ORVPrtTransformAttributes& GetTransform() const { return transform_; }

private:
    ORVPrtDefsElt(const ORVPrtDefsElt&) = default;
    ~ORVPrtDefsElt() override = default;  // use Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;

    int type_ = 1;
    ORVPrtStrokeAttributes stroke_;
    ORVPrtFillAttributes fill_;
    ORVPrtTextAttributes text_;
    ORVPrtTransformAttributes transform_;
};
