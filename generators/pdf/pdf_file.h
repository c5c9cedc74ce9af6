// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class ORVOutput;

/// The objects of a PDF file, written as they come: dictionaries gathered into compressed object streams,
/// streams compressed on a thread of their own once there is enough to compress. What is written depends on
/// the calls only, not on the threads. Write errors are the output's to report; here, they end the writing.
class PdfFile {
public:
    /// @param output  written to until Finish has returned; nothing else may use it until then, unless IsGood
    ///                has become false
    explicit PdfFile(ORVOutput& output);
    ~PdfFile();
    PdfFile(const PdfFile&) = delete;
    PdfFile& operator=(const PdfFile&) = delete;

    /// The number of a new object, to be written later.
    unsigned int Reserve() { return ++objectCount_; }
    /// Writes an object that is no stream.
    void WriteObject(unsigned int number, std::string_view content);

    enum class Packing {
        kStored,   ///< as it is; the entries name the filter if there is one
        kDeflate,  ///< compressed well
        kContent,  ///< compressed well in small documents, fast in large ones
    };
    /// Writes a stream. @param entries  of its dictionary, besides length and filter
    void WriteStream(unsigned int number, std::string_view entries, std::string bytes, Packing packing);

    /// Begins a compressed stream that comes in pieces; only one is open at a time, and nothing else is
    /// written meanwhile.
    void BeginStream(unsigned int number, std::string_view entries);
    void AppendToStream(std::string_view bytes);
    void EndStream();

    /// Waits for all that was written so far, and writes the end of the file.
    void Finish(unsigned int catalogue, unsigned int info);

    /// False when the output failed, or out of memory.
    bool IsGood() const { return good_.load(std::memory_order_acquire); }

private:
    struct Job;
    class Writer;
    class Worker;

    /// Where a reader finds an object that stands in an object stream.
    struct Member {
        unsigned int number, stream, index;
    };

    void Hand(Job job);
    void FlushObjects();

    ORVOutput& output_;
    std::atomic<bool> good_{true};
    unsigned int objectCount_ = 0;
    std::uint64_t handedBytes_ = 0;

    // The object stream that is being gathered.
    std::string objectPlaces_, objects_;
    unsigned int gathered_ = 0, gatheringStream_ = 0;
    std::vector<Member> members_;

    // The stream that is open.
    unsigned int openStream_ = 0, lengthObject_ = 0;  // the latter 0 while all fits into a piece
    std::string openEntries_, openBytes_;

    std::unique_ptr<Writer> writer_;
    std::unique_ptr<Worker> worker_;  // null as long as there is little to do
};
