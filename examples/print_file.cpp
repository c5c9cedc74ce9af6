// SPDX-License-Identifier: Apache-2.0

// Prints a drawing to a file: print_file DRAWING OUTPUT. The extension of OUTPUT names the format.

#include <iostream>
#include <string>

#include "generators/common/ORVFileOutput.h"
#include "generators/formats.h"
#include "platform/print/ORVPrintInputFileStream.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintModule.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/ORVPrintLimits.h"
#include "platform/system/ORVRef.h"

namespace {

// Empty when it worked, else what went wrong.
std::string Print(const std::string& drawing, const std::string& file, const ORVOutputFormat& format) {
    std::string error;
    const ORVRef<ORVPrintInputFileStream> input(new ORVPrintInputFileStream(drawing));
    const auto interpreter = ORVPrintModule::CreateInterpreter("SVG", input.get(), error);
    if (!interpreter) return error;
    unsigned int pages = 0;
    if (interpreter->GetPageCount(pages) != 1 || pages == 0) return "has no page that can be read";

    ORVFileOutput output(file, format.onePageAPart && pages > 1);  // name-1.svg, name-2.svg ...
    const auto generator = format.create(output, ORVFormatOptions());
    if (!generator) return "out of memory";
    if (interpreter->Print(&generator->Get(), ORVPrintParameters()) != 1 || output.Commit() != 1) {
        if (!output.GetError().empty()) return output.GetError();
        return generator->GetError().empty() ? "cannot be printed" : generator->GetError();
    }
    return "";
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: print_file DRAWING OUTPUT\n";
        return 2;
    }
    const std::string drawing = arguments[1], file = arguments[2];
    const ORVOutputFormat* format = ORVFindOutputFormat(file.substr(file.rfind('.') + 1));
    if (!format) {
        std::cerr << file << ": unknown format\n";
        return 1;
    }

    ORVPrintLimits::UseUnchecked();  // the drawing is untrusted
    const std::string error = Print(drawing, file, *format);
    if (error.empty()) return 0;
    std::cerr << drawing << ": " << error << '\n';
    return 1;
}
