// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "apps/orvprint/commands/batch_report.h"
#include "apps/orvprint/commands/print_command.h"
#include "apps/orvprint/commands/staging_folder.h"
#include "apps/orvprint/process/peak_memory.h"
#include "apps/orvprint/process/worker_process.h"
#include "generators/formats.h"
#include "library/input/file_set.h"

/// Data shared by the jobs of a batch; must outlive the workers.
struct BatchJobs {
    const PrintOptions& options;  ///< with all inputs
    const ORVOutputFormat& format;
    const std::vector<std::string>& outputs;  ///< one per input
    const StagingFolder& staging;
    std::string optionsHash;  ///< see BatchRecord
    bool isReported = false;  ///< a report is written
    /// Drawings completed by an earlier run whose outputs exist, by name.
    std::unordered_map<std::string, BatchRecord> done;
};

/// A worker's answer, besides the exit code.
struct BatchAnswer {
    std::set<FileSet::Identity> files;  ///< that the drawing read
    BatchRecord record;
};
std::string NoteOf(const BatchAnswer& answer);
/// @return false if the note is invalid
bool ReadNote(std::string_view note, BatchAnswer& answer);

/// The drawing side of a batch, in a sandboxed worker process.
class BatchWorker {
public:
    /// @param slot       index of this worker's staging subfolder
    /// @param slotCount  number of workers that share the processors
    BatchWorker(const BatchJobs& jobs, std::size_t slot, std::size_t slotCount)
        : jobs_(jobs), slot_(slot), slotCount_(slotCount) {}

    /// Draws an input. Runs in the worker process, which enters the sandbox with the first job.
    WorkerProcess::Answer Do(std::uint32_t job);

private:
    int EnterSandbox();
    void NoteOtherFile(const std::string& name);
    int Draw(std::uint32_t job, BatchRecord& record);
    int Print(std::uint32_t job, PrintFacts& facts) const;
    bool IsUnchanged(const std::string& input, BatchRecord& record) const;
    void MeasureOutputs(std::uint32_t job, BatchRecord& record) const;

    const BatchJobs& jobs_;
    const std::size_t slot_, slotCount_;
    bool isInSandbox_ = false;
    PeakMemory memory_;
    std::map<std::string, std::string> otherFiles_;  // requested by the drawing: hashes by name
};
