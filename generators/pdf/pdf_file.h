// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class ORVOutput;

/// Writes the objects of a PDF file. Dictionaries are gathered in compressed object streams; streams are
/// compressed in a separate thread once there is enough data. The bytes depend only on the calls, not on
/// threads. Write errors are reported by the output; here they only stop writing.
class PdfFile {
public:
    /// @param output  written to until Finish has returned; nothing else may use it until then, unless IsGood
    ///                has become false
    explicit PdfFile(ORVOutput& output);
    ~PdfFile();
    PdfFile(const PdfFile&) = delete;
    PdfFile& operator=(const PdfFile&) = delete;

    /// Reserves the number of an object to be written later.
    unsigned int Reserve() { return ++objectCount_; }
    /// Writes an object that is not a stream.
    void WriteObject(unsigned int number, std::string_view content);

    enum class Packing {
        kStored,   ///< as it is; `entries` name the filter if there is one
        kDeflate,  ///< compressed well
        kContent,  ///< compressed well in small documents, fast in large ones
    };
    /// Writes a stream. @param entries  of its dictionary, except length and filter
    void WriteStream(unsigned int number, std::string_view entries, std::string bytes, Packing packing);

    /// Begins a compressed stream that is written in pieces. Only one may be open, and nothing else may be
    /// written meanwhile.
    void BeginStream(unsigned int number, std::string_view entries);
    void AppendToStream(std::string_view bytes);
    void EndStream();

    /// Waits until all pending data is written, and writes the end of the file.
    void Finish(unsigned int catalogue, unsigned int info);

    /// False if the output failed or memory ran out.
    bool IsGood() const { return good_.load(std::memory_order_acquire); }

private:
    struct Job;
    class Writer;
    class Worker;

    /// Location of an object inside an object stream.
    struct Member {
        unsigned int number, stream, index;
    };

    void Hand(Job job);
    void FlushObjects();

    ORVOutput& output_;
    std::atomic<bool> good_{true};
    unsigned int objectCount_ = 0;
    std::uint64_t handedBytes_ = 0;

    // The object stream being gathered.
    std::string objectPlaces_, objects_;
    unsigned int gathered_ = 0, gatheringStream_ = 0;
    std::vector<Member> members_;

    // The open stream.
    unsigned int openStream_ = 0, lengthObject_ = 0;  // the latter is 0 while all data fits into one piece
    std::string openEntries_, openBytes_;

    std::unique_ptr<Writer> writer_;
    std::unique_ptr<Worker> worker_;  // null while there is little to do
};
