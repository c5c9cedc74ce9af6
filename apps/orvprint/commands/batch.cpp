// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/batch.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

#include "apps/orvprint/commands/batch_names.h"
#include "apps/orvprint/commands/batch_report.h"
#include "apps/orvprint/commands/batch_worker.h"
#include "apps/orvprint/commands/content_hash.h"
#include "apps/orvprint/commands/formats_command.h"
#include "apps/orvprint/commands/image_signature.h"
#include "apps/orvprint/commands/progress.h"
#include "apps/orvprint/commands/run_sandbox.h"
#include "apps/orvprint/commands/staging_folder.h"
#include "apps/orvprint/input/inputs.h"
#include "apps/orvprint/process/end_signals.h"
#include "apps/orvprint/process/memory_limit.h"
#include "apps/orvprint/process/report.h"
#include "apps/orvprint/process/worker_process.h"
#include "generators/common/ORVFileOutput.h"
#include "generators/formats.h"
#include "library/input/file_set.h"
#include "library/text/printable_text.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestMessage = std::size_t{1} << 16U;  // kept of a worker's unfinished line

/// How a job ended that may have left files.
struct Outcome {
    std::uint32_t job;
    int code;
    std::string message;
    BatchRecord record;
};

/// Failures that may be temporary: files on a network that did not answer, a full disk, a killed process, and
/// the time and memory limits on a busy machine.
bool MayPass(int code) { return code == kExitUnreadable || code == kExitUnwritable || code == kExitFailed; }

/// Messages of a worker, including those of libraries in it.
void PutLines(std::string_view lines) {
    TextLine line(stderr);
    while (!lines.empty()) {
        const std::size_t end = lines.find('\n');
        line.Put(lines.substr(0, end)).End();
        lines.remove_prefix(end + 1);
    }
}

/// A worker and its current job.
struct Slot {
    WorkerProcess process;
    std::optional<std::uint32_t> job;
    std::string errors;                           // unfinished line of its standard error
    std::string lastMessage;                      // of the present job
    std::chrono::steady_clock::time_point start;  // of it
};

class Batch {
public:
    Batch(const PrintOptions& options, const BatchOptions& batch, const ORVOutputFormat& format,
          std::vector<std::string> outputs)
        : options_(options),
          batch_(batch),
          format_(format),
          outputs_(std::move(outputs)),
          progress_(options.inputs.size(), !batch.isQuiet),
          jobs_{options, format, outputs_, staging_, batch.optionsHash, !batch.report.empty(), {}} {}

    int Run() {
        for (const std::string& input : options_.inputs) inputFiles_.Add(input);
        if (const int code = CheckOutputs(); code != kExitDone) return code;
        if (const int code = OpenReports(); code != kExitDone) return code;
        if (const int code = staging_.Make(batch_.folder); code != kExitDone) return code;

        const std::size_t wanted = batch_.jobs > 0 ? batch_.jobs : std::thread::hardware_concurrency();
        slots_ = std::vector<Slot>(std::max<std::size_t>(std::min(wanted, options_.inputs.size()), 1));
        while (EndSignals::GetCaught() == 0) {
            GiveJobs();
            if (std::any_of(slots_.begin(), slots_.end(),
                            [](const Slot& slot) { return slot.job.has_value(); }))
                WaitAndTake();
            else if (!HasJobs())
                break;
        }
        for (Slot& slot : slots_) slot.job ? slot.process.Kill() : slot.process.Finish();
        if (EndSignals::GetCaught() == 0) PutKeptInPlace();
        staging_.Remove();
        progress_.Erase();
        Summarize();
        const int reported = report_.Close();
        if (const int signal = EndSignals::GetCaught(); signal != 0) {
            std::signal(signal, SIG_DFL);
            std::raise(signal);
        }
        if (reported != kExitDone || reportFailure_ != kExitDone)
            return reported != kExitDone ? reported : reportFailure_;
        if (failures_.empty()) return kExitDone;
        return batch_.keepGoing ? static_cast<int>(kExitSomeFailed) : CodeOfFirstFailure();
    }

private:
    struct Failure {
        std::uint32_t job;
        int code;
    };

