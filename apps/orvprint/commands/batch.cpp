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
#include "apps/orvprint/commands/formats_command.h"
#include "apps/orvprint/commands/progress.h"
#include "apps/orvprint/commands/run_sandbox.h"
#include "apps/orvprint/commands/staging_folder.h"
#include "apps/orvprint/input/drawings.h"
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

constexpr std::size_t kLongestMessage = std::size_t{1} << 16U;  // of a worker, before its line ends

/// True for a file that the interpreter could take for an image, as its first bytes tell.
bool LooksLikeImage(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) return false;
    std::array<char, 2> start{};
    const ssize_t size = read(descriptor, start.data(), start.size());
    close(descriptor);
    const std::string_view view(start.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
    return view == "\x89P" || view == "\xFF\xD8" || view == "BM";
}

/// Files as bytes, and back.
std::string BytesOf(const std::set<FileSet::Identity>& files) {
    std::string bytes;
    for (const auto& [device, number] : files) {
        const std::array<std::uint64_t, 2> both{device, number};
        bytes.append(reinterpret_cast<const char*>(both.data()), sizeof both);
    }
    return bytes;
}
void AddFiles(std::string_view bytes, FileSet& files) {
    std::array<std::uint64_t, 2> both{};
    for (; bytes.size() >= sizeof both; bytes.remove_prefix(sizeof both)) {
        std::memcpy(both.data(), bytes.data(), sizeof both);
        files.Add(FileSet::Identity(both[0], both[1]));
    }
}

/// How a job ended that may have left files.
struct Outcome {
    std::uint32_t job;
    int code;
    std::string message;
};

/// What a worker said, libraries within it too.
void PutLines(std::string_view lines) {
    TextLine line(stderr);
    while (!lines.empty()) {
        const std::size_t end = lines.find('\n');
        line.Put(lines.substr(0, end)).End();
        lines.remove_prefix(end + 1);
    }
}

/// A worker and what it does.
struct Slot {
    WorkerProcess process;
    std::optional<std::uint32_t> job;
    std::string errors;       // of its standard error, a line not yet ended
    std::string lastMessage;  // of the present job
};

class Batch {
public:
    Batch(const PrintOptions& options, const BatchOptions& batch, const ORVOutputFormat& format,
          std::vector<std::string> outputs)
        : options_(options),
          batch_(batch),
          format_(format),
          outputs_(std::move(outputs)),
          progress_(options.inputs.size(), !batch.isQuiet) {}

    int Run() {
        for (const std::string& input : options_.inputs) inputFiles_.Add(input);
        if (const int code = CheckOutputs(); code != kExitDone) return code;
        if (const int code = staging_.Make(batch_.folder); code != kExitDone) return code;

        const std::size_t wanted = batch_.jobs > 0 ? batch_.jobs : std::thread::hardware_concurrency();
        slots_ = std::vector<Slot>(std::clamp<std::size_t>(wanted, 1, options_.inputs.size()));
        while (EndSignals::GetCaught() == 0) {
            GiveJobs();
            if (std::none_of(slots_.begin(), slots_.end(),
                             [](const Slot& slot) { return slot.job.has_value(); }))
                break;
            WaitAndTake();
        }
        for (Slot& slot : slots_) slot.process.Kill();
        if (EndSignals::GetCaught() == 0) PutKeptInPlace();
        staging_.Remove();
        progress_.Erase();
        Summarize();
        if (const int signal = EndSignals::GetCaught(); signal != 0) {
            std::signal(signal, SIG_DFL);
            std::raise(signal);
        }
        if (failures_.empty()) return kExitDone;
        return batch_.keepGoing ? static_cast<int>(kExitSomeFailed) : failures_.front().code;
    }

private:
    struct Failure {
        std::uint32_t job;
        int code;
    };

    /// Before anything is done: would an output take an input's place?
    int CheckOutputs() const {
        for (const std::string& output : outputs_)
            if (inputFiles_.Contains(output))
                return Report(kExitUnwritable, output, "is an input; choose another folder");
        return kExitDone;
    }

    // ---- in the worker ----

