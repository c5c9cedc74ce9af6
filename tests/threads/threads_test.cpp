// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "generators/common/ORVOutput.h"
#include "generators/formats.h"
#include "interpreters/svg/interpreter/ORVPrintSVGInterpreter.h"
#include "interpreters/svg/interpreter/SvgDocumentSource.h"
#include "interpreters/svg/interpreter/model_build.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintInputXMLElement.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/xml/ORVDOMXml.h"
#include "platform/xml/ORVLightXml.h"
#include "tests/support/built_model.h"
#include "tests/support/model_json.h"
#include "tests/support/model_sketch.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/test_texts.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kThreads = 16;
constexpr std::size_t kPrintedOneOf = 50;
constexpr std::array kFormats{"pdf", "svg", "png"};

struct Document {
    std::string path, text;
};

std::vector<Document> ReadDocuments() {
    std::vector<Document> documents;
    for (const char* folder : {ORV_DOCUMENTS_PATH, ORV_EXAMPLES_PATH})
        for (const auto& entry : fs::directory_iterator(folder)) {
            if (entry.path().extension() == ".svg")
                documents.push_back({entry.path().string(), ReadAll(entry.path())});
        }
    std::sort(documents.begin(), documents.end(),
              [](const Document& a, const Document& b) { return a.path < b.path; });
    return documents;
}

/// A document parsed by the calling thread. The kind of element chooses the back-end.
class ParsedDocument {
public:
    ParsedDocument(const Document& document, Backend backend) : path_(document.path) {
        if (backend == Backend::kDom) {
            BuildParser(ORVUnicodeString(document.text), "SVG", dom_);
        } else {
            ORVLightXmlParser().Parse({document.text.data(), document.text.size()}, light_);
        }
    }

    /// The result of the build and all pages as text; with `whole`, followed by every field of the model.
    std::string GetModelText(bool whole) const {
        SvgDocumentSource source = dom_ ? SvgDocumentSource(dom_) : SvgDocumentSource(&light_);
        source.SetCurrentPath(ORVUnicodeString(path_));
        const ORVRef<ORVPrtModel> model(new ORVPrtModel);
        const int result = BuildModel(source, model.get());
        std::string text = std::to_string(result);
        for (std::size_t page = 0; page < model->GetImages()->size(); ++page)
            text.append("\n").append(PaintedSketchOfChildren(*model->GetImages()->at(page)));
        if (whole) text.append("\n").append(ModelToJson(*model, result).dump());
        return text;
    }

    /// The status of printing, followed by the bytes of all pages.
    std::string Print(const char* format) const {
        const ORVRef<ORVPrintInputXMLElement> input(dom_ ? new ORVPrintInputXMLElement(dom_)
                                                         : new ORVPrintInputXMLElement(&light_));
        ORVPrintSVGInterpreter interpreter(input.get());
        interpreter.SetCurrentPath(ORVUnicodeString(path_));
        interpreter.SetAllPages(1);
        ORVMemoryOutput output;
        ORVFormatOptions options;
        options.dotsPerInch = 45.0;
        options.threads = 2;
        const auto generator = ORVFindOutputFormat(format)->create(output, options);
        const int result = interpreter.Print(&generator->Get(), ORVPrintParameters());
        return std::to_string(result) + output.GetBytes();
    }

private:
    std::string path_;
    ORVIDOMElement_var dom_;
    ORVLightXmlElement light_;
};

/// A thousand for each thread, or the value of ORV_THREAD_DOCUMENTS: with some tools, a document takes a
/// tenth of a second.
std::size_t DocumentsAThread() {
    const char* number = std::getenv("ORV_THREAD_DOCUMENTS");
    return number ? std::max<std::size_t>(std::strtoul(number, nullptr, 10), 2 * kPrintedOneOf) : 1'000;
}

/// The expected results for a document.
struct Expected {
    std::string sketch, whole;
    std::array<std::string, kFormats.size()> prints;
};

