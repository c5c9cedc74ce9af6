// SPDX-License-Identifier: Apache-2.0
#include "platform/print/ORVPrintPropertiesManager.h"

#include <fcntl.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/system/ORVThreadValue.h"

namespace {

constexpr std::int64_t kProbeIntervalNanoseconds = 20'000'000;

// Version 1 control groups represent "no limit" by a number near 2^63; no real limit is that large.
constexpr std::uint64_t kUnlimited = std::uint64_t{1} << 60U;

/// Reads a small kernel file with one call, since such files are returned in one piece. Empty on failure.
std::string_view ReadKernelFile(const std::string& path, std::array<char, 16384>& buffer) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return {};
    const ssize_t size = read(file, buffer.data(), buffer.size());
    close(file);
    return {buffer.data(), size > 0 ? static_cast<std::size_t>(size) : 0};
}

bool ParseNumber(std::string_view text, std::uint64_t& number) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc{};
}

/// The number after `key` at the start of a line.
bool FindNumber(std::string_view text, std::string_view key, std::uint64_t& number) {
    while (!text.empty()) {
        if (text.starts_with(key)) return ParseNumber(text.substr(key.size()), number);
        const std::size_t lineEnd = text.find('\n');
        if (lineEnd == text.npos) return false;
        text.remove_prefix(lineEnd + 1);
    }
    return false;
}

/// The files of one version of control groups.
struct ControlGroupFiles {
    std::string folder;       ///< of the process's group
    std::string root;         ///< mount point of the hierarchy
    const char* limit;        ///< name of the file with the limit in bytes, or a word for no limit
    const char* usage;        ///< name of the file with the usage in bytes
    const char* reclaimable;  ///< key in "memory.stat" of memory that the kernel can reclaim
};

bool IsReadable(const std::string& path) { return access(path.c_str(), R_OK) == 0; }

/// The memory control group of the process; an empty folder when there is none.
ControlGroupFiles FindControlGroup() {
    constexpr const char* kUnifiedRoot = "/sys/fs/cgroup";
    constexpr const char* kMemoryRoot = "/sys/fs/cgroup/memory";

    std::array<char, 16384> buffer;
    std::string_view lines = ReadKernelFile("/proc/self/cgroup", buffer);
    std::string unified, memory;
    while (!lines.empty()) {
        const std::size_t lineEnd = lines.find('\n');
        const std::string_view line = lines.substr(0, lineEnd);
        lines.remove_prefix(lineEnd == lines.npos ? lines.size() : lineEnd + 1);
        // HIERARCHY:CONTROLLERS:PATH; the controllers are separated by commas, and empty in the unified
        // hierarchy.
        const std::size_t first = line.find(':');
        const std::size_t second = first == line.npos ? line.npos : line.find(':', first + 1);
        if (second == line.npos) continue;
        const std::string controllers = "," + std::string(line.substr(first + 1, second - first - 1)) + ",";
        std::string path(line.substr(second + 1));
        if (path == "/") path.clear();
        if (controllers == ",,") unified = kUnifiedRoot + path;
        if (controllers.find(",memory,") != controllers.npos) memory = kMemoryRoot + path;
    }

    // In a container, the path may be that of the host while the container's own group is mounted at the
    // root.
    for (const std::string& folder : {unified, std::string(kUnifiedRoot)})
        if (!folder.empty() && IsReadable(folder + "/memory.current"))
            return {folder, kUnifiedRoot, "/memory.max", "/memory.current", "inactive_file "};
    for (const std::string& folder : {memory, std::string(kMemoryRoot)})
        if (!folder.empty() && IsReadable(folder + "/memory.usage_in_bytes"))
            return {folder, kMemoryRoot, "/memory.limit_in_bytes", "/memory.usage_in_bytes",
                    "total_inactive_file "};
    return {};
}

