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

/// What the jobs of a batch have in common; all of it outlives the workers.
struct BatchJobs {
    const PrintOptions& options;  ///< with all inputs
    const ORVOutputFormat& format;
    const std::vector<std::string>& outputs;  ///< one for each input
    const StagingFolder& staging;
    std::string optionsHash;  ///< see BatchRecord
    bool isReported = false;  ///< facts of each drawing are wanted
    /// Drawings that an earlier run has done and whose outputs are there, by name.
    std::unordered_map<std::string, BatchRecord> done;
};

/// What a worker's answer holds besides the exit code.
struct BatchAnswer {
    std::set<FileSet::Identity> files;  ///< that the drawing read
    BatchRecord record;
};
std::string NoteOf(const BatchAnswer& answer);
/// @return false when the note is no such thing
bool ReadNote(std::string_view note, BatchAnswer& answer);

/// The side of a batch that draws, in a process of its own with few rights.
class BatchWorker {
public:
    /// @param slot       the part of the staging folder that is this worker's
    /// @param slotCount  workers that share the processors
    BatchWorker(const BatchJobs& jobs, std::size_t slot, std::size_t slotCount)
        : jobs_(jobs), slot_(slot), slotCount_(slotCount) {}

    /// Draws an input. To be called in the worker's process, which gives up its rights with the first job.
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
    std::map<std::string, std::string> otherFiles_;  // that the drawing asked for: hashes by name
};
