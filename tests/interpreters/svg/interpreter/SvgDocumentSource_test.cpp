// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/interpreter/SvgDocumentSource.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "platform/print/ORVPrintInput.h"
#include "platform/print/ORVPrintInputFileStream.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/system/ORVPrintLimits.h"
#include "platform/system/ORVRef.h"
#include "tests/platform/xml/tree_text.h"
#include "tests/support/built_model.h"
#include "tests/support/scoped_environment.h"

namespace {

/// A stream that records calls. It reports its end only after a read has failed.
class NotingStream final : public ORVPrintInputStream {
public:
    const ORVMetaClass& GetMetaClass() const override { return ORVPrintInputStream::MetaClass(); }

    explicit NotingStream(std::string content) : bytes(std::move(content)) {}

    int Open(const char* mode) override {
        calls.push_back(std::string("open ") + mode);
        return openStatus;
    }
    int IsOpen() const override {
        calls.push_back("is open");
        return open;
    }
    int IsReadable() const override {
        calls.push_back("is readable");
        return readable;
    }
    int HasMoreData() const override { return atEnd ? 0 : 1; }
    unsigned long Read(void* buffer, unsigned long count) override {
        Note("read");
        const std::size_t end = passes == 0 ? bytes.size() : std::min(bytes.size(), laterSize);
        if (position >= end && passes > 0 && laterSize < bytes.size()) {
            atEnd = true;
            return 0;
        }
        unsigned long available = std::min<unsigned long>(count, end - position);
        if (passes == failingPass) {
            available = std::min<unsigned long>(available, failsAt - std::min(position, failsAt));
            hasFailed = hasFailed || position + available == failsAt;
        }
        if (largestRead > 0) available = std::min(available, largestRead);
        if (available > 0) std::memcpy(buffer, bytes.data() + position, available);
        position += available;
        largestPosition = std::max(largestPosition, position);
        atEnd = !hasFailed && position == end && available < count;
        return available;
    }
    void Reset() override {
        Note("reset");
        atEnd = false;
    }
    int Seek(long offset) override {
        Note("seek " + std::to_string(offset));
        ++passes;
        position = static_cast<std::size_t>(offset);
        return 1;
    }
    void Close() override { Note("close"); }

