// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <utility>

#include "platform/mathematics/geometry.h"
#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/model/ORVPrtTextAttributes.h"
#include "platform/model/carried_attributes.h"

/// A line of text. The anchor determines which point of the text is placed at the position.
class ORV_PLATFORM_EXPORT ORVPrtTextElt final : public ORVPrtGraphicPrimitiveElt,
                                                public ORVPrtDrawStyled,
                                                public ORVPrtFilled,
                                                public ORVPrtTransformed {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtTextElt() : ORVPrtGraphicPrimitiveElt(ORVPrtKind::kText) {}

    /// Clipping box of the text, as specified and not validated. In the drawing's coordinates: y points down
    /// from the page's mirror height.
    struct ClippingBox {
        double x = 0.0, y = 0.0, width = 0.0, height = 0.0;  ///< user units
    };

    /// Sets the text attributes. If the font is ORVFont::Unavailable(), the budget notes that the text cannot
    /// be set.
    void SetTextAttributes(ORVPrtTextAttributes text);
    const ORVPrtTextAttributes& GetTextAttributes() const { return textAttributes_; }
    /// Position of the anchor point, page units.
    void SetPosition(const ORVMathPoint2D& position) { position_ = position; }
    const ORVMathPoint2D& GetPosition() const { return position_; }
    /// The text, UTF-8.
    void SetText(ORVUnicodeString text) { text_ = std::move(text); }
    const ORVUnicodeString& GetText() const { return text_; }
    /// Sets the clipping box.
    void SetClippingBox(double x, double y, double width, double height) {
        clippingBox_ = std::make_shared<const ClippingBox>(ClippingBox{x, y, width, height});
    }
    /// The clipping box; null if never set.
    const ClippingBox* GetClippingBox() const { return clippingBox_.get(); }

    std::size_t GetPayloadBytes() const override { return text_.GetView().size(); }

private:
    ORVPrtTextElt(const ORVPrtTextElt&) = default;
    ~ORVPrtTextElt() override = default;  // objects are destroyed by Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;

    ORVPrtTextAttributes textAttributes_;
    ORVMathPoint2D position_;
    ORVUnicodeString text_;
    std::shared_ptr<const ClippingBox> clippingBox_;
};