    /// In the order of the inputs: which one fails first in time is chance.
    int CodeOfFirstFailure() const {
        return std::min_element(failures_.begin(), failures_.end(),
                                [](const Failure& a, const Failure& b) { return a.job < b.job; })
            ->code;
    }

    /// Before anything is converted: would an output replace an input?
    int CheckOutputs() const {
        for (const std::string& output : outputs_)
            if (inputFiles_.Contains(output))
                return Report(kExitUnwritable, output, "is an input; choose another folder");
        return kExitDone;
    }

    /// Reads the report of an earlier run and opens the one of this run.
    int OpenReports() {
        std::vector<BatchRecord> records;
        std::size_t unreadable = 0;
        // The first run may have the same options as later ones.
        const bool isFirst = batch_.resume == batch_.report && !fs::exists(batch_.resume);
        if (!batch_.resume.empty() && !isFirst)
            if (const int code = ReadReport(batch_.resume, records, unreadable); code != kExitDone)
                return code;
        for (BatchRecord& record : records) {
            if (CanStay(record))
                jobs_.done.insert_or_assign(record.name, std::move(record));
            else
                jobs_.done.erase(record.name);
        }
        if (inputFiles_.Contains(batch_.report))
            return Report(kExitUnwritable, batch_.report, "is an input; choose another name for --report");
        return batch_.report.empty() ? static_cast<int>(kExitDone) : report_.Open(batch_.report);
    }

    /// True if an earlier run converted the drawing and neither it nor a file that it read has changed since.
    bool CanStay(const BatchRecord& record) const {
        if (!record.IsGood() || record.input.empty() || record.options != batch_.optionsHash ||
            record.outputs.empty())
            return false;
        return std::all_of(record.outputs.begin(), record.outputs.end(),
                           [](const BatchRecord::Output& output) {
                               std::error_code error;
                               return fs::file_size(output.file, error) == output.bytes && !error;
                           });
    }

    // ---- In the worker ----

    bool HasJobs() const {
        return (!again_.empty() || nextJob_ < options_.inputs.size()) &&
               (batch_.keepGoing || failures_.empty());
    }

    std::uint32_t NextJob() {
        if (again_.empty()) return nextJob_++;
        const std::uint32_t job = again_.back();
        again_.pop_back();
        return job;
    }

    void GiveJobs() {
        for (std::size_t i = 0; i < slots_.size() && HasJobs(); ++i) {
            Slot& slot = slots_[i];
            if (slot.job) continue;
            const std::uint32_t job = NextJob();
            slot.lastMessage.clear();
            slot.start = std::chrono::steady_clock::now();
            if (std::string error = staging_.Clear(i); !error.empty()) {
                Fail({job, kExitUnwritable, batch_.folder + ": " + error, RecordOfLost(job, slot.start)},
                     true);
                continue;
            }
            if (!HandOver(slot, i, job)) {
                const std::string reason = std::strerror(errno);
                Fail({job, kExitFailed, options_.inputs[job] + ": no process for it: " + reason,
                      RecordOfLost(job, slot.start)},
                     true);
                continue;
            }
            slot.job = job;
            current_ = fs::path(options_.inputs[job]).filename();
            UpdateProgress();
        }
    }

    /// @return false with errno if there is no process for the job
    bool HandOver(Slot& slot, std::size_t index, std::uint32_t job) {
        if (slot.process.IsRunning()) {
            if (slot.process.Give(job)) return true;
            slot.process.Kill();  // it died while idle
        }
        const auto worker = std::make_shared<BatchWorker>(jobs_, index, slots_.size());
        return slot.process.Start([worker](std::uint32_t number) { return worker->Do(number); }) &&
               slot.process.Give(job);
    }

