// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "tests/platform/print/make_primitives.h"
#include "tests/platform/print/recording_generator.h"
#include "tests/platform/visualization/written_images.h"

// Draws a page of primitives.

inline int DrawAll(OnePage& page, RecordingGenerator& generator, const ORVPrintParameters& parameters = {}) {
    return ORVPrintModelRender(page.GetModel(), &generator, parameters).Draw();
}

/// Returns the drawing calls for a page of 100 x 50 units with these primitives.
inline std::vector<std::string> Drawn(std::initializer_list<ORVRef<ORVPrtGraphicPrimitiveElt>> primitives) {
    OnePage page;
    for (const auto& primitive : primitives) page.Add(primitive);
    RecordingGenerator generator;
    EXPECT_EQ(DrawAll(page, generator), 1);
    return generator.GetDrawn();
}

inline ORVPrtStrokeAttributes Dashed(std::vector<float> lengths) {
    ORVPrtStrokeAttributes stroke;
    stroke.SetStrokeType(kLineUserDash);
    stroke.SetStrokeDashPattern(lengths.data(), static_cast<std::uint8_t>(lengths.size()));
    return stroke;
}

inline ORVRef<ORVPixelImage> MakeImage(int width, int height) {
    const std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width * height) * 4, 255);
    return ORVRef<ORVPixelImage>(ORVPixelImage::CreateFromPixels(width, height, pixels));
}

inline ORVRef<ORVPrtTextElt> MakeText(const char* string, double x, double y) {
    auto text = Make<ORVPrtTextElt>();
    text->SetText(string);
    text->SetPosition({x, y});
    return text;
}
