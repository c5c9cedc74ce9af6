// SPDX-License-Identifier: Apache-2.0

// Lists the contents of a drawing's pages: list_shapes DRAWING. Shows a custom generator that writes text.

#include <iostream>
#include <string>

#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintInputFileStream.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintModule.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

class ShapeList final : public ORVPrintGenerator {
public:
    int BeginDocument(const ORVPrintDocumentInfo& /*info*/) override { return 1; }
    int BeginPage(const ORVPrintPageInfo& info) override {
        std::cout << "page " << info.number << ": " << info.width << " x " << info.height << '\n';
        return 1;
    }
    int DrawShape(const ORVPrintShape& shape) override {
        std::cout << "shape of " << shape.path.verbs.size() << " verbs" << (shape.fill ? ", filled" : "")
                  << (shape.stroke ? ", stroked" : "") << '\n';
        return 1;
    }
    int DrawText(const ORVPrintText& text) override {
        std::cout << "text \"" << text.text << "\"\n";
        return 1;
    }
    int DrawImage(const ORVPrintImage& image) override {
        std::cout << "image of " << image.image.GetWidth() << " x " << image.image.GetHeight() << " pixels\n";
        return 1;
    }
    int EndPage() override { return 1; }
    int EndDocument() override { return std::cout.good() ? 1 : 0; }

    // Not needed for a list.
    int BeginGroup(const ORVPrintGroup& /*group*/) override { return 1; }
    int EndGroup() override { return 1; }
    int BeginClip(const ORVMathBox2D& /*box*/) override { return 1; }
    int EndClip() override { return 1; }
};

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: list_shapes DRAWING\n";
        return 2;
    }
    std::string error;
    const ORVRef<ORVPrintInputFileStream> input(new ORVPrintInputFileStream(arguments[1]));
    const auto interpreter = ORVPrintModule::CreateInterpreter("SVG", input.get(), error);
    ShapeList list;
    if (interpreter && interpreter->Print(&list, ORVPrintParameters()) == 1) return 0;
    std::cerr << arguments[1] << ": " << (error.empty() ? "cannot be printed" : error) << '\n';
    return 1;
}
