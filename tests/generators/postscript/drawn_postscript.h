// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "generators/common/ORVOutput.h"
#include "generators/formats.h"
#include "tests/generators/drawing_calls.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/shell_run.h"

/// A document drawn by a test.
class PostScript {
public:
    explicit PostScript(const char* format = "ps", const char* title = "")
        : format_(ORVFindOutputFormat(format)->create(output_, {})) {
        EXPECT_EQ(Get().BeginDocument({title, 0}), 1);
    }
    ORVPrintGenerator& Get() { return format_->Get(); }
    const std::string& GetError() const { return format_->GetError(); }
    const ORVMemoryOutput& GetOutput() const { return output_; }
    void BeginPage(double width = 90.0, double height = 90.0) {
        EXPECT_EQ(Get().BeginPage(PageInfo(width, height, ++pages_)), 1) << GetError();
    }
    void EndPage() { EXPECT_EQ(Get().EndPage(), 1) << GetError(); }
    /// Ends the document and checks that it runs without errors.
    /// @return the whole document
    const std::string& Finish() {
        EXPECT_EQ(Get().EndDocument(), 1) << GetError();
        std::ofstream(path_, std::ios::binary) << output_.GetBytes();
        EXPECT_EQ(Interpret("-sDEVICE=nullpage"), "");
        return output_.GetBytes();
    }
    /// The bounding box of each page's content, as computed by the PostScript interpreter: left, bottom,
    /// right, top in points.
    std::vector<std::array<double, 4>> Boxes() const {
        std::istringstream lines(Interpret("-sDEVICE=bbox"));
        std::vector<std::array<double, 4>> boxes;
        for (std::string line; std::getline(lines, line);) {
            std::array<double, 4> box{};
            if (std::sscanf(line.c_str(), "%%%%HiResBoundingBox: %lf %lf %lf %lf", box.data(), &box[1],
                            &box[2], &box[3]) == 4)
                boxes.push_back(box);
        }
        return boxes;
    }
    /// The RGB pixels of the first page at 90 dots per inch, one per user unit.
    struct Pixels {
        std::size_t width = 0;
        std::string bytes;
        std::array<int, 3> At(double x, double y) const {
            const std::size_t at = (static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x)) * 3;
            const auto channel = [&](std::size_t i) {
                return at + i < bytes.size() ? static_cast<int>(static_cast<unsigned char>(bytes[at + i]))
                                             : -1;
            };
            return {channel(0), channel(1), channel(2)};
        }
    };
    Pixels Draw() const {
        const std::string file = folder_.PathOf("page.ppm");
        EXPECT_EQ(Interpret("-r90 -dTextAlphaBits=4 -dGraphicsAlphaBits=4 -sDEVICE=ppmraw -sOutputFile='" +
                            file + "'"),
                  "");
        std::ifstream in(file, std::ios::binary);
        Pixels pixels;
        std::string word;
        in >> word;
        // The header of the file may have comments between its numbers.
        std::array<std::size_t, 3> numbers{};
        for (std::size_t i = 0; i < 3 && in; ++i)
            while (!(in >> numbers[i]) && !in.eof()) {
                in.clear();
                std::getline(in, word);
            }
        in.get();
        pixels.width = numbers[0];
        pixels.bytes.assign(std::istreambuf_iterator<char>(in), {});
        return pixels;
    }
    std::string Text() const { return Interpret("-sDEVICE=txtwrite -sOutputFile=-"); }
    /// The darkest grey of all pages.
    int Darkest() const {
        // Four header lines, then one byte per pixel.
        std::string pixels = Interpret("-sDEVICE=pgmraw -r180 -dGraphicsAlphaBits=1 -sOutputFile=-");
        for (int line = 0; line < 4; ++line) pixels.erase(0, pixels.find('\n') + 1);
        int darkest = 255;
        for (const char c : pixels) darkest = std::min<int>(darkest, static_cast<unsigned char>(c));
        return darkest;
    }

private:
    /// The interpreter's output for the document.
    std::string Interpret(const std::string& options) const {
        return ShellRun("gs -q -dSAFER -dBATCH -dNOPAUSE " + options + " '" + path_ + "'").text;
    }

    ORVMemoryOutput output_;
    std::unique_ptr<ORVFormatGenerator> format_;
    unsigned int pages_ = 0;
    const ScratchFolder folder_;
    const std::string path_ = folder_.PathOf("page.ps");
};
