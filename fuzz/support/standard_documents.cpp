// SPDX-License-Identifier: Apache-2.0
#include "fuzz/support/standard_documents.h"

#include <memory>

#include "fuzz/support/documents.h"
#include "interpreters/svg2/interpreter/factories.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInterpreter.h"
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
