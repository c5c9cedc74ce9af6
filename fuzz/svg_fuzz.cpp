// Feeds any bytes to the interpreters, with either parser and as a fragment, and draws what they made of
// them onto a generator that looks at everything it is given. Any page must come out finite and balanced.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInputXMLElement.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/system/ORVRef.h"
#include "platform/xml/ORVLightXml.h"
#include "plugin/interpreter/factories.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

class CheckingGenerator final : public ORVPrintGenerator {
public:
    int BeginDocument(const ORVPrintDocumentInfo& /*info*/) override { return Enter(0); }
    int BeginPage(const ORVPrintPageInfo& info) override {
        Require(info.width > 0.0 && info.height > 0.0 && std::isfinite(info.width) &&
                std::isfinite(info.height));
        return Enter(1);
    }
    int BeginGroup(const ORVPrintGroup& /*group*/) override { return Enter(depth_ >= 2 ? depth_ : -1); }
    int EndGroup() override {
        Require(depth_ > 2);
        --depth_;
        return 1;
    }
    int BeginClip(const ORVMathBox2D& /*box*/) override { return Enter(depth_ >= 2 ? depth_ : -1); }
    int EndClip() override { return EndGroup(); }
    int DrawShape(const ORVPrintShape& shape) override {
        Require(depth_ >= 2 && shape.toPage.IsFinite());
        for (const ORVMathPoint2D& p : shape.path.points) Require(std::isfinite(p.x) && std::isfinite(p.y));
        if (shape.stroke) Require(shape.stroke->width > 0.0 && std::isfinite(shape.stroke->width));
        return 1;
    }
    int DrawText(const ORVPrintText& text) override {
        Require(depth_ >= 2 && text.toPage.IsFinite());
        return 1;
    }
    int DrawImage(const ORVPrintImage& image) override {
        Require(depth_ >= 2 && image.toPage.IsFinite());
        return 1;
    }
    int EndPage() override {
        Require(depth_ == 2);
        depth_ = 1;
        return 1;
    }
    int EndDocument() override {
        depth_ = 0;
        return 1;
    }

private:
    int Enter(int expectedDepth) {
        Require(depth_ == expectedDepth);
        ++depth_;
        return 1;
    }
    int depth_ = 0;
};

void Print(ORVPrintInterpreter* created) {
    const std::unique_ptr<ORVPrintInterpreter> interpreter(created);
    unsigned int count = 0;
    Require(interpreter->GetPageCount(count) <= 1);
    CheckingGenerator generator;
    ORVPrintParameters parameters;
    parameters.SetDrawLimit(100'000);
    interpreter->Print(&generator, parameters);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    ORVPrtModel::SetPrimitiveLimit(20'000);
    const std::string document(reinterpret_cast<const char*>(data + 1), size - 1);
    if (data[0] % 3 == 2) {
        ORVLightXmlElement root;
        ORVLightXmlParser().Parse({document.data(), document.size()}, root);
        const ORVRef<ORVPrintInputXMLElement> input(new ORVPrintInputXMLElement(&root));
        Print(fctCreateORVPrintQVXMLInterpreter(input.get()));
        return 0;
    }
    if (data[0] % 3 == 1) {
        setenv("PRINT_WITHOUT_DOM_PARSER", "", 1);
    } else {
        unsetenv("PRINT_WITHOUT_DOM_PARSER");
    }
    const ORVRef<ORVPrintInputMemoryStream> input(new ORVPrintInputMemoryStream(document));
    Print(fctCreateORVPrintSVGInterpreter(input.get()));
    return 0;
}
