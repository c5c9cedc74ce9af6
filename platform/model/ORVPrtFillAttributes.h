// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/model/ORVPrtEnumerations.h"
#include "platform/system/ORVRef.h"
#include "platform/system/ORVSharedValue.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// Fill attributes of a primitive. Copy-on-write value.
class ORVPrtFillAttributes {
public:
    /// A value of orvprint::ORVPrtFillStyle.
    void SetFillStyle(int style) { value_.Set(&Value::style, static_cast<std::uint8_t>(style)); }
    int GetFillStyle() const { return value_.Get().style; }
    /// A value of orvprint::ORVPrtFillRule.
    void SetFillRule(int rule) { value_.Set(&Value::rule, static_cast<std::uint8_t>(rule)); }
    int GetFillRule() const { return value_.Get().rule; }
    /// Index into the page's colour table.
    void SetFillColourIndex(unsigned int index) { value_.Set(&Value::colour, index); }
    unsigned int GetFillColourIndex() const { return value_.Get().colour; }
    /// Opacity, despite the name: 255 is opaque, 0 transparent.
    void SetFillColourTransparency(std::uint8_t opacity) { value_.Set(&Value::transparency, opacity); }
    std::uint8_t GetFillColourTransparency() const { return value_.Get().transparency; }
    /// The tile for kFillPattern; a reference to it is held. Attribute sets are equal only if they hold the
    /// same image object.
    void SetFillPatternImage(ORVPixelImage* image) {
        if (image != value_.Get().pattern.get()) value_.Edit().pattern = ORVRef<ORVPixelImage>::Share(image);
    }
    ORVPixelImage* GetFillPatternImage() const { return value_.Get().pattern.get(); }

    bool operator==(const ORVPrtFillAttributes&) const = default;

private:
    struct Value {
        ORVRef<ORVPixelImage> pattern;
        unsigned int colour = 0;
        std::uint8_t transparency = 255;
        std::uint8_t style = orvprint::kFillSolid;
        std::uint8_t rule = orvprint::kFillNonZero;
        bool operator==(const Value& other) const {
            return style == other.style && rule == other.rule && colour == other.colour &&
                   transparency == other.transparency && pattern.get() == other.pattern.get();
        }
    };
    ORVSharedValue<Value> value_;
};
