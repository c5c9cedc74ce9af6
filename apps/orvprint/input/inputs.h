// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "library/input/drawings.h"
#include "library/input/file_set.h"
#include "platform/system/files.h"

/// How the command reads inputs.
struct ReadOptions : DrawingOptions {
    bool withoutFileImages = false;   ///< documents may not name any files
    std::vector<std::string> limits;  ///< each "NAME=VALUE"
    double timeLimit = 0.0;           ///< seconds for a drawing; 0: no limit
    bool withoutSandbox = false;      ///< keep rights that the command does not need
    bool requiresSandbox = false;     ///< fail if the system does not support part of the sandbox
    bool endsWithInput = false;       ///< the process exits after the input, so its memory is not freed
};

/// The permitted files that drawings of this process have asked for since the start or the last Clear: they
/// count as inputs and must not become outputs.
FileSet& FilesOfDrawings();

/// Called with the name of each permitted file that a drawing of this process asks for, existing or not,
/// before it is read; again each time it asks. Null, as at the start: not called.
void WatchFilesOfDrawings(std::function<void(const std::string& name)> watcher);

/// Allows folders and their subfolders. Each file that is asked for counts once as input to the memory limit,
/// and is recorded.
class MeasuringAccessPolicy final : public ORVFileAccessPolicy {
public:
    void AllowFolder(const ORVUnicodeString& folder) { folders_.AllowFolder(folder); }
    bool MayRead(const ORVUnicodeString& path) const override;

private:
    ORVFolderAccessPolicy folders_;
    mutable FileSet seen_;
};

/// During its lifetime, documents may read files in their own folder, the allowed folders, and all
/// subfolders.
class AccessScope {
public:
    /// @param path  of the document, or "-" for standard input, which has no folder
    AccessScope(const std::string& path, const ReadOptions& options);
    ~AccessScope();
    AccessScope(const AccessScope&) = delete;
    AccessScope& operator=(const AccessScope&) = delete;

private:
    MeasuringAccessPolicy policy_;
};

/// An input on the command line: a path, or "-" for standard input.
InputOrigin OriginOf(const std::string& path);

/// Applies the options to this process: the interpreters' parser and the limits, including time.
/// @return an exit code; a failure has been reported
int ApplyReadOptions(const ReadOptions& options);

/// Checks that an input exists, without reading it.
/// @return an exit code; a failure has been reported
int CheckInput(const std::string& path);

/// Reads a whole input and decompresses it if it is gzip data, whatever its name. An empty input is a
/// failure.
/// @param path  of a file, or "-" for standard input
/// @return an exit code; a failure has been reported
int ReadInput(const std::string& path, InputBytes& bytes);

/// Reads an input, checks that it is well-formed, and passes its drawings to `use` one by one; each model
/// lives only during its call. Meanwhile, documents may read files in the input's own folder and the allowed
/// folders.
/// @param path  of a file, or "-" for standard input
/// @param use   returns an exit code; any code but kExitDone stops the reading
/// @return an exit code; a failure has been reported
int ForEachDrawing(const std::string& path, const ReadOptions& options,
                   const std::function<int(const Drawing& drawing)>& use);

/// Opens an input without checking it, as a host does, or the fragment that the options name in its place in
/// the document. Used to show what the interpreter makes of it.
/// @return an exit code; a failure has been reported
int OpenForInspection(const std::string& path, const ReadOptions& options,
                      const std::function<int(ORVPrintInterpreter& interpreter)>& use);
