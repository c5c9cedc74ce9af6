// SPDX-License-Identifier: Apache-2.0

// Prints a document to SVG, which must be well formed, and interprets that SVG again.

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/documents.h"
#include "platform/xml/ORVLightXml.h"
#include "tests/support/CheckingGenerator.h"

namespace {

const FuzzTarget kTarget("svg_generator", [](std::string_view bytes) {
    const FormatRun run = PrintInFormat("svg", bytes);
    if (!run.succeeded || run.parts != 1) return;
    ORVLightXmlElement root;
    Require(ORVLightXmlParser().Parse({run.output.data(), run.output.size()}, root) == 1);
    CheckingGenerator generator;
    PrintDocument(run.output, false, generator);
    RequireNoFault(generator);
});

}  // namespace
