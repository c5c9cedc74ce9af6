// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/model/ORVPrtEnumerations.h"
#include "platform/system/ORVSharedValue.h"

class ORVFont;

/// Text attributes. Copy-on-write value.
class ORVPrtTextAttributes {
public:
    /// A font owned by the catalogue; null for the catalogue's sans-serif font.
    void SetFont(const ORVFont* font) { value_.Set(&Value::font, font); }
    const ORVFont* GetFont() const { return value_.Get().font; }
    /// kWeightLight to kWeightHeavy.
    void SetWeight(int weight) { value_.Set(&Value::weight, weight); }
    int GetWeight() const { return value_.Get().weight; }
    /// Font size, user units.
    void SetHeight(double height) { value_.Set(&Value::height, height); }
    double GetHeight() const { return value_.Get().height; }
    /// kAnchorFirst to kAnchorLast.
    void SetAnchor(int anchor) { value_.Set(&Value::anchor, anchor); }
    int GetAnchor() const { return value_.Get().anchor; }
    /// Slant of the characters, radians.
    void SetSlant(float slant) { value_.Set(&Value::slant, slant); }
    float GetSlant() const { return value_.Get().slant; }
    /// Direction of the baseline, radians, counter-clockwise with y up.
    void SetDirection(float direction) { value_.Set(&Value::direction, direction); }
    float GetDirection() const { return value_.Get().direction; }
    /// Spacing added after every character, user units.
    void SetExtraSpacing(double spacing) { value_.Set(&Value::extraSpacing, spacing); }
    double GetExtraSpacing() const { return value_.Get().extraSpacing; }
    /// Horizontal scale of the characters.
    void SetExpansion(double expansion) { value_.Set(&Value::expansion, expansion); }
    double GetExpansion() const { return value_.Get().expansion; }
    /// A value of orvprint::ORVPrtWritingMode.
    void SetWritingMode(int mode) { value_.Set(&Value::writingMode, mode); }
    int GetWritingMode() const { return value_.Get().writingMode; }
    /// Version of the text rules requested by the document; see ORVFontCheckFontForVersion.
    void SetTextVersion(int version) { value_.Set(&Value::textVersion, version); }
    int GetTextVersion() const { return value_.Get().textVersion; }

    bool operator==(const ORVPrtTextAttributes&) const = default;

private:
    struct Value {
        const ORVFont* font = nullptr;
        int weight = orvprint::kWeightNormal;
        double height = 12.0;
        int anchor = orvprint::kAnchorStartBaseline;
        float slant = 0.0F;
        float direction = 0.0F;
        double extraSpacing = 0.0;
        double expansion = 1.0;
        int writingMode = orvprint::kLeftToRight;
        int textVersion = 0;
        bool operator==(const Value&) const = default;
    };
    ORVSharedValue<Value> value_;
};
