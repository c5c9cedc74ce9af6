// SPDX-License-Identifier: Apache-2.0

// Interprets a whole document with either parser, as a drawing or as a fragment, and draws the model onto a
// checking generator. If every element has a fill, both parsers must give the same model; so the document is
// written again with fills and compared.

#include <nlohmann/json.hpp>
#include <string>

#include "fuzz/support/FuzzBytes.h"
#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/documents.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/print/ORVPrintModelBoundingBoxComputer.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/xml/ORVLightXml.h"
#include "tests/support/CheckingGenerator.h"
#include "tests/support/built_model.h"
#include "tests/support/model_json.h"

namespace {

// Larger models are only drawn; smaller ones are compared as JSON.
constexpr std::size_t kMostCompared = 1'000;

void CheckModel(const BuiltModel& built, bool takesSymbols) {
    for (const ORVPrtImageElt* page : *built.GetModel().GetImages()) {
        double xMin = 1.0, xMax = 1.0, yMin = 1.0, yMax = 1.0;
        ORVPrintModelBoundingBoxComputer(kMostCompared).Compute(*page, xMin, xMax, yMin, yMax);
        Require(!(xMin > xMax) && !(yMin > yMax));
    }
    CheckingGenerator generator(nullptr, takesSymbols);
    ORVPrintParameters parameters;
    parameters.SetDrawLimit(kFuzzDrawLimit);
    ORVPrintModelRender(built.GetModel(), &generator, parameters).Draw();
    RequireNoFault(generator);
}

void RequireOneModel(const BuiltModel& a, const BuiltModel& b) {
    Require(a.GetResult() == b.GetResult() && a.GetPageCount() == b.GetPageCount());
    const std::size_t count = CountVisits(a.GetModel(), kMostCompared);
    Require(CountVisits(b.GetModel(), kMostCompared) == count);
    if (count == kMostCompared) return;
    Require(DifferencesOf(ModelToJson(a.GetModel(), 1), ModelToJson(b.GetModel(), 1)).empty());
}

const FuzzTarget kTarget("document", [](std::string_view bytes) {
    FuzzBytes choices(bytes);
    const bool isFragment = choices.Flag(), takesSymbols = choices.Flag();
    const std::string_view document = choices.GetRest();

    const BuiltModel light(document, {Backend::kLight, isFragment});
    const BuiltModel dom(document, {Backend::kDom, isFragment});
    CheckModel(light, takesSymbols);
    CheckModel(dom, !takesSymbols);

    ORVLightXmlElement root;
    if (ORVLightXmlParser().Parse({document.data(), document.size()}, root) != 1) return;
    const bool hasOneEncoding = document.find("encoding") == document.npos && dom.GetResult() == 1;
    if (hasOneEncoding && StatesFills(*root.GetNode())) RequireOneModel(dom, light);

    const std::string again = WriteWithFills(*root.GetNode());
    RequireOneModel(BuiltModel(again, {Backend::kDom, isFragment}),
                    BuiltModel(again, {Backend::kLight, isFragment}));
});

}  // namespace
