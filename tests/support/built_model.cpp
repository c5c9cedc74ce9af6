// SPDX-License-Identifier: Apache-2.0
#include "tests/support/built_model.h"

#include "interpreters/svg/interpreter/SvgDocumentSource.h"
#include "interpreters/svg/interpreter/model_build.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "tests/support/scoped_environment.h"

BuiltModel::BuiltModel(std::string_view document, const BuildOptions& options) : model_(new ORVPrtModel) {
    const ScopedEnvironment backend("PRINT_WITHOUT_DOM_PARSER",
                                    options.backend == Backend::kLight ? "" : nullptr);
    const ORVRef<ORVPrintInputMemoryStream> stream(new ORVPrintInputMemoryStream(std::string(document)));
    SvgDocumentSource source(*stream);
    source.SetEmbeddedFragment(options.embedded ? 1 : 0);
    source.SetCurrentPath(options.path);
    result_ = BuildModel(source, model_.get());
}

std::string Drawing(std::string_view content) { return DrawingWith("width='200' height='100'", content); }

std::string DrawingWith(std::string_view attributes, std::string_view content) {
    std::string document =
        "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' ";
    document.append("xmlns:tlv='urn:tlv' ").append(attributes).append(">").append(content).append("</svg>");
    return document;
}
