// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/generators/pdf/drawn_pdf.h"

/// A colour on a page, composited with white paper.
struct PaperColour {
    int red = 0, green = 0, blue = 0;
    friend std::ostream& operator<<(std::ostream& out, const PaperColour& c) {
        return out << '(' << c.red << ' ' << c.green << ' ' << c.blue << ')';
    }
};

/// A point of a page, in user units, and its expected colour.
struct PaperPoint {
    double x, y;
    PaperColour colour;
};

/// The only page of a document, rendered by an external program.
class DrawnPage {
public:
    /// @param command  writes the page as PPM, one pixel per user unit
    DrawnPage(const DrawnPdf& document, const std::string& command) : name_(command.substr(0, 6)) {
        pixels_ = document.Run(command);
        std::istringstream head(pixels_);
        std::string kind;
        int height = 0, depth = 0;
        head >> kind >> width_ >> height >> depth;
        EXPECT_EQ(kind, "P6") << pixels_.substr(0, 200);
        const std::size_t size = static_cast<std::size_t>(width_ * height) * 3;
        start_ = pixels_.size() - size;
        EXPECT_GE(pixels_.size(), size);
    }

    PaperColour At(double x, double y) const {
        const std::size_t pixel =
            start_ + 3 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                          static_cast<std::size_t>(x));
        const auto part = [&](std::size_t i) {
            return pixel + i < pixels_.size() ? static_cast<unsigned char>(pixels_[pixel + i]) : -1;
        };
        return {part(0), part(1), part(2)};
    }
    const std::string& GetName() const { return name_; }

private:
    std::string name_, pixels_;
    int width_ = 0;
    std::size_t start_ = 0;
};

/// Checks colours of a document's only page, as rendered by two programs.
inline void ExpectColours(const DrawnPdf& document, const std::vector<PaperPoint>& points,
                          int tolerance = 8) {
    for (const char* command : {"pdftoppm -r 90", "mutool draw -q -r 90 -F ppm -o - 2>/dev/null"}) {
        const DrawnPage page(document, command);
        for (const PaperPoint& point : points) {
            const PaperColour got = page.At(point.x, point.y);
            const int off =
                std::max({std::abs(got.red - point.colour.red), std::abs(got.green - point.colour.green),
                          std::abs(got.blue - point.colour.blue)});
            EXPECT_LE(off, tolerance) << page.GetName() << " at " << point.x << ", " << point.y << ": " << got
                                      << " instead of " << point.colour;
        }
    }
}

/// Draws a page with a function that receives the generator.
template <class Draw>
void DrawPage(DrawnPdf& document, Draw draw) {
    document.BeginPage();
    draw(document.Get());
    document.EndPage();
    document.Finish();
}
