// SPDX-License-Identifier: Apache-2.0

// Builds models from documents of growing size. The time per element should stay constant.

#include <benchmark/benchmark.h>
#include <expat.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "interpreters/svg/interpreter/factories.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintPropertiesManager.h"
#include "platform/system/ORVRef.h"

namespace {

const char* const kRoot =
    "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='1000' "
    "height='1000'>";

std::string Shapes(long count) {
    std::string text = kRoot;
    for (long i = 0; i < count; ++i) {
        const std::string x = std::to_string(i % 997), y = std::to_string(i % 613);
        text += i % 2 ? "<rect fill='#3060a0' stroke='black' stroke-width='0.5' width='10' height='5' x='" +
                            x + "' y='" + y + "'/>"
                      : "<circle style='fill:none;stroke:red;stroke-width:2' r='4mm' cx='" + x + "' cy='" +
                            y + "'/>";
    }
    return text + "</svg>";
}

std::string Uses(long count) {
    std::string text = std::string(kRoot) + "<defs>";
    const long definitions = count / 10 + 1;
    for (long i = 0; i < definitions; ++i)
        text += "<g id='d" + std::to_string(i) + "'><rect width='5' height='5'/></g>";
    text += "</defs>";
    for (long i = 0; i < count; ++i)
        text += "<use fill='green' x='5' xlink:href='#d" + std::to_string(i * 7 % definitions) + "'/>";
    return text + "</svg>";
}

std::string LongPath(long count) {
    std::string text = std::string(kRoot) + "<path fill='none' stroke='black' d='M0 0";
    for (long i = 0; i < count; ++i) text += i % 2 ? "l1.25-3.5" : "c1 2 3 4 5,6";
    return text + "'/></svg>";
}

/// Paths of 2,000 points each, as in plots and maps.
std::string Paths(long count) {
    std::string text = kRoot;
    for (long i = 0; i < count; ++i) {
        text += "<path fill='none' stroke='#123456' d='M10,10";
        for (long k = 1; k < 2000; ++k)
            text += "L" + std::to_string((i * 31 + k * 7) % 1000) + ".25," +
                    std::to_string((i + k * 13) % 1000) + ".7";
        text += "'/>\n";
    }
    return text + "</svg>";
}

std::string Texts(long count) {
    std::string text = kRoot;
    for (long i = 0; i < count; ++i)
        text += "<text fill='black' font-family='Nobody, Liberation Sans, serif' x='5' y='7'>word</text>";
    return text + "</svg>";
}

template <std::string (*kMake)(long)>
void BuildModel(benchmark::State& state) {
    setenv("PRINT_WITHOUT_DOM_PARSER", "", 1);
    const std::string document = kMake(state.range(0));
    const ORVRef<ORVPrintInputMemoryStream> input(new ORVPrintInputMemoryStream(document));
    for (auto _ : state) {
        const std::unique_ptr<ORVPrintInterpreter> interpreter(fctCreateORVPrintSVGInterpreter(input.get()));
        unsigned int pages = 0;
        if (interpreter->GetPageCount(pages) != 1 || pages != 1)
            state.SkipWithError("the document was not built");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetBytesProcessed(state.iterations() * static_cast<long>(document.size()));
}
/// Baseline: an XML parser that only counts elements.
template <std::string (*kMake)(long)>
void CountElements(benchmark::State& state) {
    const std::string document = kMake(state.range(0));
    for (auto _ : state) {
        const XML_Parser parser = XML_ParserCreate(nullptr);
        long count = 0;
        XML_SetUserData(parser, &count);
        XML_SetElementHandler(
            parser, [](void* data, const char*, const char**) { ++*static_cast<long*>(data); },
            [](void*, const char*) {});
        if (XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1) != XML_STATUS_OK ||
            count == 0)
            state.SkipWithError("the document was not parsed");
        XML_ParserFree(parser);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long>(document.size()));
}
BENCHMARK(CountElements<Shapes>)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(CountElements<Paths>)->Arg(2000)->Unit(benchmark::kMillisecond);

BENCHMARK(BuildModel<Paths>)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(BuildModel<Shapes>)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BuildModel<Uses>)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BuildModel<LongPath>)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BuildModel<Texts>)->RangeMultiplier(10)->Range(200, 20000)->Unit(benchmark::kMillisecond);

void LowMemoryProbe(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(ORVPrintPropertiesManager::IsLowMemory(0.9));
}
BENCHMARK(LowMemoryProbe);

}  // namespace
