// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/model/ORVPrtEnumerations.h"
#include "platform/system/ORVRef.h"
#include "platform/system/ORVSharedValue.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// How the inside of primitives is drawn. A value: copies share their content until one changes.
class ORVPrtFillAttributes {
public:
    /// A value of orvprint::ORVPrtFillStyle.
    void SetFillStyle(int style) { value_.Set(&Value::style, static_cast<std::uint8_t>(style)); }
    int GetFillStyle() const { return value_.Get().style; }
    /// A value of orvprint::ORVPrtFillRule.
    void SetFillRule(int rule) { value_.Set(&Value::rule, static_cast<std::uint8_t>(rule)); }
    int GetFillRule() const { return value_.Get().rule; }
    /// Index into the colour table of the page.
    void SetFillColourIndex(unsigned int index) { value_.Set(&Value::colour, index); }
    unsigned int GetFillColourIndex() const { return value_.Get().colour; }
    /// Opacity, in spite of its name: 255 is opaque, 0 invisible.
    void SetFillColourTransparency(std::uint8_t opacity) { value_.Set(&Value::transparency, opacity); }
    std::uint8_t GetFillColourTransparency() const { return value_.Get().transparency; }
    /// The bitmap that kFillPattern tiles; the set keeps a reference of its own. Two sets agree when they
    /// hold the same image object.
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
