// SPDX-License-Identifier: Apache-2.0
#include "fuzz/support/standard_documents.h"

#include <cstdint>
#include <memory>

#include "fuzz/support/documents.h"
#include "generators/common/ORVOutput.h"
#include "generators/flatten/ORVFilterImages.h"
#include "generators/flatten/ORVTileImages.h"
#include "generators/png/ORVPngGenerator.h"
#include "interpreters/svg2/interpreter/factories.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/ORVPrintLimits.h"
#include "platform/system/ORVRef.h"
#include "tests/support/CheckingGenerator.h"

void DrawStandard(const std::string& document, bool takesSymbols) {
    const ORVScopedPrintLimit repeats(ORVPrintLimit::kRepeats, kFuzzDrawLimit);
    const ORVRef<ORVPrintInputMemoryStream> input(new ORVPrintInputMemoryStream(document));
    const std::unique_ptr<ORVPrintInterpreter> interpreter(fctCreateORVPrintSVG2Interpreter(input.get()));
    CheckingGenerator generator(nullptr, takesSymbols);
    PrintAllPages(*interpreter, generator);
    RequireNoFault(generator);
}

std::string PrintStandardPage(const std::string& document, double dotsPerInch) {
    constexpr std::uint64_t kMostPixels = 1 << 18, kMostPaint = 1 << 24;
    const ORVScopedPrintLimit repeats(ORVPrintLimit::kRepeats, kFuzzDrawLimit);
    const ORVRef<ORVPrintInputMemoryStream> input(new ORVPrintInputMemoryStream(document));
    const std::unique_ptr<ORVPrintInterpreter> interpreter(fctCreateORVPrintSVG2Interpreter(input.get()));
    ORVRasterOptions options;
    options.dotsPerInch = dotsPerInch;
    options.pixelLimit = kMostPixels;
    options.paintLimit = kMostPaint;
    options.threads = 1;
    ORVFilterOptions images;
    images.dotsPerInch = dotsPerInch;
    images.pixelLimit = kMostPixels;
    images.paintLimit = kMostPaint;
    images.threads = 1;
    ORVMemoryOutput output;
    ORVPngGenerator generator(output, options);
    ORVFilterImages filters(generator, images);
    CheckingGenerator checking(&filters);
    ORVTileImages tiles(checking, images);
    ORVPrintParameters first;
    first.SetPages({1});
    const int result = interpreter->Print(&tiles, first);
    RequireNoFault(checking);
    return result == 1 ? output.GetBytes() : std::string();
}

std::string InDocument(std::string_view text) {
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '<' || c == '>' || c == '&' || c == '\'' || c == '"')
            result += "&#" + std::to_string(byte) + ";";
        else
            result += byte < ' ' && c != '\n' && c != '\t' ? ' ' : c;
    }
    return result;
}

std::string StandardDrawing(const std::string& content) {
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='100' "
           "height='100'>" +
           content + "</svg>";
}

std::string_view TakeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
    return line;
}
