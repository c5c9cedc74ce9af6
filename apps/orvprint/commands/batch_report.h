// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The result for one drawing of a batch: a line of the report.
struct BatchRecord {
    enum class Status {
        kDone,
        kUnchanged,  ///< done by an earlier run and unchanged since
        kFailed,
    };
    struct Output {
        std::string file;
        std::uint64_t bytes = 0;
        std::string hash;
    };
    /// Another file the drawing requested, such as an image.
    struct OtherFile {
        std::string name;
        std::string hash;  ///< of its content before it was read; empty if it could not be read
    };

    std::string name;     ///< as passed to the command
    std::string input;    ///< hash of the file's content; empty if it could not be read
    std::string options;  ///< hash of everything else that affects the output
    Status status = Status::kFailed;
    int code = 0;  ///< exit code of the command for this drawing alone
    unsigned int attempts = 1;
    unsigned int pages = 0;
    std::uint64_t findings = 0;         ///< number of findings of the check
    double milliseconds = 0.0;          ///< wall-clock time
    std::uint64_t memory = 0;           ///< peak resident size of the worker in bytes; 0: unknown
    std::vector<OtherFile> otherFiles;  ///< sorted by name
    std::vector<Output> outputs;
    std::string message;  ///< the last message about the drawing

    bool IsGood() const { return status != Status::kFailed; }
    std::uint64_t GetBytes() const;  ///< of all outputs
};

/// Formats a record as a line of JSON with a line break.
std::string LineOf(const BatchRecord& record);
/// Parses a line. @return false if it is not a line of a report
bool ReadRecord(std::string_view line, BatchRecord& record);

/// Reads all records of a report. Invalid lines, such as one truncated by a crash of the machine, are
/// skipped.
/// @param unreadable  incremented by the number of invalid lines
/// @return an exit code; a failure was reported
int ReadReport(const std::string& path, std::vector<BatchRecord>& records, std::size_t& unreadable);

/// Appends records to a report. Each line is written at once, with one call.
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
    /// Flushes the report to disk and closes it.
    int Close();

private:
    int Fail() const;

    std::string path_;
    int file_ = -1;
};
