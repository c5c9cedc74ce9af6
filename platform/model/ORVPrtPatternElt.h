// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "platform/model/ORVPrtContainerElt.h"
#include "platform/model/ORVPrtViewBox.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// A tile that fills refer to. It draws nothing by itself and has no bounding box.
class ORV_PLATFORM_EXPORT ORVPrtPatternElt final : public ORVPrtContainerElt {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtPatternElt() : ORVPrtContainerElt(ORVPrtKind::kPattern) {}

    /// The tile in the drawing's own coordinates, as given, unchecked.
    void SetBox(const ORVPrtViewBox& box) { box_ = box; }
    const ORVPrtViewBox& GetBox() const { return box_; }
    /// The part of the pattern's own coordinates that fills the tile.
    void SetViewBox(const ORVPrtViewBox& viewBox) {
        viewBox_ = std::make_shared<const ORVPrtViewBox>(viewBox);
    }
    /// Null when never set.
    const ORVPrtViewBox* GetViewBox() const { return viewBox_.get(); }
    /// The bitmap that a fill took from this pattern last; keeps a reference of its own.
    void SetFillPatternImage(ORVPixelImage* image) { image_ = ORVRef<ORVPixelImage>::Share(image); }
    ORVPixelImage* GetFillPatternImage() const { return image_.get(); }

private:
    ORVPrtPatternElt(const ORVPrtPatternElt&) = default;
    ~ORVPrtPatternElt() override = default;  // through Release() only
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;

    ORVPrtViewBox box_;
    std::shared_ptr<const ORVPrtViewBox> viewBox_;
    ORVRef<ORVPixelImage> image_;
};
