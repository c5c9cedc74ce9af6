// SPDX-License-Identifier: Apache-2.0

// Streams as interpreters read them: they report the end only after a read has failed.

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "platform/print/ORVPrintInputFileStream.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/system/ORVRef.h"
#include "tests/support/scratch_folder.h"

namespace {

/// Reads a stream as a careful interpreter does: counts the bytes, rewinds, and reads them at once.
std::string ReadTwice(ORVPrintInputStream& stream) {
    EXPECT_GE(stream.Open("rb"), 0);
    EXPECT_NE(stream.IsOpen(), 0);
    EXPECT_NE(stream.IsReadable(), 0);
    long count = -1;
    for (char byte = 0; stream.HasMoreData() == 1; ++count) stream.Read(&byte, 1);
    stream.Reset();
    EXPECT_GE(stream.Seek(0), 0);
    std::string bytes(static_cast<std::size_t>(count), '\0');
    EXPECT_EQ(stream.Read(bytes.data(), bytes.size()), bytes.size());
    stream.Close();
    EXPECT_EQ(stream.IsOpen(), 0);
    return bytes;
}

TEST(MemoryStreamTest, GivesItsBytes) {
    const ORVRef<ORVPrintInputMemoryStream> stream(new ORVPrintInputMemoryStream("some bytes"));
    EXPECT_EQ(ReadTwice(*stream), "some bytes");
    const ORVRef<ORVPrintInputMemoryStream> empty(new ORVPrintInputMemoryStream(""));
    EXPECT_EQ(ReadTwice(*empty), "");
}

TEST(MemoryStreamTest, RefusesPlacesOutside) {
    const ORVRef<ORVPrintInputMemoryStream> stream(new ORVPrintInputMemoryStream("abc"));
    stream->Open("rb");
    EXPECT_LT(stream->Seek(4), 0);
    EXPECT_LT(stream->Seek(-1), 0);
    EXPECT_GE(stream->Seek(3), 0);
}

TEST(FileStreamTest, GivesTheFilesBytesAndItsPath) {
    const ScratchFolder folder;
    const std::string path = folder.PathOf("input.txt");
    std::ofstream(path) << "in a file";
    const ORVRef<ORVPrintInputFileStream> stream(new ORVPrintInputFileStream(path));
    EXPECT_EQ(stream->GetPath().GetView(), path);
    EXPECT_EQ(ReadTwice(*stream), "in a file");
}

TEST(FileStreamTest, MissingFileDoesNotOpen) {
    const ORVRef<ORVPrintInputFileStream> stream(new ORVPrintInputFileStream("/no/such/file"));
    EXPECT_LT(stream->Open("rb"), 0);
    EXPECT_EQ(stream->IsOpen(), 0);
    EXPECT_EQ(stream->IsReadable(), 0);
}

TEST(InputTest, ClassesSayWhatTheyAre) {
    const ORVRef<ORVPrintInput> stream(new ORVPrintInputMemoryStream(""));
    EXPECT_EQ(stream->IsAKindOf("ORVPrintInputStream"), 1);
    EXPECT_EQ(stream->IsAKindOf("ORVPrintInputFileStream"), 0);
    EXPECT_EQ(stream->IsAKindOf("ORVPrintInputXMLElement"), 0);
}

}  // namespace
