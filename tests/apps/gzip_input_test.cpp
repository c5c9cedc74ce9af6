// SPDX-License-Identifier: Apache-2.0

// Compressed inputs: what is decompressed, and what is refused with which message, by the routine and by
// every command.

#include "platform/system/gzip.h"

#include <zlib.h>

#include <algorithm>
#include <cstdint>

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "tests/apps/tool_run.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

std::string Gzip(std::string_view text) {
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, 9, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string packed(deflateBound(&stream, text.size()) + 32, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

/// Returns text that compresses badly, so that the compressed form is long.
std::string MixedText(std::size_t size) {
    std::string text;
    unsigned int state = 1;
    while (text.size() < size) text += std::to_string(state = state * 1664525U + 1013904223U);
    text.resize(size);
    return text;
}

struct Unpacked {
    UnpackResult result;
    std::string bytes, error;
    std::size_t room = 0;  // allocated for the bytes
};
Unpacked Unpack(const std::string& packed, const UnpackLimits& limits = {}) {
    Unpacked unpacked;
    GrowingBytes bytes;
    unpacked.result = UnpackGzip(packed, limits, bytes, unpacked.error);
    unpacked.bytes = bytes.GetView();
    unpacked.room = bytes.GetRoom();
    return unpacked;
}

/// Replaces the last four bytes of gzip data, the size that it claims to have decompressed.
std::string Claiming(std::string packed, std::uint32_t size) {
    for (std::size_t i = 0; i < 4; ++i)
        packed[packed.size() - 4 + i] = static_cast<char>(size >> (8 * i) & 0xFFU);
    return packed;
}

TEST(UnpackGzipTest, GivesBackWhatWasPacked) {
    for (const std::size_t size : {0U, 1U, 2U, 65535U, 65536U, 1U << 20U, (1U << 20U) + 1U, 5'000'000U}) {
        const std::string text = MixedText(size);
        const Unpacked unpacked = Unpack(Gzip(text));
        EXPECT_EQ(unpacked.result, UnpackResult::kUnpacked) << unpacked.error;
        EXPECT_TRUE(unpacked.bytes == text) << size;
        EXPECT_THAT(unpacked.error, IsEmpty());
        EXPECT_EQ(unpacked.room, size) << "no room is kept that nothing needs";
    }
}

TEST(UnpackGzipTest, TakesManyMembersAndZerosBehindThem) {
    const std::string packed = Gzip("one,") + Gzip("") + Gzip("two,") + Gzip(std::string(100'000, 'x'));
    EXPECT_EQ(Unpack(packed).bytes, "one,two," + std::string(100'000, 'x'));
    EXPECT_EQ(Unpack(packed + std::string(512, '\0')).bytes, "one,two," + std::string(100'000, 'x'));
}

TEST(UnpackGzipTest, WhateverTheLastMemberClaimsToHold) {
    // A wrong size in the trailer is an error, but costs no memory.
    for (const std::size_t size : {10U, 5'000'000U}) {
        const std::string packed = Gzip(MixedText(size));
        for (const std::uint32_t claim : {0U, 0x7f7f7f7fU, 1U << 30U, 0xffffffffU}) {
            const Unpacked unpacked = Unpack(Claiming(packed, claim));
            EXPECT_EQ(unpacked.result, UnpackResult::kDamaged);
            EXPECT_LE(unpacked.room, std::max<std::size_t>(2 * size, 1U << 20U));
        }
    }
}

TEST(UnpackGzipTest, CutOffAnywhereIsDamage) {
    const std::string packed = Gzip(MixedText(300));
    for (std::size_t size = 2; size < packed.size(); ++size) {
        const Unpacked unpacked = Unpack(packed.substr(0, size));
        ASSERT_EQ(unpacked.result, UnpackResult::kDamaged) << size;
        ASSERT_EQ(unpacked.error, "is cut off: its gzip data ends too early") << size;
    }
    EXPECT_EQ(Unpack(packed + packed.substr(0, 20)).result, UnpackResult::kDamaged);
}

TEST(UnpackGzipTest, AlteredDataNeverPassesForAnotherText) {
    const std::string text = MixedText(300), packed = Gzip(text);
    std::size_t damaged = 0;
    for (std::size_t at = 2; at < packed.size(); ++at) {
        std::string altered = packed;
        altered[at] = static_cast<char>(altered[at] ^ 0x10);
        const Unpacked unpacked = Unpack(altered);
        // Some bits have no effect: the time in the header, the padding before the trailer.
        if (unpacked.result == UnpackResult::kDamaged)
            ++damaged;
        else
            ASSERT_EQ(unpacked.bytes, text) << at;
    }
    EXPECT_GT(damaged, packed.size() - 15);
    EXPECT_THAT(Unpack(packed + "<svg/>").error, HasSubstr("something else follows"));
    EXPECT_EQ(Unpack("\x1f\x8b\x01 no such method").result, UnpackResult::kDamaged);
}

TEST(UnpackGzipTest, StopsAtTheSize) {
    UnpackLimits limits;
    limits.size = 100'000;
    EXPECT_EQ(Unpack(Gzip(MixedText(100'000)), limits).result, UnpackResult::kUnpacked);
    const Unpacked over = Unpack(Gzip(MixedText(100'001)), limits);
    EXPECT_EQ(over.result, UnpackResult::kOverLimit);
    EXPECT_THAT(over.error, HasSubstr("more than 100000 bytes"));
    EXPECT_EQ(Unpack(Gzip(MixedText(60'000)) + Gzip(MixedText(60'000)), limits).result,
              UnpackResult::kOverLimit);
}

TEST(UnpackGzipTest, StopsBombsBeforeTheyHaveGrown) {
    const std::string bomb = Gzip(std::string(100'000'000, ' '));
    const Unpacked stopped = Unpack(bomb);
    EXPECT_EQ(stopped.result, UnpackResult::kOverLimit);
    EXPECT_THAT(stopped.error, HasSubstr("250 times its size"));
    EXPECT_LT(stopped.room, std::size_t{40} << 20U);
    // Small documents may be as repetitive as they like.
    EXPECT_EQ(Unpack(Gzip(std::string(16'000'000, ' '))).result, UnpackResult::kUnpacked);
}

TEST(UnpackGzipTest, StopsAtTheGrowth) {
    UnpackLimits limits;
    limits.freeSize = 0;
    const std::string packed = Gzip(std::string(200'000, ' '));
    // The largest size that the ratio allows.
    limits.ratio = 200'000 / packed.size();
    const std::size_t size = (packed.size() + 1) * limits.ratio - 1;
    const std::string exact = Gzip(std::string(size, ' '));
    ASSERT_EQ(exact.size(), packed.size());
    EXPECT_EQ(Unpack(exact, limits).result, UnpackResult::kUnpacked);
    --limits.ratio;
    EXPECT_EQ(Unpack(exact, limits).result, UnpackResult::kOverLimit);
}

class PackedInputTest : public ToolTest {
protected:
    PackedInputTest() {
        const std::string drawing =
            SmallDrawing("<text y='20' fill='black' font-family='Liberation Sans'>packed</text>");
        WriteFile("plain.svg", drawing);
        WriteFile("a.svgz", Gzip(drawing));
        WriteFile("named-plain.svg", Gzip(drawing));  // the content decides, not the name
        WriteFile("not-packed.svgz", drawing);
        WriteFile("r.qvxml.gz", Gzip("<r>" + drawing + drawing + "</r>"));
        WriteFile("cut.svgz", Gzip(drawing).substr(0, 60));
        WriteFile("bomb.svgz", Gzip(SmallDrawing(std::string(60'000'000, ' '))));
        WriteFile("empty.svgz", Gzip(""));
    }
};

TEST_F(PackedInputTest, PrintsAsThePlainOneDoes) {
    ASSERT_EQ(Run({"plain.svg", "-f", "png", "-o", "plain.png"}).exitCode, 0);
    for (const char* name : {"a.svgz", "named-plain.svg", "not-packed.svgz"}) {
        for (const char* parser : {"light", "dom"}) {
            const ToolRun run = Run({name, "-o", "out.png", "--parser", parser});
            EXPECT_EQ(run.exitCode, 0) << run.errors;
            EXPECT_EQ(ReadFile("out.png"), ReadFile("plain.png")) << name;
        }
    }
    EXPECT_EQ(Run({"-", "-f", "png", "-o", "-"}, ReadFile("a.svgz")).output, ReadFile("plain.png"));
}

TEST_F(PackedInputTest, InfoCheckAndInspectReadThemToo) {
    const ToolRun check = Run({"check", "a.svgz"});
    EXPECT_EQ(check.exitCode, 0) << check.output << check.errors;
    WriteFile("odd.svgz", Gzip("\n\n<svg width='9' height='9'><circle r='9' fill='no-colour'/></svg>"));
    EXPECT_THAT(Run({"check", "odd.svgz"}).output, HasSubstr("odd.svgz:3:")) << "lines of what was packed";
    EXPECT_THAT(Run({"info", "a.svgz"}).output, HasSubstr("a.svgz: 1 page"));
    EXPECT_THAT(Run({"info", "-"}, ReadFile("a.svgz")).output, HasSubstr("1 page"));
    EXPECT_THAT(Run({"info", "r.qvxml.gz"}).output, HasSubstr("2 pages"));
    const std::string dump = Run({"inspect", "plain.svg"}).output;
    ASSERT_THAT(dump, HasSubstr("packed"));
    EXPECT_EQ(Run({"inspect", "a.svgz"}).output, dump);
    EXPECT_EQ(Run({"inspect", "-"}, ReadFile("a.svgz")).output, dump);
    EXPECT_EQ(Run({"inspect", "r.qvxml.gz", "--fragment", "2"}).exitCode, 0);
}

TEST_F(PackedInputTest, InspectionReadsPipesThatCannotBeReadTwice) {
    const ToolRun run = RunProgram({"bash", "-c",
                                    std::string("'") + ORV_TOOL_PATH + "' inspect <(cat a.svgz); '" +
                                        ORV_TOOL_PATH + "' inspect <(cat plain.svg)"});
    const std::string dump = Run({"inspect", "plain.svg"}).output;
    EXPECT_EQ(run.output, dump + dump) << run.errors;
}

TEST_F(PackedInputTest, PicturesBesideThePackedFileAreFound) {
    std::filesystem::create_directories(Folder() / "inner");
    ASSERT_EQ(Run({"plain.svg", "-o", "inner/p.png"}).exitCode, 0);
    const std::string drawing = SmallDrawing("<image xlink:href='p.png' width='9' height='9'/>");
    WriteFile("inner/plain.svg", drawing);
    WriteFile("inner/packed.svgz", Gzip(drawing));
    const std::string dump = Run({"inspect", "inner/plain.svg"}).output;
    EXPECT_THAT(dump, HasSubstr("pixelImage\":{\"width\":90"));
    EXPECT_EQ(Run({"inspect", "inner/packed.svgz"}).output, dump);
    ASSERT_EQ(Run({"inner/packed.svgz", "-o", "i.pdf"}).exitCode, 0);
    EXPECT_THAT(RunProgram({"pdfimages", "-list", "i.pdf"}).output, HasSubstr("image"));
}

TEST_F(PackedInputTest, DamagedOnesAreUnreadable) {
    for (const char* command : {"info", "inspect", "check"}) {
        const ToolRun run = Run({command, "cut.svgz"});
        EXPECT_EQ(run.exitCode, 3);
        EXPECT_EQ(run.errors, "orvprint: cut.svgz: is cut off: its gzip data ends too early\n");
    }
    EXPECT_EQ(Run({"cut.svgz", "-o", "a.pdf"}).exitCode, 3);
    EXPECT_EQ(Run({"-", "-o", "a.pdf"}, ReadFile("cut.svgz")).errors,
              "orvprint: standard input: is cut off: its gzip data ends too early\n");
    EXPECT_EQ(Run({"empty.svgz", "-o", "a.pdf"}).errors, "orvprint: empty.svgz: is empty\n");
    EXPECT_FALSE(Exists("a.pdf"));
}

TEST_F(PackedInputTest, BombsReachALimit) {
    for (const char* command : {"info", "inspect"}) {
        const ToolRun run = Run({command, "bomb.svgz"});
        EXPECT_EQ(run.exitCode, 9);
        EXPECT_THAT(run.errors, StartsWith("orvprint: bomb.svgz: unpacks to more than 250 times"));
    }
}

}  // namespace