    void WaitAndTake() {
        std::vector<pollfd> waits{{signals_.GetDescriptor(), POLLIN, 0}};
        for (const Slot& slot : slots_) {
            // Idle workers have negative descriptors, which poll ignores.
            waits.push_back({slot.job ? slot.process.GetResultDescriptor() : -1, POLLIN, 0});
            waits.push_back({slot.job ? slot.process.GetErrorDescriptor() : -1, POLLIN, 0});
        }
        if (poll(waits.data(), waits.size(), progress_.GetWait()) < 0) return;
        progress_.DrawIfDue();
        signals_.Drain();
        if (EndSignals::GetCaught() != 0) return;
        for (std::size_t i = 0; i < slots_.size(); ++i) {
            if (waits[2 * i + 1].revents != 0)
                TakeResult(i);
            else if (waits[2 * i + 2].revents != 0)
                TakeMessages(slots_[i], false);
        }
    }

    void TakeResult(std::size_t index) {
        Slot& slot = slots_[index];
        const std::uint32_t job = *slot.job;
        WorkerProcess::Answer answer;
        const bool hasResult = slot.process.TakeResult(answer);
        TakeMessages(slot, true);  // all of them: they were written before the result
        slot.job.reset();
        BatchAnswer facts;
        if (!hasResult) {
            const WorkerProcess::End end = slot.process.Reap();
            const BatchRecord record = RecordOfLost(job, slot.start);
            // A worker that exited with this code has reported why.
            if (end.exitCode == kExitFailed && !slot.lastMessage.empty())
                Fail({job, kExitFailed, slot.lastMessage, record}, false);
            else
                Fail({job, kExitFailed, options_.inputs[job] + ": its worker process " + end.words, record},
                     true);
            return;
        }
        // A worker that reached a limit may hold memory that the next drawing needs.
        if (answer.code == kExitFailed) slot.process.Kill();
        if (!ReadNote(answer.note, facts)) facts.record = RecordOfLost(job, slot.start);
        for (const FileSet::Identity& file : facts.files) inputFiles_.Add(file);
        // A failed print leaves no files, unless only some pages were left out.
        Outcome outcome{job, answer.code, slot.lastMessage, std::move(facts.record)};
        if (answer.code != kExitDone && answer.code != kExitFailed) {
            Fail(std::move(outcome), false);
        } else if (MayReplaceAnImage(job, index)) {
            if (const std::string error = staging_.Keep(index, job); !error.empty())
                return FailToPlace(std::move(outcome), batch_.folder + ": " + error);
            kept_.push_back(std::move(outcome));
            UpdateProgress();
        } else {
            Finish(std::move(outcome), staging_.PathOf(index));
        }
    }

    /// The record of a drawing whose worker died without an answer.
    BatchRecord RecordOfLost(std::uint32_t job, std::chrono::steady_clock::time_point start) const {
        BatchRecord record;
        record.name = options_.inputs[job];
        record.options = batch_.optionsHash;
        if (!report_.IsOpen()) return record;
        record.input = HashFile(record.name).hash;
        record.milliseconds =
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
        return record;
    }

    /// Moves the files of a job to their final names.
    void Finish(Outcome outcome, const fs::path& folder) {
        if (std::string error = PutInPlace(outcome.job, folder); !error.empty())
            return FailToPlace(std::move(outcome), std::move(error));
        if (outcome.code != kExitDone) return Fail(std::move(outcome), false);
        if (outcome.record.status == BatchRecord::Status::kUnchanged) ++unchanged_;
        ++converted_;
        AddToReport(outcome);
        UpdateProgress();
    }

    void FailToPlace(Outcome outcome, std::string error) {
        outcome.code = kExitUnwritable;
        outcome.message = std::move(error);
        outcome.record.outputs.clear();
        Fail(std::move(outcome), true);
    }

    void AddToReport(Outcome& outcome) {
        if (!report_.IsOpen()) return;
        outcome.record.code = outcome.code;
        if (outcome.code != kExitDone) outcome.record.status = BatchRecord::Status::kFailed;
        const auto attempts = attempts_.find(outcome.job);
        outcome.record.attempts = attempts == attempts_.end() ? 1 : attempts->second + 1;
        outcome.record.message = outcome.message;
        const int code = report_.Add(outcome.record);
        if (code != kExitDone && reportFailure_ == kExitDone) reportFailure_ = code;
    }

