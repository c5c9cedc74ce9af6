// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "platform/print/ORVPrintGenerator.h"

/// A generator that supports symbols. It records the properties of pages and the calls that concern symbols.
/// Symbols are numbered in order of definition.
class SymbolRecorder final : public ORVPrintGenerator {
public:
    std::vector<std::string> lines;

    int BeginDocument(const ORVPrintDocumentInfo& /*info*/) override { return 1; }
    int BeginPage(const ORVPrintPageInfo& info) override {
        std::string line = "page " + std::to_string(info.number);
        if (!info.id.empty()) line += " #" + std::string(info.id);
        if (!info.title.empty()) line += " " + std::string(info.title);
        if (!info.label.empty()) line += " label " + std::string(info.label);
        if (!info.trim.IsEmpty())
            line += " trim " + Numbers(info.trim.xMin, info.trim.yMin) + " " +
                    Numbers(info.trim.xMax, info.trim.yMax);
        return Add(line);
    }
    int BeginGroup(const ORVPrintGroup& /*group*/) override { return 1; }
    int EndGroup() override { return 1; }
    int BeginClip(const ORVMathBox2D& /*box*/) override { return 1; }
    int EndClip() override { return 1; }
    int BeginSymbol(const ORVPrintSymbol& symbol) override {
        const auto [known, isNew] = numbers_.try_emplace(symbol.key, numbers_.size() + 1);
        Add((isNew ? "symbol " : "known ") + std::to_string(known->second) + At(symbol.toPage));
        return isNew ? kDrawSymbol : kSymbolKnown;
    }
    int EndSymbol() override { return Add("end symbol"); }
    int DrawShape(const ORVPrintShape& shape) override { return Add("shape" + At(shape.toPage)); }
    int DrawText(const ORVPrintText& text) override { return Add("text " + std::string(text.text)); }
    int DrawImage(const ORVPrintImage& image) override { return Add("image" + At(image.toPage)); }
    int EndPage() override { return 1; }
    int EndDocument() override { return 1; }

private:
    int Add(std::string line) {
        lines.push_back(std::move(line));
        return 1;
    }
    static std::string Numbers(double x, double y) {
        char text[64];
        std::snprintf(text, sizeof text, "%g,%g", x, y);
        return text;
    }
    static std::string At(const ORVMathAffine2D& map) {
        char text[64];
        std::snprintf(text, sizeof text, " x %g", map.m11);
        return " at " + Numbers(map.dx, map.dy) + text;
    }

    std::map<const void*, std::size_t> numbers_;
};
