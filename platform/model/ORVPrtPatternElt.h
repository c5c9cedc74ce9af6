// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "platform/model/ORVPrtContainerElt.h"
#include "platform/model/ORVPrtViewBox.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// A pattern tile that fills refer to. Not drawn where it occurs, and without a bounding box.
class ORV_PLATFORM_EXPORT ORVPrtPatternElt final : public ORVPrtContainerElt {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtPatternElt() : ORVPrtContainerElt(ORVPrtKind::kPattern) {}

    /// The tile in the drawing's coordinates, as specified and not validated.
    void SetBox(const ORVPrtViewBox& box) { box_ = box; }
    const ORVPrtViewBox& GetBox() const { return box_; }
    /// The area of the pattern's coordinates that is mapped to the tile.
    void SetViewBox(const ORVPrtViewBox& viewBox) {
        viewBox_ = std::make_shared<const ORVPrtViewBox>(viewBox);
    }
    /// The view box; null if never set.
    const ORVPrtViewBox* GetViewBox() const { return viewBox_.get(); }
    /// The bitmap most recently rendered from this pattern for a fill. A reference to it is held.
    void SetFillPatternImage(ORVPixelImage* image) { image_ = ORVRef<ORVPixelImage>::Share(image); }
    ORVPixelImage* GetFillPatternImage() const { return image_.get(); }

private:
    ORVPrtPatternElt(const ORVPrtPatternElt&) = default;
    ~ORVPrtPatternElt() override = default;  // objects are destroyed by Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;

    ORVPrtViewBox box_;
    std::shared_ptr<const ORVPrtViewBox> viewBox_;
    ORVRef<ORVPixelImage> image_;
};