    /// True if an output has the name of an image: another drawing that has not been read yet may show it.
    /// Such files wait until all inputs have been read.
    bool MayReplaceAnImage(std::uint32_t job, std::size_t slot) const {
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(staging_.PathOf(slot), error))
            if (LooksLikeImage(PlaceOf(job, entry.path()))) return true;
        return false;
    }

    void PutKeptInPlace() {
        for (Outcome& outcome : std::exchange(kept_, {})) {
            const fs::path folder = staging_.PathOfKept(outcome.job);
            Finish(std::move(outcome), folder);
        }
    }

    fs::path PlaceOf(std::uint32_t job, const fs::path& staged) const {
        return fs::path(outputs_[job]).parent_path() / staged.filename();
    }

    /// Forwards the messages of a worker, in whole lines.
    void TakeMessages(Slot& slot, bool isAll) {
        slot.process.TakeErrors(slot.errors);
        if ((isAll || slot.errors.size() > kLongestMessage) && !slot.errors.empty() &&
            !slot.errors.ends_with('\n'))
            slot.errors += '\n';
        const std::size_t end = slot.errors.rfind('\n');
        if (end == std::string::npos) return;
        progress_.Erase();
        PutLines({slot.errors.data(), end + 1});
        const std::size_t start = end == 0 ? 0 : slot.errors.rfind('\n', end - 1) + 1;
        slot.lastMessage = slot.errors.substr(start, end - start);
        constexpr std::string_view kOwnName = "orvprint: ";
        if (slot.lastMessage.starts_with(kOwnName)) slot.lastMessage.erase(0, kOwnName.size());
        slot.errors.erase(0, end + 1);
    }

    /// Moves the files of a job to their final names, all or none.
    /// @return an error; empty on success
    std::string PutInPlace(std::uint32_t job, const fs::path& folder) {
        std::error_code error;
        std::vector<std::pair<fs::path, fs::path>> moves;
        for (const auto& entry : fs::directory_iterator(folder, error))
            moves.emplace_back(entry.path(), PlaceOf(job, entry.path()));
        if (error) return batch_.folder + ": " + error.message();
        std::sort(moves.begin(), moves.end());
        for (const auto& [from, to] : moves) {
            if (inputFiles_.Contains(to)) return to.string() + ": is an input; choose another folder";
            // "a.svg" with two pages and "a-1.svg" with one: page numbers can make names collide.
            if (const auto owner = owners_.find(to); owner != owners_.end())
                return to.string() + ": would come from " + options_.inputs[job] + " and from " +
                       options_.inputs[owner->second];
            struct stat present {};
            if (stat(to.c_str(), &present) != 0) continue;
            if (S_ISDIR(present.st_mode)) return to.string() + ": is a folder";
            if (ORVFileOutput::IsFont(to)) return to.string() + ": is a font; choose another folder";
            if (access(to.c_str(), W_OK) != 0) return to.string() + ": " + std::strerror(errno);
            chmod(from.c_str(), present.st_mode & 07777U);
        }
        for (const auto& [from, to] : moves) {
            if (batch_.keepsFolders) fs::create_directories(to.parent_path(), error);
            if (error) return to.parent_path().string() + ": " + error.message();
            fs::rename(from, to, error);
            if (error) return to.string() + ": " + error.message();
            if (format_.onePageAPart) owners_.emplace(to, job);
        }
        return {};
    }

    /// Counts a failure, unless the drawing gets another attempt.
    /// @param isNew  not reported yet
    void Fail(Outcome outcome, bool isNew) {
        if (isNew || outcome.message.empty()) {
            progress_.Erase();
            if (outcome.message.empty()) outcome.message = options_.inputs[outcome.job] + ": failed";
            Report(kExitDone, "", outcome.message);
        }
        if (MayPass(outcome.code) && batch_.retries > 0 && attempts_[outcome.job] < batch_.retries) {
            ++attempts_[outcome.job];
            again_.push_back(outcome.job);
            return;
        }
        failures_.push_back({outcome.job, outcome.code});
        AddToReport(outcome);
        UpdateProgress();
    }

    void UpdateProgress() {
        progress_.Update(converted_ + kept_.size() + failures_.size(), failures_.size(), current_);
    }

    void Summarize() const {
        if (batch_.isQuiet) return;
        const std::size_t missing = options_.inputs.size() - converted_ - failures_.size();
        std::array<char, 32> seconds{};
        std::snprintf(seconds.data(), seconds.size(), ", %.1f s",
                      std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count());
        std::string line = std::to_string(converted_ - unchanged_) + " of " +
                           std::to_string(options_.inputs.size()) + " converted, " +
                           std::to_string(failures_.size()) + " failed";
        if (unchanged_ > 0) line += ", " + std::to_string(unchanged_) + " unchanged";
        if (missing > 0) line += ", " + std::to_string(missing) + " not done";
        if (EndSignals::GetCaught() != 0) line = "interrupted: " + line;
        Report(kExitDone, "", line + seconds.data());
    }

    const PrintOptions& options_;
    const BatchOptions& batch_;
    const ORVOutputFormat& format_;
    const std::vector<std::string> outputs_;
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    EndSignals signals_;
    ProgressBar progress_;
    FileSet inputFiles_;  // including files that drawings read
    StagingFolder staging_;
    BatchJobs jobs_;
    BatchReport report_;
    int reportFailure_ = kExitDone;  // the first line that could not be written
    std::vector<Slot> slots_;
    std::uint32_t nextJob_ = 0;
    std::string current_;                                       // name of the last input that was started
    std::vector<std::uint32_t> again_;                          // drawings that get another attempt
    std::unordered_map<std::uint32_t, unsigned int> attempts_;  // those of them that failed
    std::size_t converted_ = 0, unchanged_ = 0;
    std::vector<Outcome> kept_;  // files that wait for the end
    std::vector<Failure> failures_;
    std::unordered_map<std::string, std::uint32_t> owners_;  // of numbered files
};

