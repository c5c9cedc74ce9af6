// SPDX-License-Identifier: Apache-2.0

// Counts the primitives in the print model of a drawing: read_model DRAWING. Nothing is drawn.

#include <iostream>
#include <map>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/model/visit_primitive.h"
#include "platform/print/ORVPrintInputFileStream.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintModule.h"
#include "platform/system/ORVRef.h"

namespace {

// Counts the primitives of a page by class, and writes out its texts.
std::map<std::string, int> CountPrimitives(const ORVPrtImageElt& page) {
    std::map<std::string, int> counts;
    // A loop instead of recursion, because models may be deep. A shared primitive counts once.
    std::vector<const ORVPrtGraphicPrimitiveElt*> open{&page};
    std::set<const ORVPrtGraphicPrimitiveElt*> seen;
    while (!open.empty()) {
        const ORVPrtGraphicPrimitiveElt& primitive = *open.back();
        open.pop_back();
        if (!seen.insert(&primitive).second) continue;
        ++counts[primitive.IsA()];
        orvprint::VisitPrimitive(primitive, []<class Primitive>(const Primitive& one) {
            if constexpr (std::is_same_v<Primitive, ORVPrtTextElt>)
                std::cout << "text \"" << one.GetText().GetView() << "\"\n";
        });
        if (const ORVPrtChildList* children = primitive.GetChildList())
            open.insert(open.end(), children->begin(), children->end());
    }
    return counts;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: read_model DRAWING\n";
        return 2;
    }
    std::string error;
    const ORVRef<ORVPrintInputFileStream> input(new ORVPrintInputFileStream(arguments[1]));
    const auto interpreter = ORVPrintModule::CreateInterpreter("SVG", input.get(), error);
    ORVRef<const ORVPrtModel> model;
    if (!interpreter || interpreter->GetModel(model) != 1) {
        std::cerr << arguments[1] << ": " << (error.empty() ? "cannot be read" : error) << '\n';
        return 1;
    }
    for (const ORVPrtImageElt* page : *model->GetImages()) {
        double width = 0.0, height = 0.0;
        page->GetSize(width, height);
        std::cout << "page of " << width << " x " << height << '\n';
        for (const auto& [name, number] : CountPrimitives(*page)) std::cout << number << ' ' << name << '\n';
    }
    return 0;
}