    /// Outputs grow where this process puts them in their places; the worker has no rights there.
    int EnterWorkersSandbox() const {
        try {
            RunFiles files{.inputs = options_.inputs, .outputFolder = staging_.GetPath()};
            files.keepsTemporaryFiles = KeepsTemporaryFiles(format_.name);
            return EnterSandboxFor(options_.read, std::move(files));
        } catch (const std::bad_alloc&) {
            return ReportOutOfMemory("");
        }
    }

    WorkerProcess::Answer DoJob(std::uint32_t job, std::size_t slot) const {
        FilesOfDrawings().Clear();
        try {
            const int code = Print(job, slot);
            return {code, BytesOf(FilesOfDrawings().GetFiles())};
        } catch (const std::bad_alloc&) {
            return {ReportOutOfMemory(options_.inputs[job]), {}};
        } catch (const std::exception& error) {
            return {Report(kExitFailed, options_.inputs[job], error.what()), {}};
        }
    }

    int Print(std::uint32_t job, std::size_t slot) const {
        BoundMemory();
        const std::string& input = options_.inputs[job];
        PrintOptions options = options_;
        options.inputs = {input};
        options.output = staging_.PathOf(slot) / fs::path(outputs_[job]).filename();
        options.outputName = outputs_[job];
        // The workers share the processors.
        const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
        options.threads = static_cast<unsigned int>(std::max<std::size_t>(processors / slots_.size(), 1));
        options.isInSandbox = true;
        options.read.keepGoing = false;  // a broken document is a failure among others
        return RunPrint(options);
    }

    // ---- in the process that was started ----

    bool HasJobs() const {
        return nextJob_ < options_.inputs.size() && (batch_.keepGoing || failures_.empty());
    }

    void GiveJobs() {
        for (std::size_t i = 0; i < slots_.size() && HasJobs(); ++i) {
            Slot& slot = slots_[i];
            if (slot.job) continue;
            const std::uint32_t job = nextJob_++;
            slot.lastMessage.clear();
            if (std::string error = staging_.Clear(i); !error.empty()) {
                Fail(job, kExitUnwritable, batch_.folder + ": " + error, true);
                continue;
            }
            if (!HandOver(slot, i, job)) {
                Fail(job, kExitFailed, options_.inputs[job] + ": no process for it: " + std::strerror(errno),
                     true);
                continue;
            }
            slot.job = job;
            current_ = fs::path(options_.inputs[job]).filename();
            UpdateProgress();
        }
    }

    /// @return false with errno when there is no process that could do the job
    bool HandOver(Slot& slot, std::size_t index, std::uint32_t job) {
        if (slot.process.IsRunning()) {
            if (slot.process.Give(job)) return true;
            slot.process.Kill();  // it ended while it had nothing to do
        }
        const auto work = [this, index,
                           isInSandbox = false](std::uint32_t number) mutable -> WorkerProcess::Answer {
            if (!isInSandbox)
                if (const int code = EnterWorkersSandbox(); code != kExitDone) return {code, {}};
            isInSandbox = true;
            return DoJob(number, index);
        };
        return slot.process.Start(work) && slot.process.Give(job);
    }

    void WaitAndTake() {
        std::vector<pollfd> waits{{signals_.GetDescriptor(), POLLIN, 0}};
        for (const Slot& slot : slots_) {
            // Those that wait for nothing have negative descriptors, which poll passes over.
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
        AddFiles(answer.note, inputFiles_);
        if (!hasResult) {
            const WorkerProcess::End end = slot.process.Reap();
            // One that ended itself with this code has said why.
            if (end.exitCode == kExitFailed && !slot.lastMessage.empty())
                Fail(job, kExitFailed, slot.lastMessage, false);
            else
                Fail(job, kExitFailed, options_.inputs[job] + ": its worker process " + end.words, true);
            return;
        }
        // Printing that failed leaves no file, unless pages were passed over: then there are the others.
        Outcome outcome{job, answer.code, slot.lastMessage};
        if (answer.code != kExitDone && answer.code != kExitFailed) {
            Fail(job, answer.code, slot.lastMessage, false);
        } else if (MayReplaceAnImage(job, index)) {
            if (const std::string error = staging_.Keep(index, job); !error.empty())
                return Fail(job, kExitUnwritable, batch_.folder + ": " + error, true);
            kept_.push_back(std::move(outcome));
            UpdateProgress();
        } else {
            Finish(outcome, staging_.PathOf(index));
        }
    }

    /// Puts the files of a job where they belong.
    void Finish(const Outcome& outcome, const fs::path& folder) {
        if (const std::string error = PutInPlace(outcome.job, folder); !error.empty())
            return Fail(outcome.job, kExitUnwritable, error, true);
        if (outcome.code != kExitDone) return Fail(outcome.job, outcome.code, outcome.message, false);
        ++converted_;
        UpdateProgress();
    }

    /// True when a file of a job has the name of an image, which another drawing may show that has not been
    /// read yet. Such files wait until all have been.
    bool MayReplaceAnImage(std::uint32_t job, std::size_t slot) const {
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(staging_.PathOf(slot), error))
            if (LooksLikeImage(PlaceOf(job, entry.path()))) return true;
        return false;
    }