int RunPart(const PrintOptions& options, const BatchOptions& batch, const ORVOutputFormat& format,
            std::vector<std::string> outputs) {
    if (!batch.keepGoing)
        for (const std::string& input : options.inputs)
            if (const int code = CheckInput(input); code != kExitDone) return code;
    return Batch(options, batch, format, std::move(outputs)).Run();
}

}  // namespace

int RunBatch(const PrintOptions& options, const BatchOptions& batch) {
    const ORVOutputFormat* format = ORVFindOutputFormat(options.format.empty() ? "pdf" : options.format);
    if (!format)
        return Report(kExitUnknownFormat, options.format,
                      "unknown output format; supported are " + OutputFormatNames(", "));
    if (std::find(options.inputs.begin(), options.inputs.end(), "-") != options.inputs.end())
        return Report(kExitUsage, "standard input",
                      "has no name for a file in --out-dir; name it with -o FILE");
    // Names are planned for the whole list, so that they do not depend on the shard.
    std::string error;
    std::vector<std::string> outputs =
        PlanOutputs(options.inputs, batch.folder, format->name, batch.keepsFolders, error);
    if (!error.empty()) return Report(kExitUsage, "--out-dir", error);
    if (batch.shard.count == 1) return RunPart(options, batch, *format, std::move(outputs));
    PrintOptions part = options;
    part.inputs.clear();
    std::vector<std::string> outputsOfPart;
    for (std::size_t i = 0; i < options.inputs.size(); ++i) {
        if (!batch.shard.Takes(options.inputs[i])) continue;
        part.inputs.push_back(options.inputs[i]);
        outputsOfPart.push_back(std::move(outputs[i]));
    }
    return RunPart(part, batch, *format, std::move(outputsOfPart));
}
