// SPDX-License-Identifier: Apache-2.0
#include "apps/cups/conversion.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <string_view>

namespace {

constexpr std::array kEndingSignals{SIGTERM, SIGINT, SIGHUP, SIGQUIT};

volatile std::sig_atomic_t caught = 0;
volatile std::sig_atomic_t running = 0;  // the command's process

void PassOn(int signal) {
    const int error = errno;
    caught = signal;
    if (running > 0) kill(running, SIGTERM);
    errno = error;
}

std::string TemporaryFolder() {
    const char* const folder = std::getenv("TMPDIR");
    return folder && *folder ? folder : "/tmp";
}

/// The command is at the same relative place as in the installation, or, in a build folder, beside the
/// filter. The filter's folder belongs to root, or the print system would not have started it.
std::string FindCommand() {
    std::array<char, PATH_MAX> path{};
    const ssize_t size = readlink("/proc/self/exe", path.data(), path.size() - 1);
    if (size <= 0) return {};
    std::string folder(path.data(), static_cast<std::size_t>(size));
    folder.resize(folder.rfind('/') + 1);
    for (const char* name : {ORV_COMMANDS_FROM_FILTERS "/orvprint", "orvprint"})
        if (access((folder + name).c_str(), X_OK) == 0) return folder + name;
    return {};
}

std::vector<std::string> ArgumentsFor(const FilterSettings& settings, const std::string& command) {
    std::vector<std::string> arguments{command,
                                       "-",
                                       "-f",
                                       "pdf",
                                       "-o",
                                       "-",
                                       "--interpreter",
                                       settings.interpreter,
                                       "--no-file-images",
                                       "--detect-qvxml",
                                       "--quiet",
                                       "--time-limit",
                                       settings.seconds};
    if (!settings.memory.empty()) arguments.insert(arguments.end(), {"--limit", "memory=" + settings.memory});
    for (const std::string& limit : settings.limits) arguments.insert(arguments.end(), {"--limit", limit});
    return arguments;
}

/// In the child: the command, with three descriptors and none of the print system's.
[[noreturn]] void Become(const std::vector<std::string>& arguments, const std::array<int, 3>& streams,
                         pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(127);
    for (int stream = 0; stream < 3; ++stream)
        if (dup2(streams[static_cast<std::size_t>(stream)], stream) < 0) _exit(127);
    close_range(3, ~0U, 0);
    // The font index must be in a folder that filters may write to, unless the administrator set one.
    setenv("ORVPRINT_CACHE_DIR", (TemporaryFolder() + "/orvprint").c_str(), 0);
    std::vector<char*> words;
    words.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    execv(words.front(), words.data());
    _exit(127);
}

/// Reads to the end of the stream and keeps the beginning.
std::string ReadErrors(int descriptor) {
    constexpr std::size_t kMost = std::size_t{64} << 10U;
    std::string text;
    std::array<char, 4096> bytes;
    for (;;) {
        const ssize_t count = read(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return text;
        text.append(bytes.data(), std::min(static_cast<std::size_t>(count), kMost - text.size()));
    }
}

std::vector<std::string> LinesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        if (end > 0) lines.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

/// Starts the child with signals blocked until its process id is stored.
pid_t Start(const std::vector<std::string>& arguments, const std::array<int, 3>& streams) {
    sigset_t ending, before;
    sigemptyset(&ending);
    for (const int signal : kEndingSignals) sigaddset(&ending, signal);
    sigprocmask(SIG_BLOCK, &ending, &before);
    const pid_t parent = getpid();
    const pid_t child = caught != 0 ? -1 : fork();
    if (child == 0) {
        for (const int signal : kEndingSignals) std::signal(signal, SIG_DFL);
        sigprocmask(SIG_SETMASK, &before, nullptr);
        Become(arguments, streams, parent);
    }
    if (child > 0) running = child;
    sigprocmask(SIG_SETMASK, &before, nullptr);
    return child;
}

}  // namespace

HeldPages::~HeldPages() {
    if (descriptor_ >= 0) close(descriptor_);
}

bool HeldPages::Open() {
    const std::string folder = TemporaryFolder();
    descriptor_ = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (descriptor_ >= 0) return true;
    // Not every file system supports unnamed files.
    std::string name = folder + "/orvprint-XXXXXX";
    descriptor_ = mkostemp(name.data(), O_CLOEXEC);
    if (descriptor_ >= 0) unlink(name.c_str());
    return descriptor_ >= 0;
}

bool HeldPages::CopyTo(int descriptor) const {
    std::array<char, 65536> bytes;
    off_t at = 0;
    for (;;) {
        const ssize_t count = pread(descriptor_, bytes.data(), bytes.size(), at);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return count == 0;
        for (ssize_t done = 0; done < count;) {
            const ssize_t written =
                write(descriptor, bytes.data() + done, static_cast<std::size_t>(count - done));
            if (written < 0 && errno == EINTR && caught == 0) continue;
            if (written <= 0) return false;
            done += written;
        }
        at += count;
    }
}

void CatchEndingSignals() {
    struct sigaction action {};
    action.sa_handler = PassOn;
    // Without SA_RESTART: blocking calls return, so that the caller notices the signal.
    for (const int signal : kEndingSignals) sigaction(signal, &action, nullptr);
}

void EndBySignalCaught() {
    if (caught == 0) return;
    std::signal(caught, SIG_DFL);
    std::raise(caught);
}

bool Convert(const FilterSettings& settings, int drawing, int pages, Conversion& conversion) {
    const std::string command = FindCommand();
    if (command.empty()) {
        errno = ENOENT;
        return false;
    }
    std::array<int, 2> errors{};
    if (pipe2(errors.data(), O_CLOEXEC) != 0) return false;
    const pid_t child = Start(ArgumentsFor(settings, command), {drawing, pages, errors[1]});
    close(errors[1]);
    const bool isStarted = child > 0;
    if (isStarted) conversion.lines = LinesOf(ReadErrors(errors[0]));
    close(errors[0]);
    if (!isStarted) return false;
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    running = 0;
    if (WIFEXITED(status)) conversion.exitCode = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) conversion.signal = WTERMSIG(status);
    return true;
}
