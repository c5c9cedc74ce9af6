// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What became of one drawing of a batch: a line of its report.
struct BatchRecord {
    enum class Status {
        kDone,
        kUnchanged,  ///< done by an earlier run, and nothing has changed since
        kFailed,
    };
    struct Output {
        std::string file;
        std::uint64_t bytes = 0;
        std::string hash;
    };
    /// Another file that the drawing asked for, such as an image.
    struct OtherFile {
        std::string name;
        std::string hash;  ///< of its content before it was read; empty when it could not be read
    };

    std::string name;     ///< as the command was given it
    std::string input;    ///< hash of the file's content; empty when it could not be read
    std::string options;  ///< hash of all that decides about the output besides the drawing
    Status status = Status::kFailed;
    int code = 0;  ///< as the command would have ended with this drawing alone
    unsigned int attempts = 1;
    unsigned int pages = 0;
    std::uint64_t findings = 0;  ///< of the check
    double milliseconds = 0.0;   ///< wall clock
    std::uint64_t memory = 0;    ///< largest resident size of the process that drew it, bytes; 0: unknown
    std::vector<OtherFile> otherFiles;  ///< by name
    std::vector<Output> outputs;
    std::string message;  ///< the last one about it

    bool IsGood() const { return status != Status::kFailed; }
    std::uint64_t GetBytes() const;  ///< of all outputs
};

/// A record as a line of JSON, with its line break.
std::string LineOf(const BatchRecord& record);
/// Reads a line. @return false when it is none of a report
bool ReadRecord(std::string_view line, BatchRecord& record);

/// Reads all records of a report. Lines that are none, such as one that was cut short when a machine went
/// down, are passed over.
/// @param unreadable  how many of those there were; added to
/// @return an exit code; a failure was reported
int ReadReport(const std::string& path, std::vector<BatchRecord>& records, std::size_t& unreadable);

/// A report that is being written. Each line is written at once and whole, behind those that are there.
class BatchReport {
public:
    ~BatchReport();
    BatchReport() = default;
    BatchReport(const BatchReport&) = delete;
    BatchReport& operator=(const BatchReport&) = delete;

    /// @return an exit code; a failure was reported
    int Open(const std::string& path);
    bool IsOpen() const { return file_ >= 0; }
    int Add(const BatchRecord& record);
    /// Makes sure that it is on the disk.
    int Close();

private:
    int Fail() const;

    std::string path_;
    int file_ = -1;
};
