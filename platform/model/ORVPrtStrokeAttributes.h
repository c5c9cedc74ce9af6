// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "platform/model/ORVPrtEnumerations.h"
#include "platform/system/ORVSharedValue.h"

/// Stroke attributes of a primitive. Copy-on-write value.
class ORVPrtStrokeAttributes {
public:
    /// Index into the page's colour table.
    void SetStrokeColourIndex(unsigned int index) { value_.Set(&Value::colour, index); }
    unsigned int GetStrokeColourIndex() const { return value_.Get().colour; }
    /// Opacity, despite the name: 255 is opaque, 0 transparent.
    void SetStrokeColourTransparency(std::uint8_t opacity) { value_.Set(&Value::transparency, opacity); }
    std::uint8_t GetStrokeColourTransparency() const { return value_.Get().transparency; }
    /// kLineSolid or kLineUserDash.
    void SetStrokeType(int type) { value_.Set(&Value::type, static_cast<std::uint8_t>(type)); }
    int GetStrokeType() const { return value_.Get().type; }
    /// Lengths of dashes and gaps, user units; used only with kLineUserDash.
    void SetStrokeDashPattern(const float* lengths, std::uint8_t count) {
        Dashes dash;
        if (count > 0) dash.Edit().assign(lengths, lengths + count);
        value_.Set(&Value::dash, dash);
    }
    const std::vector<float>& GetStrokeDashPattern() const { return value_.Get().dash.Get(); }
    /// Line width, user units.
    void SetStrokeWidth(double width) { value_.Set(&Value::width, width); }
    double GetStrokeWidth() const { return value_.Get().width; }
    /// Stored, but without effect on drawing.
    void SetStrokeStyle(int style) { value_.Set(&Value::style, static_cast<std::uint8_t>(style)); }
    int GetStrokeStyle() const { return value_.Get().style; }
    /// orvprint::kCapButt to orvprint::kCapRound.
    void SetStrokeCap(int cap) { value_.Set(&Value::cap, static_cast<std::uint8_t>(cap)); }
    int GetStrokeCap() const { return value_.Get().cap; }
    /// orvprint::kJoinMiter to orvprint::kJoinBevel.
    void SetStrokeJoin(int join) { value_.Set(&Value::join, static_cast<std::uint8_t>(join)); }
    int GetStrokeJoin() const { return value_.Get().join; }

    bool operator==(const ORVPrtStrokeAttributes&) const = default;

private:
    using Dashes = ORVSharedValue<std::vector<float>>;
    // Enumerations are stored as bytes, because a drawing has as many attribute sets as shapes.
    struct Value {
        double width = 1.0;
        Dashes dash;
        unsigned int colour = 0;
        std::uint8_t transparency = 255;
        std::uint8_t type = orvprint::kLineSolid;
        std::uint8_t style = 0;
        std::uint8_t cap = orvprint::kCapButt;
        std::uint8_t join = orvprint::kJoinMiter;
        bool operator==(const Value&) const = default;
    };
    ORVSharedValue<Value> value_;
};
