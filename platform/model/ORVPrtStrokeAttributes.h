#pragma once

#include <cstdint>
#include <vector>

#include "platform/model/ORVPrtEnumerations.h"
#include "platform/system/ORVSharedValue.h"

/// How outlines are drawn. A value: copies share their content until one changes.
class ORVPrtStrokeAttributes {
public:
    void SetStrokeColourIndex(unsigned int index) { value_.Set(&Value::colour, index); }
    unsigned int GetStrokeColourIndex() const { return value_.Get().colour; }
    /// 255 is opaque.
    void SetStrokeColourTransparency(std::uint8_t opacity) { value_.Set(&Value::transparency, opacity); }
    std::uint8_t GetStrokeColourTransparency() const { return value_.Get().transparency; }
    /// kLineSolid or kLineUserDash.
    void SetStrokeType(int type) { value_.Set(&Value::type, type); }
    int GetStrokeType() const { return value_.Get().type; }
    /// Lengths of dashes and gaps in user units; used with kLineUserDash only.
    void SetStrokeDashPattern(const float* lengths, std::uint8_t count) {
        value_.Set(&Value::dash, std::vector<float>(lengths, lengths + count));
    }
    const std::vector<float>& GetStrokeDashPattern() const { return value_.Get().dash; }
    /// User units.
    void SetStrokeWidth(double width) { value_.Set(&Value::width, width); }
    double GetStrokeWidth() const { return value_.Get().width; }
    void SetStrokeStyle(int style) { value_.Set(&Value::style, style); }
    int GetStrokeStyle() const { return value_.Get().style; }
    void SetStrokeCap(int cap) { value_.Set(&Value::cap, cap); }
    int GetStrokeCap() const { return value_.Get().cap; }
    void SetStrokeJoin(int join) { value_.Set(&Value::join, join); }
    int GetStrokeJoin() const { return value_.Get().join; }

    bool operator==(const ORVPrtStrokeAttributes&) const = default;

private:
    struct Value {
        unsigned int colour = 0;
        std::uint8_t transparency = 255;
        int type = kLineSolid;
        double width = 1.0;
        int style = 0;
        int cap = kCapButt;
        int join = kJoinMiter;
        std::vector<float> dash;
        bool operator==(const Value&) const = default;
    };
    ORVSharedValue<Value> value_;
};