    void PutKeptInPlace() {
        for (const Outcome& outcome : std::exchange(kept_, {}))
            Finish(outcome, staging_.PathOfKept(outcome.job));
    }

    fs::path PlaceOf(std::uint32_t job, const fs::path& staged) const {
        return fs::path(outputs_[job]).parent_path() / staged.filename();
    }

    /// Passes on what a worker says, by whole lines.
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

    /// Moves the files of a job to where they belong, all or none. @return an error, empty when there is none
    std::string PutInPlace(std::uint32_t job, const fs::path& folder) {
        std::error_code error;
        std::vector<std::pair<fs::path, fs::path>> moves;
        for (const auto& entry : fs::directory_iterator(folder, error))
            moves.emplace_back(entry.path(), PlaceOf(job, entry.path()));
        if (error) return batch_.folder + ": " + error.message();
        std::sort(moves.begin(), moves.end());
        for (const auto& [from, to] : moves) {
            if (inputFiles_.Contains(to)) return to.string() + ": is an input; choose another folder";
            // "a.svg" with two pages and "a-1.svg" with one: numbers can make names alike.
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
            fs::rename(from, to, error);
            if (error) return to.string() + ": " + error.message();
            if (format_.onePageAPart) owners_.emplace(to, job);
        }
        return {};
    }

    /// @param isNew  not reported yet
    void Fail(std::uint32_t job, int code, const std::string& message, bool isNew) {
        if (isNew || message.empty()) {
            progress_.Erase();
            Report(kExitDone, "", message.empty() ? options_.inputs[job] + ": failed" : message);
        }
        failures_.push_back({job, code});
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
        std::string line = std::to_string(converted_) + " of " + std::to_string(options_.inputs.size()) +
                           " converted, " + std::to_string(failures_.size()) + " failed";
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
    FileSet inputFiles_;  // also what drawings read
    StagingFolder staging_;
    std::vector<Slot> slots_;
    std::uint32_t nextJob_ = 0;
    std::string current_;  // name of the input begun last
    std::size_t converted_ = 0;
    std::vector<Outcome> kept_;  // their files wait for the end
    std::vector<Failure> failures_;
    std::unordered_map<std::string, std::uint32_t> owners_;  // of numbered files
};

}  // namespace

int RunBatch(const PrintOptions& options, const BatchOptions& batch) {
    if (options.format.empty())
        return Report(
            kExitUnknownFormat, "--out-dir",
            "cannot tell the output format from the name; give it with -f: " + OutputFormatNames(", "));
    const ORVOutputFormat* format = ORVFindOutputFormat(options.format);
    if (!format)
        return Report(kExitUnknownFormat, options.format,
                      "unknown output format; supported are " + OutputFormatNames(", "));
    if (std::find(options.inputs.begin(), options.inputs.end(), "-") != options.inputs.end())
        return Report(kExitUsage, "standard input",
                      "has no name for a file in --out-dir; name it with -o FILE");
    std::string error;
    std::vector<std::string> outputs = PlanOutputs(options.inputs, batch.folder, format->name, error);
    if (!error.empty()) return Report(kExitUsage, "--out-dir", error);
    if (!batch.keepGoing)
        for (const std::string& input : options.inputs)
            if (const int code = CheckInput(input); code != kExitDone) return code;
    return Batch(options, batch, *format, std::move(outputs)).Run();
}
