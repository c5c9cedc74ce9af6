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

/// What the jobs of a batch have in common. Everything referenced must outlive the workers.
struct BatchJobs {
    const PrintOptions& options;  ///< including all inputs
    const ORVOutputFormat& format;
    const std::vector<std::string>& outputs;  ///< one for each input
    const StagingFolder& staging;
    std::string optionsHash;  ///< see BatchRecord
    bool isReported = false;  ///< facts of each drawing are wanted
    /// Drawings that an earlier run has done and whose outputs are there, by name.
    std::unordered_map<std::string, BatchRecord> done;
};

/// What a worker returns besides the exit code.
struct BatchAnswer {
    std::set<FileSet::Identity> files;  ///< files that the drawing read
    BatchRecord record;
};
std::string NoteOf(const BatchAnswer& answer);
/// @return false if the note cannot be parsed
bool ReadNote(std::string_view note, BatchAnswer& answer);

/// The converting side of a batch: a sandboxed process.
class BatchWorker {
public:
    /// @param slot       number of this worker's part of the staging folder
    /// @param slotCount  number of workers that share the processors
    BatchWorker(const BatchJobs& jobs, std::size_t slot, std::size_t slotCount)
        : jobs_(jobs), slot_(slot), slotCount_(slotCount) {}

    /// Converts an input. Called in the worker, which enters the sandbox before the first job.
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
    // hashes of the files that the drawing asked for, by name
    std::map<std::string, std::string> otherFiles_;
};
