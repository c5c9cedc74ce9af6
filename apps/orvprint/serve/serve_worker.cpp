// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/serve/serve_worker.h"

#include <fcntl.h>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/sendfile.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>
#include <string_view>
#include <thread>

#include "apps/orvprint/commands/check_command.h"
#include "apps/orvprint/commands/run_sandbox.h"
#include "apps/orvprint/process/memory_limit.h"
#include "apps/orvprint/process/report.h"
#include "apps/orvprint/process/time_limit.h"
#include "apps/orvprint/process/transfer.h"
#include "generators/formats.h"

namespace {

constexpr std::uint64_t kKeptMemory = std::uint64_t{64} << 20U;  // bytes that a worker may keep between jobs
constexpr std::uint64_t kWornMemory = std::uint64_t{512}
                                      << 20U;  // after a job that took more, the worker is replaced
constexpr std::uint32_t kMostWordBytes = std::uint32_t{1} << 20U;

constexpr std::string_view kFirstDrawing =
    "<svg xmlns='http://www.w3.org/2000/svg' width='90' height='90'><rect width='9' height='9' fill='red'/>"
    "<path d='M0 0 L 10 10' stroke='black'/><text x='5' y='40' font-family='sans-serif' font-size='9'>"
    "Warm \u00e9</text></svg>";

/// Replaces a standard stream with a file in memory.
bool ReplaceStream(int stream, const char* name) {
    const int memory = memfd_create(name, MFD_CLOEXEC);
    if (memory < 0) return false;
    const bool isReplaced = dup2(memory, stream) == stream;
    close(memory);
    return isReplaced;
}

bool EmptyStream(int stream) { return ftruncate(stream, 0) == 0 && lseek(stream, 0, SEEK_SET) == 0; }

bool PrepareStreams() {
    return ReplaceStream(STDIN_FILENO, "drawing") && ReplaceStream(STDOUT_FILENO, "document");
}

/// Prints the built-in drawing. @return an exit code
int PrintFirst(const ServeSettings& settings, const char* interpreter) {
    if (!EmptyStream(STDIN_FILENO) || !EmptyStream(STDOUT_FILENO) ||
        !SendBytes(STDIN_FILENO, kFirstDrawing.data(), kFirstDrawing.size()) ||
        lseek(STDIN_FILENO, 0, SEEK_SET) != 0)
        return Report(kExitFailed, "", std::string("no memory for drawings: ") + std::strerror(errno));
    ServeJob job;
    const HttpWords words{{"interpreter", interpreter}};
    if (const int code = ReadJobWords(words, settings, job); code != kExitDone) return code;
    job.print.threads = 1;
    // No time limit: this drawing is ours, and the machine may be slow.
    SetTimeLimit(0.0);
    return RunPrint(job.print);
}

unsigned int ThreadsOf(const ServeSettings& settings) {
    const unsigned int processors = std::max(1U, std::thread::hardware_concurrency());
    return std::max(processors / std::max(settings.workers, 1U), 1U);
}

}  // namespace

int WarmUp(const ServeSettings& settings) {
    if (!PrepareStreams()) return Report(kExitFailed, "", std::strerror(errno));
    if (const int code = ApplyReadOptions(settings.read); code != kExitDone) return code;
    for (const char* interpreter : {"SVG", "SVG2"})
        if (const int code = PrintFirst(settings, interpreter); code != kExitDone) return code;
    return kExitDone;
}

int ServeWorker::Live() {
    if (const int code = Prepare(); code != kExitDone) return code;
    if (!Send(service_, kWorkerReady)) return kExitDone;
    JobHead head;
    for (HttpWords words; ReadJob(head, words); words.clear()) {
        AnswerHead answer;
        const std::uint64_t before = memory_.Get();
        memory_.Begin();
        try {
            Do(head, words, answer);
        } catch (const std::bad_alloc&) {
            answer.code = ReportOutOfMemory("");
            answer.isOutOfMemory = 1;
        } catch (const std::exception& error) {
            answer.code = Report(kExitFailed, "", error.what());
        }
        const std::uint64_t peak = memory_.Get();
        answer.isWorn = peak > kWornMemory && peak > before ? 1 : 0;
        if (!SendAnswer(answer)) break;
        if (peak > kKeptMemory) malloc_trim(0);
    }
    return kExitDone;
}

