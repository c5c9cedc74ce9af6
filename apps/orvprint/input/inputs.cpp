// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/input/inputs.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "apps/orvprint/process/CommandHost.h"
#include "apps/orvprint/process/limits.h"
#include "apps/orvprint/process/memory_limit.h"
#include "apps/orvprint/process/memory_prefault.h"
#include "apps/orvprint/process/report.h"
#include "apps/orvprint/process/time_limit.h"
#include "platform/print/ORVPrintInputFileStream.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintPreferences.h"
#include "platform/system/ORVRef.h"
#include "platform/system/gzip.h"

namespace {

/// Reads and decompresses a whole input, which may be empty.
/// @return an exit code; a failure has been reported
int ReadAnything(const std::string& path, InputBytes& bytes) {
    const int descriptor = path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return Report(kExitUnreadable, path, std::strerror(errno));
    const int code = ReadBytes(OriginOf(path), descriptor, bytes);
    if (descriptor != STDIN_FILENO) close(descriptor);
    return code;
}

/// True for a file within the size limit that holds plain text, judging by its first bytes. False for
/// anything that can be read only once, such as a pipe.
bool IsPlainFile(const std::string& path) {
    struct stat information {};
    if (stat(path.c_str(), &information) != 0 || !S_ISREG(information.st_mode)) return false;
    if (static_cast<std::uint64_t>(information.st_size) > ORVPrintLimits::Get(ORVPrintLimit::kInputBytes))
        return false;
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return false;
    std::array<char, 2> start{};
    const ssize_t got = read(descriptor, start.data(), start.size());
    close(descriptor);
    return got >= 0 && !IsGzip({start.data(), static_cast<std::size_t>(got)});
}

std::uint64_t SizeOf(const std::string& path) {
    struct stat information {};
    return stat(path.c_str(), &information) == 0 ? static_cast<std::uint64_t>(information.st_size) : 0;
}

/// Leaks a drawing on purpose: the process is about to exit and its memory is released at once. Freeing it
/// piece by piece takes a tenth of a print's time.
void LeaveToProcess(const std::shared_ptr<const void>& keeper) {
    static auto* const left = new std::vector<std::shared_ptr<const void>>;
    left->push_back(keeper);
}

std::function<void(const std::string&)>& Watcher() {
    static auto* const watcher = new std::function<void(const std::string&)>;
    return *watcher;
}

}  // namespace

bool MeasuringAccessPolicy::MayRead(const ORVUnicodeString& path) const {
    if (!folders_.MayRead(path)) return false;
    const std::string name(path.GetView());
    if (const auto& watcher = Watcher()) watcher(name);
    if (!seen_.Add(name)) return true;
    FilesOfDrawings().Add(name);
    // No readable image is larger than this.
    constexpr std::uint64_t kLargest = std::uint64_t{256} << 20U;
    if (const std::uint64_t size = SizeOf(name); size <= kLargest) AllowMemoryFor(size);
    return true;
}

void WatchFilesOfDrawings(std::function<void(const std::string&)> watcher) { Watcher() = std::move(watcher); }

FileSet& FilesOfDrawings() {
    static auto* const files = new FileSet;
    return *files;
}

AccessScope::AccessScope(const std::string& path, const ReadOptions& options) {
    ORVFileAccessPolicy::SetCurrent(&policy_);
    if (options.withoutFileImages) return;
    if (path != "-") {
        ORVUnicodeString folder, name;
        ORVSplitPath(path, folder, name);
        policy_.AllowFolder(folder.IsEmpty() ? ORVUnicodeString(".") : folder);
    }
    for (const std::string& folder : options.allowedFolders) policy_.AllowFolder(folder);
}

AccessScope::~AccessScope() { ORVFileAccessPolicy::SetCurrent(nullptr); }

InputOrigin OriginOf(const std::string& path) {
    return {path == "-" ? std::string() : path, DisplayName(path, "standard input"), Host()};
}

int ApplyReadOptions(const ReadOptions& options) {
    constexpr const char* kWithoutDOM = "PRINT_WITHOUT_DOM_PARSER";
    if (options.parser == "dom")
        unsetenv(kWithoutDOM);
    else
        setenv(kWithoutDOM, "1", 1);
    SetTimeLimit(options.timeLimit);
    ORVPrintPreferences::Set(PreferencesOf(options));
    return ApplyLimits(options.limits);
}

int ReadInput(const std::string& path, InputBytes& bytes) {
    if (const int code = ReadAnything(path, bytes); code != kExitDone) return code;
    return CheckKind(OriginOf(path), bytes);
}

int CheckInput(const std::string& path) {
    if (path == "-") return kExitDone;
    struct stat information {};
    if (path.find("://") != std::string::npos && stat(path.c_str(), &information) != 0)
        return Report(kExitUnreadable, path,
                      path.starts_with("file://") ? "is an address; give the path of the file"
                                                  : "is an address, not a file; download the drawing first");
    if (stat(path.c_str(), &information) != 0 || access(path.c_str(), R_OK) != 0)
        return Report(kExitUnreadable, path, std::strerror(errno));
    if (S_ISDIR(information.st_mode)) return Report(kExitUnreadable, path, "is a folder");
    return kExitDone;
}

int ForEachDrawing(const std::string& path, const ReadOptions& options,
                   const std::function<int(const Drawing&)>& use) {
    InputBytes bytes;
    if (const int code = ReadInput(path, bytes); code != kExitDone) return code;
    const MemoryPrefault memoryPrefault(bytes.GetView().size());
    const AccessScope access(path, options);
    const InputOrigin origin = OriginOf(path);
    if (!options.endsWithInput || (IsFragmentInput(origin.path, options) && !IsStandard(options)))
        return UseDrawings(origin, options, std::move(bytes), use);
    return UseDrawings(origin, options, std::move(bytes), [&use](const Drawing& drawing) {
        LeaveToProcess(drawing.keeper);
        return use(drawing);
    });
}

int OpenForInspection(const std::string& path, const ReadOptions& options,
                      const std::function<int(ORVPrintInterpreter&)>& use) {
    if (IsStandard(options))
        return ForEachDrawing(path, options,
                              [&use](const Drawing& drawing) { return use(drawing.interpreter); });
    const AccessScope access(path, options);
    InputBytes bytes;
    if (!options.fragment.empty()) {
        if (const int code = ReadInput(path, bytes); code != kExitDone) return code;
        return UseFragment(OriginOf(path), options, std::move(bytes), use);
    }
    if (const int code = CheckInput(path); code != kExitDone) return code;
    ORVRef<ORVPrintInput> input;
    if (path != "-" && IsPlainFile(path)) {
        AllowMemoryFor(SizeOf(path));
        input = ORVRef<ORVPrintInput>(new ORVPrintInputFileStream(path));
    } else {
        if (const int code = ReadAnything(path, bytes); code != kExitDone) return code;
        input = ORVRef<ORVPrintInput>(new ORVPrintInputMemoryStream(std::string(bytes.GetView())));
    }
    const auto interpreter = CreateInterpreter("SVG", input.get(), OriginOf(path));
    return interpreter ? use(*interpreter) : kExitNoModule;
}
