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
    bool withoutFileImages = false;   ///< documents may name no files at all
    std::vector<std::string> limits;  ///< as "NAME=VALUE" each
    double timeLimit = 0.0;           ///< seconds for a drawing; 0 for as long as it takes
    bool withoutSandbox = false;      ///< keep what the command does not need
    bool requiresSandbox = false;     ///< fail where the system refuses part of the sandbox
    bool endsWithInput = false;       ///< the process ends after the input, and its memory with it
};

/// The files that drawings of this process asked for and may read, from the beginning or the last Clear on:
/// they are inputs, too, and no outputs.
FileSet& FilesOfDrawings();

/// Told the name of each file that a drawing of this process asks for and may read, also of one that is not
/// there, before it is read; more than once, if the drawing asks again. Null for nobody, as at first.
void WatchFilesOfDrawings(std::function<void(const std::string& name)> watcher);

/// Allows folders and what lies below them. Files that are asked for count as input to the limit of memory,
/// once each, and are noted.
class MeasuringAccessPolicy final : public ORVFileAccessPolicy {
public:
    void AllowFolder(const ORVUnicodeString& folder) { folders_.AllowFolder(folder); }
    bool MayRead(const ORVUnicodeString& path) const override;

private:
    ORVFolderAccessPolicy folders_;
    mutable FileSet seen_;
};

/// Lets documents read files for as long as it lives: those of the document's own folder and of the allowed
/// ones, and what lies below them.
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

/// An input of the command line: a path, or "-" for standard input.
InputOrigin OriginOf(const std::string& path);

/// Applies the options to this process: the parser that interpreters choose, limits, that of time too.
/// @return an exit code; a failure was reported
int ApplyReadOptions(const ReadOptions& options);

/// Finds out whether an input is there, without reading it. @return an exit code; a failure was reported
int CheckInput(const std::string& path);

/// Reads all of an input and unpacks it when it is gzip data, whatever its name. An empty one is a failure.
/// @param path  of a file, or "-" for standard input
/// @return an exit code; a failure was reported
int ReadInput(const std::string& path, InputBytes& bytes);

/// Reads an input, checks that it is well formed, and hands its drawings to `use`, one after the other; each
/// model lives only during its call. While documents are read, they may name files of the input's own folder
/// and of the allowed ones.
/// @param path  of a file, or "-" for standard input
/// @param use   returns an exit code; anything but kExitDone ends the reading
/// @return an exit code; a failure was reported
int ForEachDrawing(const std::string& path, const ReadOptions& options,
                   const std::function<int(const Drawing& drawing)>& use);

/// Opens an input as a host does, unchecked, or the fragment that the options name, in its place in the
/// document. For looking at what the interpreter makes of it.
/// @return an exit code; a failure was reported
int OpenForInspection(const std::string& path, const ReadOptions& options,
                      const std::function<int(ORVPrintInterpreter& interpreter)>& use);
