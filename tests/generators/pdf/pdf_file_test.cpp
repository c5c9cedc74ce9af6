// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_file.h"

#include <gtest/gtest.h>
#include <libdeflate.h>

#include <fstream>
#include <random>
#include <string>

#include "generators/common/ORVOutput.h"
#include "generators/pdf/pdf_syntax.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/shell_run.h"

namespace {

// The fields of the cross-reference table have as many bytes as the largest offset needs.
TEST(PdfFileTest, ObjectsAreFoundBehindPlacesOfAnyLength) {
    const ScratchFolder folder;
    const std::string path = folder.PathOf("file.pdf");
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{300}, std::size_t{70'000}, std::size_t{17} << 20U}) {
        ORVMemoryOutput output;
        PdfFile file(output);
        const unsigned int pages = file.Reserve(), page = file.Reserve(), content = file.Reserve(),
                           catalogue = file.Reserve(), info = file.Reserve();
        for (const char* name : {"first", "second"}) {
            const std::string bytes = name + std::string(size, ' ');
            file.WriteStream(*name == 'f' ? file.Reserve() : content, "", "% " + bytes,
                             PdfFile::Packing::kStored);
        }
        file.WriteObject(page, "<</Type/Page/MediaBox[0 0 9 9]/Parent " + PdfReference(pages) + "/Contents " +
                                   PdfReference(content) + ">>");
        file.WriteObject(pages, "<</Type/Pages/Count 1/Kids[" + PdfReference(page) + "]>>");
        file.WriteObject(catalogue, "<</Type/Catalog/Pages " + PdfReference(pages) + ">>");
        file.WriteObject(info, "<</Title(T)>>");
        file.Finish(catalogue, info);
        ASSERT_TRUE(file.IsGood());
        std::ofstream(path, std::ios::binary) << output.GetBytes();
        const ShellRun check("qpdf --check '" + path + "'");
        EXPECT_EQ(check.status, 0) << size << check.text;
        const ShellRun shown("qpdf --show-object=" + std::to_string(content) + " --raw-stream-data '" + path +
                             "' | head -c 8");
        EXPECT_EQ(shown.text, "% second") << size;
    }
}

TEST(PdfFileTest, AStreamInPiecesIsAsLongAsItSays) {
    for (const std::size_t size : {std::size_t{1'000}, std::size_t{2'500'000}}) {
        ORVMemoryOutput output;
        PdfFile file(output);
        const unsigned int content = file.Reserve();
        file.BeginStream(content, "/Own 1");
        for (std::size_t written = 0; written < size; written += 500)
            file.AppendToStream(std::string(500, static_cast<char>('a' + written % 7)));
        file.EndStream();
        file.Finish(content, content);
        ASSERT_TRUE(file.IsGood());
        const std::string& bytes = output.GetBytes();
        const std::size_t entries = bytes.find("/Own 1"), start = bytes.find("stream\n", entries) + 7;
        const std::size_t length = bytes.find("\nendstream\n", start) - start;
        const bool isInPieces = size > 1'000'000;
        // The length of a stream written in chunks is only known at its end, so it is an object of its own.
        const std::string stated = isInPieces ? " 0 obj\n" + std::to_string(length) + "\nendobj\n"
                                              : "/Length " + std::to_string(length) + ">>";
        EXPECT_NE(bytes.find(stated), bytes.npos) << size << " " << length;
        EXPECT_EQ(bytes.substr(entries, start - entries).find(" 0 R/") != bytes.npos, isInPieces);
    }
}

std::string CompressedAlone(const std::string& bytes, int level) {
    libdeflate_compressor* compressor = libdeflate_alloc_compressor(level);
    std::string packed(libdeflate_zlib_compress_bound(compressor, bytes.size()), '\0');
    packed.resize(
        libdeflate_zlib_compress(compressor, bytes.data(), bytes.size(), packed.data(), packed.size()));
    libdeflate_free_compressor(compressor);
    return packed;
}

TEST(PdfFileTest, WhatRepeatsItselfIsCompressedThoroughlyAndTheRestQuickly) {
    std::string lines, numbers;
    std::minstd_rand random(7);
    for (unsigned i = 0; i < 2'000; ++i) {
        lines += "1 0 0 1 " + std::to_string(i) + " 40 Tm [<0102030405>] TJ\n";
        numbers += std::to_string(random() % 1'000'000) + " l\n";
    }
    const struct {
        const char* name;
        const std::string& bytes;
        int level;
    } cases[] = {{"lines of text", lines, 6}, {"corners", numbers, 1}};
    for (const PdfFile::Packing packing : {PdfFile::Packing::kContent, PdfFile::Packing::kDeflate})
        for (const auto& [name, bytes, level] : cases) {
            ASSERT_NE(CompressedAlone(bytes, 1), CompressedAlone(bytes, 6)) << name;
            ORVMemoryOutput output;
            PdfFile file(output);
            const unsigned int content = file.Reserve();
            file.WriteStream(content, "", std::string(bytes), packing);
            file.Finish(content, content);
            ASSERT_TRUE(file.IsGood());
            EXPECT_NE(output.GetBytes().find(CompressedAlone(bytes, level)), std::string::npos) << name;
        }
}

}  // namespace
