// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <optional>
#include <string>

#include "generators/common/ORVOutput.h"
#include "generators/pdf/ORVPdfGenerator.h"
#include "tests/generators/drawing_calls.h"
#include "tests/support/sample_images.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/shell_run.h"
#include "tests/support/test_texts.h"

/// A document drawn by a test, examined with external tools.
class DrawnPdf {
public:
    explicit DrawnPdf(const char* title = "", std::optional<std::int64_t> creationTime = std::nullopt)
        : generator_(output_, creationTime) {
        EXPECT_EQ(generator_.BeginDocument({title, 0}), 1);
    }
    DrawnPdf(const DrawnPdf&) = delete;
    DrawnPdf& operator=(const DrawnPdf&) = delete;

    ORVPdfGenerator& Get() { return generator_; }
    void BeginPage(double width = 90.0, double height = 90.0) {
        EXPECT_EQ(generator_.BeginPage(PageInfo(width, height, ++pages_)), 1);
    }
    void EndPage() { EXPECT_EQ(generator_.EndPage(), 1); }
    /// Ends the document and checks that it is valid.
    void Finish() {
        EXPECT_EQ(generator_.EndDocument(), 1);
        std::ofstream(path_, std::ios::binary) << output_.GetBytes();
        const ShellRun check("qpdf --check " + Quoted());
        EXPECT_EQ(check.status, 0) << check.text;
    }

    const std::string& Bytes() const { return output_.GetBytes(); }
    /// Output of a command run on the document.
    /// @param command  the file name is appended to it
    std::string Run(const std::string& command) const { return ShellRun(command + " " + Quoted()).text; }
    /// The document without compression.
    std::string Plain() const {
        return ShellRun("qpdf --qdf --object-streams=disable " + Quoted() + " -").text;
    }
    std::string Text() const { return ShellRun("pdftotext -layout " + Quoted() + " -").text; }
    /// The only page as PPM, one pixel per user unit.
    std::string Pixels() const { return Run("pdftoppm -r 90"); }
    /// Extracts an image or mask from the document.
    ORVRef<ORVPixelImage> ExtractImage(int number = 0) const {
        const std::string root = folder_.PathOf("image");
        EXPECT_EQ(ShellRun("pdfimages -png " + Quoted() + " '" + root + "'").status, 0);
        const std::string png = ReadAll(root + "-00" + std::to_string(number) + ".png");
        return ORVRef<ORVPixelImage>(ReadMemoryPNGPixelImage(png.data(), png.size(), 0));
    }

private:
    std::string Quoted() const { return "'" + path_ + "'"; }

    ORVMemoryOutput output_;
    ORVPdfGenerator generator_;
    unsigned int pages_ = 0;
    const ScratchFolder folder_;
    const std::string path_ = folder_.PathOf("page.pdf");
};