    std::string bytes;
    int openStatus = 1, open = 1, readable = 1;
    unsigned long largestRead = 0;  // most bytes per read; 0 for no limit
    int failingPass = -1;           // index of the pass from the start that fails; -1 for none
    std::size_t failsAt = 0;        // bytes read by that pass before it fails
    std::size_t laterSize = static_cast<std::size_t>(-1);  // size of the stream after the first pass
    std::size_t position = 0, largestPosition = 0;
    int passes = 0;
    bool atEnd = false, hasFailed = false;
    mutable std::vector<std::string> calls;

private:
    ~NotingStream() override = default;
    // Consecutive reads are recorded once: their number is not part of the protocol.
    void Note(const std::string& call) const {
        if (call != "read" || calls.empty() || calls.back() != call) calls.push_back(call);
    }
};

std::string TextOf(const SvgDocumentSource& source) {
    return source.GetText() ? std::string(source.GetText(), static_cast<std::size_t>(source.GetTextSize()))
                            : "(none)";
}

TEST(SvgDocumentSourceTest, ReadsAStreamTwice) {
    const ORVRef<NotingStream> stream(new NotingStream("<svg/>"));
    const SvgDocumentSource source(*stream);
    EXPECT_EQ(TextOf(source), "<svg/>");
    EXPECT_EQ(source.GetTextSize(), 6);
    EXPECT_THAT(stream->calls, testing::ElementsAre("open rb", "is open", "is readable", "read", "reset",
                                                    "seek 0", "read", "reset", "seek 0", "close"));
}

TEST(SvgDocumentSourceTest, EmptyStreamLeavesNoText) {
    const ORVRef<NotingStream> stream(new NotingStream(""));
    const SvgDocumentSource source(*stream);
    EXPECT_EQ(source.GetText(), nullptr);
    EXPECT_THAT(stream->calls, testing::ElementsAre("open rb", "is open", "is readable", "read", "reset",
                                                    "seek 0", "reset", "seek 0", "close"));
}

TEST(SvgDocumentSourceTest, StreamWithoutDataIsNotRead) {
    const ORVRef<NotingStream> stream(new NotingStream("x"));
    stream->atEnd = true;
    const SvgDocumentSource source(*stream);
    EXPECT_EQ(source.GetText(), nullptr);
    EXPECT_EQ(source.GetTextSize(), -1);
}

TEST(SvgDocumentSourceTest, StreamThatCannotBeOpenedLeavesItEmpty) {
    const ORVRef<NotingStream> stream(new NotingStream("<svg/>"));
    stream->openStatus = -1;
    const SvgDocumentSource source(*stream);
    EXPECT_EQ(source.GetText(), nullptr);
    EXPECT_EQ(source.GetTextSize(), -1);
    EXPECT_THAT(stream->calls, testing::ElementsAre("open rb"));
}

TEST(SvgDocumentSourceTest, OnlyANegativeStatusOfOpeningIsAFailure) {
    const ORVRef<NotingStream> stream(new NotingStream("<svg/>"));
    stream->openStatus = 0;
    EXPECT_EQ(TextOf(SvgDocumentSource(*stream)), "<svg/>");
}

TEST(SvgDocumentSourceTest, StreamThatIsNotReadyLeavesItEmpty) {
    const ORVRef<NotingStream> closed(new NotingStream("<svg/>")), locked(new NotingStream("<svg/>"));
    closed->open = 0;
    locked->readable = 0;
    EXPECT_EQ(SvgDocumentSource(*closed).GetTextSize(), -1);
    EXPECT_EQ(SvgDocumentSource(*locked).GetTextSize(), -1);
    EXPECT_EQ(closed->position + locked->position, 0U);
}

TEST(SvgDocumentSourceTest, ReadsLargeStreamsWhole) {
    std::string bytes(1'000'003, 'x');
    bytes.replace(bytes.size() - 3, 3, "end");
    const ORVRef<NotingStream> stream(new NotingStream(bytes));
    EXPECT_TRUE(TextOf(SvgDocumentSource(*stream)) == bytes);
}

// With small reads as well: the error then follows successful ones.
TEST(SvgDocumentSourceTest, StreamThatFailsAnywhereLeavesNoText) {
    const std::string bytes = "<svg width='9' height='9'><rect width='4' height='4'/></svg>";
    for (const int pass : {0, 1})
        for (const unsigned long largestRead : {0UL, 7UL})
            for (std::size_t at = 0; at < bytes.size(); ++at) {
                const ORVRef<NotingStream> stream(new NotingStream(bytes));
                stream->failingPass = pass;
                stream->failsAt = at;
                stream->largestRead = largestRead;
                const SvgDocumentSource source(*stream);
                EXPECT_EQ(TextOf(source), "(none)") << "pass " << pass << ", byte " << at;
                EXPECT_EQ(source.GetTextSize(), -1);
                EXPECT_EQ(stream->calls.back(), "close");
            }
}

TEST(SvgDocumentSourceTest, StreamThatBecomesShorterMeanwhileLeavesNoText) {
    const std::string bytes = "<svg width='9' height='9'/>";
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        const ORVRef<NotingStream> stream(new NotingStream(bytes));
        stream->laterSize = size;
        const SvgDocumentSource source(*stream);
        EXPECT_EQ(TextOf(source), "(none)") << size;
        EXPECT_EQ(source.GetTextSize(), -1);
    }
}

TEST(SvgDocumentSourceTest, StreamThatGivesLittleAtATimeIsReadWhole) {
    const ORVRef<NotingStream> stream(new NotingStream("<svg width='9' height='9'/>"));
    stream->largestRead = 3;
    EXPECT_EQ(TextOf(SvgDocumentSource(*stream)), "<svg width='9' height='9'/>");
}

// A folder can be opened but not read; reading the start of a process's memory is an I/O error.
TEST(SvgDocumentSourceTest, FilesThatCannotBeReadLeaveNoText) {
    for (const char* path : {"/", "/proc/self/mem", "/no-such-file"}) {
        const ORVRef<ORVPrintInputFileStream> stream(new ORVPrintInputFileStream(path));
        const SvgDocumentSource source(*stream);
        EXPECT_EQ(TextOf(source), "(none)") << path;
        EXPECT_EQ(source.GetTextSize(), -1) << path;
    }
}

