// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "library/input/drawings.h"
#include "library/input/file_set.h"
#include "platform/system/files.h"

/// Options for reading inputs.
struct ReadOptions : DrawingOptions {
    bool withoutFileImages = false;   ///< documents may not refer to files
    std::vector<std::string> limits;  ///< "NAME=VALUE" each
    double timeLimit = 0.0;           ///< seconds per drawing; 0 for no limit
    bool withoutSandbox = false;      ///< does not enter the sandbox
    bool requiresSandbox = false;     ///< fails if the system refuses part of the sandbox
    bool endsWithInput = false;       ///< the process ends after the input, so memory need not be freed
};

/// The permitted files that drawings of this process requested since the start or the last Clear. They are
/// inputs and must not become outputs.
FileSet& FilesOfDrawings();

/// Sets a function that is called with the name of each permitted file a drawing of this process requests,
/// before it is read, even if it does not exist; repeatedly if it is requested repeatedly. Null (the default)
/// for none.
void WatchFilesOfDrawings(std::function<void(const std::string& name)> watcher);

/// Permits folders and their subfolders. Requested files are recorded, and count once each as input for the
/// memory limit.
class MeasuringAccessPolicy final : public ORVFileAccessPolicy {
public:
    void AllowFolder(const ORVUnicodeString& folder) { folders_.AllowFolder(folder); }
    bool MayRead(const ORVUnicodeString& path) const override;

private:
    ORVFolderAccessPolicy folders_;
    mutable FileSet seen_;
};

/// While it lives, documents may read files in the document's folder, in the permitted folders, and in their
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

/// Converts an argument of the command line: a path, or "-" for standard input.
InputOrigin OriginOf(const std::string& path);

/// Applies the options to this process: parser, limits and time limit.
/// @return an exit code; a failure was reported
int ApplyReadOptions(const ReadOptions& options);

/// Checks whether an input exists, without reading it. @return an exit code; a failure was reported
int CheckInput(const std::string& path);

/// Reads a complete input, decompressing gzip data regardless of its name. An empty input is a failure.
/// @param path  of a file, or "-" for standard input
/// @return an exit code; a failure was reported
int ReadInput(const std::string& path, InputBytes& bytes);

/// Reads an input, checks that it is well-formed, and passes its drawings to `use` in order; each model lives
/// only during its call. Meanwhile documents may refer to files in the input's folder and in the permitted
/// ones.
/// @param path  of a file, or "-" for standard input
/// @param use   returns an exit code; anything but kExitDone stops reading
/// @return an exit code; a failure was reported
int ForEachDrawing(const std::string& path, const ReadOptions& options,
                   const std::function<int(const Drawing& drawing)>& use);

/// Opens an input as a host does, unchecked, or the fragment selected by the options at its place in the
/// document. For inspecting the interpreter's result.
/// @return an exit code; a failure was reported
int OpenForInspection(const std::string& path, const ReadOptions& options,
                      const std::function<int(ORVPrintInterpreter& interpreter)>& use);
