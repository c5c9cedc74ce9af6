// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The result for one drawing of a batch: a line of its report.
struct BatchRecord {
    enum class Status {
        kDone,
        kUnchanged,  ///< converted by an earlier run and unchanged since
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
        std::string hash;  ///< of its content before it was read; empty if it could not be read
    };

    std::string name;     ///< as given on the command line or in the list
    std::string input;    ///< hash of the file's content; empty if it could not be read
    std::string options;  ///< hash of everything else that affects the output
    Status status = Status::kFailed;
    int code = 0;  ///< exit code for this drawing alone
    unsigned int attempts = 1;
    unsigned int pages = 0;
    std::uint64_t findings = 0;  ///< number of findings
    double milliseconds = 0.0;   ///< wall-clock time
    std::uint64_t memory = 0;  ///< peak resident size of the process that converted it, in bytes; 0: unknown
    std::vector<OtherFile> otherFiles;  ///< sorted by name
    std::vector<Output> outputs;
    std::string message;  ///< the last message about it

    bool IsGood() const { return status != Status::kFailed; }
    std::uint64_t GetBytes() const;  ///< total of all outputs
};

/// Formats a record as a line of JSON, including the line break.
std::string LineOf(const BatchRecord& record);
/// Parses a line.
/// @return false if it is not a line of a report
bool ReadRecord(std::string_view line, BatchRecord& record);

/// Reads all records of a report. Lines that cannot be read are skipped, for example one that a crash cut
/// short.
/// @param unreadable  incremented for each skipped line
/// @return an exit code; a failure has been reported
int ReadReport(const std::string& path, std::vector<BatchRecord>& records, std::size_t& unreadable);

/// Appends to a report. Each line is written whole and at once.
class BatchReport {
public:
    ~BatchReport();
    BatchReport() = default;
    BatchReport(const BatchReport&) = delete;
    BatchReport& operator=(const BatchReport&) = delete;

    /// @return an exit code; a failure has been reported
    int Open(const std::string& path);
    bool IsOpen() const { return file_ >= 0; }
    int Add(const BatchRecord& record);
    /// Flushes the report to the disk.
    int Close();

private:
    int Fail() const;

    std::string path_;
    int file_ = -1;
};
