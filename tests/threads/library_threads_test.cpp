// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "library/api/orvprint.h"
#include "tests/support/sample_images.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/test_texts.h"

namespace {

int Append(void* data, const void* bytes, size_t size) {
    static_cast<std::string*>(data)->append(static_cast<const char*>(bytes), size);
    return 1;
}

/// What a thread does repeatedly, with its own document and settings.
struct Task {
    std::string drawing;
    std::vector<const char*> opening, rendering;
};

/// The result of a task, followed by its error text and its bytes.
std::string Do(const Task& task) {
    const std::unique_ptr<orvprint_document, void (*)(orvprint_document*)> document(orvprint_new(),
                                                                                    orvprint_free);
    std::string bytes;
    int result =
        orvprint_open_bytes(document.get(), task.drawing.data(), task.drawing.size(), task.opening.data());
    if (result == ORVPRINT_OK)
        result = orvprint_render_writer(document.get(), Append, &bytes, task.rendering.data());
    return std::to_string(result) + orvprint_error_text(document.get()) + bytes;
}

TEST(LibraryThreadsTest, DocumentsOfManyThreadsHaveLimitsAndAccessOfTheirOwn) {
    const ScratchFolder folder;
    const ScopedEnvironment index("ORVPRINT_CACHE_DIR", folder.Path().c_str());
    const std::string image = folder.PathOf("i.png"), allowed = folder.Path().string();
    std::ofstream(image, std::ios::binary) << SamplePng(3, 3);
    const std::string drawing =
        "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='90' "
        "height='45'>" +
        Repeat("<rect x='5' y='5' width='20' height='20' fill='red'/>", 20) + "<image xlink:href='" + image +
        "' width='9' height='9'/><text x='9' y='30' fill='red'>Text</text></svg>";
    const std::string sized =
        "<svg xmlns='http://www.w3.org/2000/svg' width='90' height='45'><switch>"
        "<rect systemLanguage='de' width='9' height='9'/><circle r='9'/></switch></svg>";
    const std::vector<Task> tasks{
        {drawing, {nullptr}, {"format", "svg", nullptr}},
        {drawing, {"allow-dir", allowed.c_str(), nullptr}, {"format", "svg", nullptr}},
        {drawing, {"limit", "primitives=5", nullptr}, {"format", "pdf", nullptr}},
        {drawing, {"limit", "page-pixels=99", nullptr}, {"format", "png", nullptr}},
        {drawing, {"parser", "dom", nullptr}, {"format", "png", "threads", "2", nullptr}},
        {sized, {"interpreter", "svg2", "language", "de", nullptr}, {"format", "svg", nullptr}},
        {sized, {"interpreter", "svg2", "language", "fr", nullptr}, {"format", "svg", nullptr}},
        {drawing, {nullptr}, {"format", "pdf", "paper", "A4", nullptr}},
    };
    std::vector<std::string> first(tasks.size());
    std::atomic<std::size_t> arrived = 0, different = 0;
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < tasks.size(); ++i)
        threads.emplace_back([&, i] {
            ++arrived;
            while (arrived < tasks.size()) std::this_thread::yield();
            first[i] = Do(tasks[i]);
            for (int round = 0; round < 20; ++round)
                if (Do(tasks[i]) != first[i]) ++different;
        });
    for (std::thread& thread : threads) thread.join();

    EXPECT_EQ(different, 0U);
    for (std::size_t i = 0; i < tasks.size(); ++i) EXPECT_EQ(Do(tasks[i]), first[i]) << i;
    // The settings affect the results.
    EXPECT_NE(first[0], first[1]);
    EXPECT_TRUE(first[2].starts_with("9input: has more than 5 primitives")) << first[2];
    EXPECT_TRUE(first[3].starts_with("9")) << first[3];
    EXPECT_NE(first[5], first[6]);
}

}  // namespace