Expected MakeExpected(const Document& document, Backend backend) {
    const ParsedDocument parsed(document, backend);
    Expected expected{parsed.GetModelText(false), parsed.GetModelText(true), {}};
    for (std::size_t format = 0; format < kFormats.size(); ++format)
        expected.prints[format] = parsed.Print(kFormats[format]);
    return expected;
}

TEST(ThreadsTest, InterpretersOfManyThreadsAreIndependent) {
    const std::size_t documentsAThread = DocumentsAThread();
    const std::vector<Document> documents = ReadDocuments();
    ASSERT_GE(documents.size(), 10U);
    // The index of faces does not exist yet, so it is created on first use as well.
    const ScratchFolder cache;
    const ScopedEnvironment index("ORVPRINT_CACHE_DIR", cache.Path().c_str());

    // The threads start before any result is known, so that things created on first use are created by all of
    // them at once. Their first results are compared at the end.
    struct Made {
        std::size_t document;
        Backend backend;
        bool printed;
        Expected result;
    };
    std::vector<std::vector<Made>> firstRounds(kThreads);
    std::vector<Expected> expected;
    std::atomic<std::size_t> arrived = 0, mayGoOn = 0, compared = 0, printed = 0, different = 0;

    const auto work = [&](std::size_t thread) {
        ++arrived;
        while (arrived < kThreads) std::this_thread::yield();
        firstRounds[thread].push_back(
            {thread % documents.size(), kBackends[thread % 2], true,
             MakeExpected(documents[thread % documents.size()], kBackends[thread % 2])});

        mayGoOn.wait(0);
        for (std::size_t round = 1; round < documentsAThread; ++round) {
            const std::size_t document = (thread * 3 + round) % documents.size();
            const Backend backend = kBackends[(thread + round / documents.size()) % 2];
            const Expected& alone = expected[document * 2 + (backend == kBackends[1] ? 1 : 0)];
            const ParsedDocument parsed(documents[document], backend);
            const bool print = (round + thread) % kPrintedOneOf == 0;
            if (parsed.GetModelText(print) != (print ? alone.whole : alone.sketch)) ++different;
            ++compared;
            if (!print) continue;
            for (std::size_t format = 0; format < kFormats.size(); ++format)
                if (parsed.Print(kFormats[format]) != alone.prints[format]) ++different;
            ++printed;
        }
    };

    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < kThreads; ++thread) threads.emplace_back(work, thread);

    // Meanwhile, the main thread determines the expected results.
    for (const Document& document : documents)
        for (const Backend backend : kBackends) expected.push_back(MakeExpected(document, backend));
    mayGoOn = 1;
    mayGoOn.notify_all();
    for (std::thread& thread : threads) thread.join();

    // The expected results were determined while other threads ran, so they are verified by one thread alone.
    for (std::size_t i = 0; i < documents.size(); ++i)
        for (std::size_t backend = 0; backend < kBackends.size(); ++backend) {
            const Expected alone = MakeExpected(documents[i], kBackends[backend]);
            const Expected& beside = expected[i * kBackends.size() + backend];
            EXPECT_TRUE(alone.sketch == beside.sketch && alone.whole == beside.whole &&
                        alone.prints == beside.prints)
                << documents[i].path;
        }

    for (const auto& round : firstRounds)
        for (const Made& made : round) {
            const Expected& alone = expected[made.document * 2 + (made.backend == kBackends[1] ? 1 : 0)];
            EXPECT_EQ(made.result.whole, alone.whole) << documents[made.document].path;
            EXPECT_TRUE(made.result.prints == alone.prints) << documents[made.document].path;
            ++compared;
        }
    EXPECT_EQ(compared, kThreads * documentsAThread);
    EXPECT_GE(printed, kThreads * documentsAThread / kPrintedOneOf - kThreads);
    EXPECT_EQ(different, 0U);
}

}  // namespace