int ServeWorker::Prepare() {
    if (!PrepareStreams()) return Report(kExitFailed, "", std::strerror(errno));
    memory_.Open();
    threads_ = ThreadsOf(settings_);
    RunFiles files{.inputs = {"-"}, .output = "-"};
    // A job may request any format.
    files.keepsTemporaryFiles = true;
    return EnterSandboxFor(settings_.read, std::move(files));
}

bool ServeWorker::ReadJob(JobHead& head, HttpWords& words) {
    if (!Receive(service_, head) || head.wordBytes > kMostWordBytes) return false;
    std::string bytes(head.wordBytes, '\0');
    return ReceiveBytes(service_, bytes.data(), bytes.size()) && DecodeWords(bytes, words) &&
           ReadBody(head.bodyBytes);
}

bool ServeWorker::ReadBody(std::uint64_t size) const {
    if (!EmptyStream(STDIN_FILENO) || !EmptyStream(STDOUT_FILENO)) return false;
    std::array<char, 65536> block;
    while (size > 0) {
        const std::size_t part = std::min<std::uint64_t>(size, block.size());
        if (!ReceiveBytes(service_, block.data(), part) || !SendBytes(STDIN_FILENO, block.data(), part))
            return false;
        size -= part;
    }
    return lseek(STDIN_FILENO, 0, SEEK_SET) == 0;
}

void ServeWorker::Do(const JobHead& head, const HttpWords& words, AnswerHead& answer) {
    NameStandardInput("drawing");
    TakeReportedReason();
    // Resets what the previous job set.
    answer.code = ApplyReadOptions(settings_.read);
    ServeJob job;
    if (answer.code == kExitDone) answer.code = ReadJobWords(words, settings_, job);
    if (answer.code == kExitDone) answer.code = ApplyReadOptions(job.print.read);
    if (answer.code != kExitDone) return;
    NameStandardInput(job.name.empty() ? "drawing" : job.name);
    answer.code = head.kind == JobKind::kPrint ? Print(job, answer) : Check(job, answer);
    answer.isOutOfMemory = TakeReportedReason() == ORVFailureReason::kOutOfMemory ? 1 : 0;
    SetTimeLimit(0.0);
}

int ServeWorker::Print(ServeJob& job, AnswerHead& answer) const {
    PrintFacts facts;
    job.print.facts = &facts;
    job.print.threads = threads_;
    const int code = RunPrint(job.print);
    answer.pages = facts.pages;
    if (const ORVOutputFormat* const format = ORVFindOutputFormat(job.print.format))
        format->name.copy(answer.format.data(), answer.format.size() - 1);
    // Printing has read the drawing to its end.
    if (code == kExitDone && job.countsFindings && lseek(STDIN_FILENO, 0, SEEK_SET) == 0) {
        DrawingTime time;
        time.Begin(DisplayName("-", "standard input"));
        answer.findings = static_cast<std::int64_t>(CountFindings("-", job.print.read, job.print.ignored));
    }
    return code;
}

int ServeWorker::Check(const ServeJob& job, AnswerHead& answer) {
    CheckOptions check;
    check.read = job.print.read;
    check.inputs = {"-"};
    check.ignored = job.print.ignored;
    check.asJson = true;
    const int code = RunCheck(check);
    std::string_view("json").copy(answer.format.data(), answer.format.size() - 1);
    return code == kExitFound ? static_cast<int>(kExitDone) : code;
}

bool ServeWorker::SendAnswer(AnswerHead answer) const {
    // The incomplete output of a failed job is not sent.
    const off_t size = answer.code == kExitDone ? lseek(STDOUT_FILENO, 0, SEEK_END) : 0;
    answer.bodyBytes = size > 0 ? static_cast<std::uint64_t>(size) : 0;
    std::fflush(stderr);
    if (!Send(service_, answer)) return false;
    for (off_t at = 0; at < size;) {
        const ssize_t sent = sendfile(service_, STDOUT_FILENO, &at, static_cast<std::size_t>(size - at));
        if (sent < 0 && errno == EINTR) continue;
        if (sent <= 0) return false;
    }
    return true;
}
