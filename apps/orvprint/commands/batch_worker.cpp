// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/batch_worker.h"

#include <malloc.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <exception>
#include <filesystem>
#include <new>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "apps/orvprint/commands/check_command.h"
#include "apps/orvprint/commands/content_hash.h"
#include "apps/orvprint/commands/run_sandbox.h"
#include "apps/orvprint/input/inputs.h"
#include "apps/orvprint/process/memory_limit.h"
#include "apps/orvprint/process/report.h"

namespace fs = std::filesystem;

namespace {

// bytes that a worker keeps allocated between drawings
constexpr std::uint64_t kKeptMemory = std::uint64_t{32} << 20U;

/// A file that was missing must still be missing. Names that are not UTF-8 are lost in a report.
bool IsAsBefore(const BatchRecord::OtherFile& file) {
    constexpr std::string_view kLost = "\xEF\xBF\xBD";
    return file.name.find(kLost) == std::string::npos && HashFile(file.name).hash == file.hash;
}

}  // namespace

std::string NoteOf(const BatchAnswer& answer) {
    const std::uint64_t count = answer.files.size();
    std::string note(reinterpret_cast<const char*>(&count), sizeof count);
    for (const auto& [device, number] : answer.files) {
        const std::array<std::uint64_t, 2> both{device, number};
        note.append(reinterpret_cast<const char*>(both.data()), sizeof both);
    }
    return note + LineOf(answer.record);
}

bool ReadNote(std::string_view note, BatchAnswer& answer) {
    std::uint64_t count = 0;
    std::array<std::uint64_t, 2> both{};
    if (note.size() < sizeof count) return false;
    std::memcpy(&count, note.data(), sizeof count);
    note.remove_prefix(sizeof count);
    if (count > note.size() / sizeof both) return false;
    for (; count > 0; --count) {
        std::memcpy(both.data(), note.data(), sizeof both);
        note.remove_prefix(sizeof both);
        answer.files.emplace(both[0], both[1]);
    }
    return ReadRecord(note, answer.record);
}

WorkerProcess::Answer BatchWorker::Do(std::uint32_t job) {
    const std::string& input = jobs_.options.inputs[job];
    try {
        if (const int code = EnterSandbox(); code != kExitDone) return {code, {}};
        FilesOfDrawings().Clear();
        BatchAnswer answer;
        answer.record.name = input;
        answer.record.options = jobs_.optionsHash;
        const int code = Draw(job, answer.record);
        answer.files = FilesOfDrawings().GetFiles();
        return {code, NoteOf(answer)};
    } catch (const std::bad_alloc&) {
        return {ReportOutOfMemory(input), {}};
    } catch (const std::exception& error) {
        return {Report(kExitFailed, input, error.what()), {}};
    }
}

/// The worker creates outputs in its staging folder and may write nowhere else; the parent moves them.
int BatchWorker::EnterSandbox() {
    if (std::exchange(isInSandbox_, true)) return kExitDone;
    if (jobs_.isReported) {
        memory_.Open();
        WatchFilesOfDrawings([this](const std::string& name) { NoteOtherFile(name); });
    }
    RunFiles files{.inputs = jobs_.options.inputs, .outputFolder = jobs_.staging.GetPath()};
    files.keepsTemporaryFiles = KeepsTemporaryFiles(jobs_.format.name);
    return EnterSandboxFor(jobs_.options.read, std::move(files));
}

/// Hashed before the drawing reads it: if the file changes in between, the hash no longer matches and the
/// drawing is converted again.
void BatchWorker::NoteOtherFile(const std::string& name) {
    const auto [place, isNew] = otherFiles_.try_emplace(name);
    if (!isNew) return;
    place->second = HashFile(name).hash;
    // Embedded data URIs are asked for like file names.
    if (place->second.empty() && name.find("data:") != std::string::npos) otherFiles_.erase(place);
}

int BatchWorker::Draw(std::uint32_t job, BatchRecord& record) {
    PrintFacts facts;
    if (!jobs_.isReported) return Print(job, facts);
    const std::string& input = jobs_.options.inputs[job];
    if (IsUnchanged(input, record)) return kExitDone;
    // Returns memory left over from large drawings, so that it does not count for this one.
    if (memory_.Get() > kKeptMemory) malloc_trim(0);
    memory_.Begin();
    otherFiles_.clear();
    const auto start = std::chrono::steady_clock::now();
    record.code = Print(job, facts);
    record.milliseconds =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    record.memory = memory_.Get();
    record.status = record.code == kExitDone ? BatchRecord::Status::kDone : BatchRecord::Status::kFailed;
    record.pages = facts.pages;
    for (auto& [name, hash] : otherFiles_) record.otherFiles.push_back({name, std::move(hash)});
    // A pipe cannot be read twice.
    if (facts.pages > 0 && !record.input.empty())
        record.findings = CountFindings(input, jobs_.options.read, jobs_.options.ignored);
    MeasureOutputs(job, record);
    return record.code;
}

int BatchWorker::Print(std::uint32_t job, PrintFacts& facts) const {
    BoundMemory();
    PrintOptions options = jobs_.options;
    options.inputs = {jobs_.options.inputs[job]};
    options.output = jobs_.staging.PathOf(slot_) / fs::path(jobs_.outputs[job]).filename();
    options.outputName = jobs_.outputs[job];
    // The workers share the processors.
    const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
    options.threads = static_cast<unsigned int>(std::max<std::size_t>(processors / slotCount_, 1));
    options.isInSandbox = true;
    options.read.keepGoing = false;  // not well-formed is a failure like any other
    options.facts = &facts;
    return RunPrint(options);
}

/// Whether an earlier run converted the same content, with the same content in all other files; `record` is
/// then that run's. Also computes the hash of the drawing.
bool BatchWorker::IsUnchanged(const std::string& input, BatchRecord& record) const {
    record.input = HashFile(input).hash;
    const auto known = jobs_.done.find(input);
    if (known == jobs_.done.end() || known->second.input != record.input ||
        !std::all_of(known->second.otherFiles.begin(), known->second.otherFiles.end(), IsAsBefore))
        return false;
    record = known->second;
    record.status = BatchRecord::Status::kUnchanged;
    return true;
}

void BatchWorker::MeasureOutputs(std::uint32_t job, BatchRecord& record) const {
    const fs::path folder = fs::path(jobs_.outputs[job]).parent_path();
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(jobs_.staging.PathOf(slot_), error)) {
        const FileContent content = HashFile(entry.path());
        record.outputs.push_back({folder / entry.path().filename(), content.bytes, content.hash});
    }
    std::sort(record.outputs.begin(), record.outputs.end(),
              [](const BatchRecord::Output& a, const BatchRecord::Output& b) { return a.file < b.file; });
}