double ToFraction(std::uint64_t used, std::uint64_t total) {
    return static_cast<double>(used) / static_cast<double>(total);
}

/// The largest fraction in use among the limits of the process's group and its ancestors; negative when none
/// of them has a limit below the machine's memory.
double ReadControlGroups(const ControlGroupFiles& files, std::uint64_t machineTotal) {
    double fraction = -1.0;
    std::array<char, 16384> buffer;
    for (std::string folder = files.folder; folder.size() >= files.root.size() && !folder.empty();
         folder.resize(std::min(folder.rfind('/'), folder.size()))) {
        std::uint64_t limit = 0, usage = 0, reclaimable = 0;
        if (ParseNumber(ReadKernelFile(folder + files.limit, buffer), limit) && limit > 0 &&
            limit < kUnlimited && (machineTotal == 0 || limit < machineTotal) &&
            ParseNumber(ReadKernelFile(folder + files.usage, buffer), usage)) {
            FindNumber(ReadKernelFile(folder + "/memory.stat", buffer), files.reclaimable, reclaimable);
            fraction = std::max(fraction, ToFraction(usage - std::min(reclaimable, usage), limit));
        }
    }
    return fraction;
}

double ReadMemoryInUse() {
    static const ControlGroupFiles controlGroup = FindControlGroup();

    std::uint64_t total = 0, available = 0;
    std::array<char, 16384> buffer;
    const std::string_view machine = ReadKernelFile("/proc/meminfo", buffer);
    const bool known = FindNumber(machine, "MemTotal:", total) && total > 0;
    const bool availableKnown = known && FindNumber(machine, "MemAvailable:", available);

    constexpr std::uint64_t kBytesPerKibibyte = 1024;
    const double fraction = ReadControlGroups(controlGroup, total * kBytesPerKibibyte);
    if (fraction >= 0.0) return fraction;
    return availableKnown ? ToFraction(total - std::min(available, total), total) : 0.0;
}

struct ThreadState {
    std::vector<ORVPrintPropertiesManager::Info> infos;
    int onErrorAction = ORVPrintPropertiesManager::kContinueOnError;
    ORVPrintPropertiesManager::MemoryProbe probe = nullptr;
    double inUse = 0.0;
    std::int64_t probedAt = -kProbeIntervalNanoseconds;  // coarse monotonic time, nanoseconds
};

ORVThreadValue<ThreadState>& States() {
    static ORVThreadValue<ThreadState> states;
    return states;
}

/// Throws std::bad_alloc.
ThreadState& State() { return States().Get(); }

}  // namespace

bool ORVPrintPropertiesManager::IsLowMemory(double fraction) {
    ThreadState& state = State();
    if (state.probe) return state.probe() > fraction;

    // The coarse clock has a resolution of a few milliseconds and is read without a system call.
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &time);
    const std::int64_t now = std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
    if (now - state.probedAt >= kProbeIntervalNanoseconds) {
        state.probedAt = now;
        state.inUse = ReadMemoryInUse();
    }
    return state.inUse > fraction;
}

void ORVPrintPropertiesManager::SetMemoryProbe(MemoryProbe probe) { State().probe = probe; }

void ORVPrintPropertiesManager::AddInfo(int type, const ORVUnicodeString& message) {
    State().infos.push_back({type, message});
}

const std::vector<ORVPrintPropertiesManager::Info>& ORVPrintPropertiesManager::GetInfos() {
    static const std::vector<Info> none;
    const ThreadState* state = States().Find();
    return state ? state->infos : none;
}

void ORVPrintPropertiesManager::ClearInfos() {
    if (ThreadState* state = States().Find()) state->infos.clear();
}

int ORVPrintPropertiesManager::GetOnErrorAction() {
    const ThreadState* state = States().Find();
    return state ? state->onErrorAction : kContinueOnError;
}

void ORVPrintPropertiesManager::SetOnErrorAction(int action) { State().onErrorAction = action; }
