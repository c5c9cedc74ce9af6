// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintInputFileStream.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInputXMLElement.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/ORVRef.h"
#include "platform/xml/ORVDOMXml.h"
#include "platform/xml/ORVLightXml.h"
#include "platform/xml/ORVXmlFragments.h"
#include "tests/faults/documents.h"
#include "tests/faults/failing_allocator.h"
#include "tests/support/model_sketch.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/test_texts.h"

// Each allocation is refused once by itself, and once together with all that follow.

using Refuses = FailingAllocator::Refuses;
using Granted = FailingAllocator::Granted;

/// Description of the current trial, for failures and the terminate handler.
inline std::array<char, 256> trial{};

[[noreturn]] inline void TellAndAbort() {
    std::fprintf(stderr, "ended by an exception or std::terminate: %s\n", trial.data());
    std::abort();
}

inline bool TriesAll() { return std::getenv("ORV_FAULTS_ALL") != nullptr; }

/// Number of allocations to refuse, unless ORV_FAULTS_ALL is set.
struct Trials {
    std::uint64_t first = 100;  ///< each of the first ones
    std::uint64_t behind = 60;  ///< about this many of the others
};

/// Calls `attempt` repeatedly with each allocation refused in turn, until none is refused any more. The
/// attempt runs with refusals, `judge` checks the result without them, and no memory may be leaked.
/// @param attempt  does its setup within Granted; an exception that it throws is a failure
/// @param judge    called after each attempt
inline void WithEachRequestRefused(const std::string& name, const std::function<void()>& attempt,
                                   const std::function<void()>& judge, const Trials& plan = {}) {
    std::set_terminate(TellAndAbort);
    // Several times, so that everything created on first use exists.
    for (int i = 0; i < 3; ++i) {
        attempt();
        judge();
    }
    const std::int64_t before = FailingAllocator::GetLiveBlocks();

    std::uint64_t trials = 0, requests = 0;
    for (const Refuses refuses : {Refuses::kOne, Refuses::kAllFrom}) {
        std::uint64_t step = 1;
        for (std::uint64_t request = 1;; request += step) {
            std::snprintf(trial.data(), trial.size(), "%s, request %llu%s", name.c_str(),
                          static_cast<unsigned long long>(request),
                          refuses == Refuses::kOne ? "" : " and all that follow");
            bool isThrown = false;
            FailingAllocator::Begin(request, refuses);
            try {
                attempt();
            } catch (...) {
                isThrown = true;
            }
            FailingAllocator::End();
            const bool isRefused = FailingAllocator::GetRefused() > 0;
            requests = std::max(requests, FailingAllocator::GetRequests());
            const std::int64_t live = FailingAllocator::GetLiveBlocks();
            EXPECT_FALSE(isThrown) << trial.data();
            judge();
            EXPECT_EQ(FailingAllocator::GetLiveBlocks(), before)
                << trial.data() << " (" << live << " at once)";
            if (testing::Test::HasFailure()) {
                ADD_FAILURE() << trial.data();
                return;
            }
            ++trials;
            if (!isRefused) break;
            // Later requests are only sampled, to keep the suite fast.
            if (!TriesAll() && request >= plan.first)
                step = std::max<std::uint64_t>((requests - std::min(requests, plan.first)) / plan.behind, 1);
        }
    }
    std::printf("%s: %llu requests, %llu trials\n", name.c_str(), static_cast<unsigned long long>(requests),
                static_cast<unsigned long long>(trials));
}

enum class Source { kFile, kMemory, kDOMElement, kLightElement };

struct ReadRow {
    const char* name;
    const char* interpreter;
    Source source;
    bool withDOMParser;
};
inline constexpr std::array kReadRows{
    ReadRow{"FileByLightParser", "SVG", Source::kFile, false},
    ReadRow{"FileByDOMParser", "SVG", Source::kFile, true},
    ReadRow{"MemoryByLightParser", "SVG", Source::kMemory, false},
    ReadRow{"LightElement", "SVG", Source::kLightElement, false},
    ReadRow{"DOMElement", "SVG", Source::kDOMElement, true},
    ReadRow{"LightFragment", "QVXML", Source::kLightElement, false},
    ReadRow{"DOMFragment", "QVXML", Source::kDOMElement, true},
};

/// A document in the form a host supplies it.
class Input {
public:
    explicit Input(const ReadRow& row)
        : Input(row, row.interpreter[0] == 'Q' ? EmbeddingDocument() : DocumentOfEverything()) {}
    Input(const ReadRow& row, std::string text)
        : parser_("PRINT_WITHOUT_DOM_PARSER", row.withDOMParser ? nullptr : "1"), text_(std::move(text)) {
        switch (row.source) {
            case Source::kFile:
                path_ = folder_.PathOf("drawing-with-a-long-name.svg");
                std::ofstream(path_, std::ios::binary) << text_;
                input_ = ORVRef<ORVPrintInput>(new ORVPrintInputFileStream(path_));
                break;
            case Source::kMemory: input_ = ORVRef<ORVPrintInput>(new ORVPrintInputMemoryStream(text_)); break;
            case Source::kDOMElement:
                BuildParser(text_, "SVG", dom_);
                dom_ = ORVIDOMElement_var(dom_.GetTree(), FindSvgElements(dom_.GetNode()).front());
                input_ = ORVRef<ORVPrintInput>(new ORVPrintInputXMLElement(dom_));
                break;
            case Source::kLightElement:
                ORVLightXmlParser().Parse({text_.data(), text_.size()}, light_);
                light_ = ORVLightXmlElement(light_.GetTree(), FindSvgElements(light_.GetNode()).front());
                input_ = ORVRef<ORVPrintInput>(new ORVPrintInputXMLElement(&light_));
                break;
        }
    }
    ORVPrintInput* Get() const { return input_.get(); }

private:
    const ScopedEnvironment parser_;
    ScratchFolder folder_;
    std::string text_;
    std::string path_;
    ORVLightXmlElement light_;
    ORVIDOMElement_var dom_;
    ORVRef<ORVPrintInput> input_;
};

/// Records all pages as text, and whether anything was left out of the model.
class Sketcher final : public ORVPrintModelInspector {
public:
    void Inspect(const ORVPrtModel& model) override {
        const Granted granted;
        sketch_.clear();
        for (const ORVPrtImageElt* page : *model.GetImages())
            sketch_ += PaintedSketchOfChildren(*page) + "\n";
        isOutOfMemory_ = model.GetBudget().IsOutOfMemory();
    }
    const std::string& GetSketch() const { return sketch_; }
    bool IsOutOfMemory() const { return isOutOfMemory_; }

private:
    std::string sketch_;
    bool isOutOfMemory_ = false;
};

/// The model that an interpreter builds from its document.
inline Sketcher Sketch(ORVPrintInterpreter& interpreter) {
    Sketcher sketcher;
    ORVPrintParameters parameters;
    parameters.SetModelInspector(&sketcher);
    interpreter.Print(nullptr, parameters);
    return sketcher;
}

/// Excerpts of two texts around their first difference.
inline std::string DifferenceOf(const std::string& expected, const std::string& actual) {
    const auto at = static_cast<std::size_t>(
        std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end()).first -
        expected.begin());
    const std::size_t from = at > 60 ? at - 60 : 0;
    return "expected ..." + expected.substr(from, 160) + "...\nbut it is ..." +
           actual.substr(std::min(from, actual.size()), 160);
}

/// Names and contents of all files in a folder, including hidden ones.
inline std::map<std::string, std::string> FilesOf(const std::filesystem::path& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files[entry.path().filename()] = ReadAll(entry.path());
    return files;
}