TEST(SvgDocumentSourceTest, ReadsStreamsOfExactlyOneBlock) {
    for (const std::size_t size : {65535U, 65536U, 65537U, 131072U}) {
        const ORVRef<NotingStream> stream(new NotingStream(std::string(size, 'x')));
        EXPECT_EQ(SvgDocumentSource(*stream).GetTextSize(), static_cast<std::int64_t>(size));
    }
}

// Counting stops at the block that exceeds the limit, and nothing is kept as a document.
TEST(SvgDocumentSourceTest, StreamsLongerThanTheLimitLeaveNoText) {
    constexpr std::size_t kLimit = 100'000, kBlock = 65536;
    const std::uint64_t before = ORVPrintLimits::Get(ORVPrintLimit::kInputBytes);
    ORVPrintLimits::Set(ORVPrintLimit::kInputBytes, kLimit);
    for (const auto& [size, expected] : {std::pair{kLimit, static_cast<std::int64_t>(kLimit)},
                                         {kLimit + 1, -1},
                                         {kLimit + kBlock, -1},
                                         {kLimit + kBlock + 1, -1},
                                         {kLimit + 2 * kBlock, -1},
                                         {100 * kLimit, -1}}) {
        const ORVRef<NotingStream> stream(new NotingStream(std::string(size, 'x')));
        const SvgDocumentSource source(*stream);
        EXPECT_EQ(source.GetTextSize(), expected) << size;
        EXPECT_EQ(source.GetText() != nullptr, expected > 0) << size;
        EXPECT_LE(stream->largestPosition, kLimit + kBlock) << "it is not read to its end";
    }
    ORVPrintLimits::Set(ORVPrintLimit::kInputBytes, before);
}

TEST(SvgDocumentSourceTest, ZeroBytesAreText) {
    const std::string bytes("<a>\0</a>", 8);
    const ORVRef<NotingStream> stream(new NotingStream(bytes));
    EXPECT_EQ(TextOf(SvgDocumentSource(*stream)), bytes);
}

TEST(SvgDocumentSourceTest, EnvironmentChoosesTheBackEndOfAStream) {
    const ORVRef<NotingStream> stream(new NotingStream("<svg/>"));
    for (const char* value : {"", "0", "no", "1"}) {
        const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", value);
        EXPECT_EQ(SvgDocumentSource(*stream).GetUseDOM(), 0) << value;
    }
    const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", nullptr);
    EXPECT_EQ(SvgDocumentSource(*stream).GetUseDOM(), 1);
}

TEST(SvgDocumentSourceTest, ElementChoosesItsOwnBackEnd) {
    for (const char* value : {static_cast<const char*>(nullptr), ""}) {
        const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", value);
        const LightResult light = ParseLight("<svg/>");
        const DomResult dom = ParseDom("<svg/>");
        const SvgDocumentSource lightSource(&light.root), domSource(dom.root);
        EXPECT_EQ(lightSource.GetUseDOM(), 0);
        EXPECT_EQ(lightSource.GetLightElement(), &light.root);
        EXPECT_EQ(domSource.GetUseDOM(), 1);
        EXPECT_EQ(domSource.GetDOMElement().GetNode(), dom.root.GetNode());
        EXPECT_EQ(lightSource.GetText(), nullptr);
        EXPECT_EQ(domSource.GetTextSize(), -1);
    }
}

TEST(SvgDocumentSourceTest, StartsAsAPrimaryDocumentWithoutPath) {
    const ORVRef<NotingStream> stream(new NotingStream("<svg/>"));
    SvgDocumentSource source(*stream);
    EXPECT_EQ(source.GetPrimaryDocument(), 1);
    EXPECT_EQ(source.GetEmbeddedFragment(), 0);
    EXPECT_TRUE(source.GetCurrentPath().IsEmpty());
    source.SetEmbeddedFragment(1);
    source.SetCurrentPath("/a/b.svg");
    EXPECT_EQ(source.GetEmbeddedFragment(), 1);
    EXPECT_EQ(source.GetCurrentPath().GetView(), "/a/b.svg");
}

}  // namespace
