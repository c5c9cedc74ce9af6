// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "apps/orvprint/input/input_bytes.h"
#include "library/input/file_set.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/files.h"
#include "platform/xml/ORVXmlNode.h"

/// How inputs are read.
struct ReadOptions {
    std::string interpreter = "SVG";  ///< or "SVG2", for standard SVG
    std::string parser = "light";     ///< or "dom"
    bool qvxml = false;               ///< drawings inside an XML document, whatever the input's name
    std::string fragment;             ///< number or identifier of one of them; empty for the outermost ones
    bool keepGoing = false;           ///< print what stands before an error in the XML
    std::vector<std::string> allowedFolders;
    std::vector<std::string> limits;  ///< as "NAME=VALUE" each
    double timeLimit = 0.0;           ///< seconds for a drawing; 0 for as long as it takes
    bool withoutSandbox = false;      ///< keep what the command does not need
    std::string languages;            ///< that the user reads, as "en,de"; empty for the locale's
    double fontSize = 12.0;           ///< px, of text that states no size; for standard SVG only
    bool requiresSandbox = false;     ///< fail where the system refuses part of the sandbox
    bool endsWithInput = false;       ///< the process ends after the input, and its memory with it
};

/// The files that drawings of this process asked for and may read, from the beginning or the last Clear on:
/// they are inputs, too, and no outputs.
FileSet& FilesOfDrawings();

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

/// What is known of a drawing's page.
struct PageFacts {
    double width = 0.0, height = 0.0;  ///< user units of 1/90 inch
    bool hasArea = false;              ///< else it cannot be printed
    std::string title;
};

/// A drawing whose pages are known.
struct Drawing {
    ORVPrintInterpreter& interpreter;
    std::vector<PageFacts> pages;
    bool isOnly;  ///< the only drawing of its input
    /// Elements of its document that the interpreter SVG does not read; see ORVXmlTree.
    std::uint32_t unreadElements = 0;
};

/// Applies the options to this process: the parser that interpreters choose, limits, that of time too.
/// @return an exit code; a failure was reported
int ApplyReadOptions(const ReadOptions& options);

/// Whether an input is read as an XML document with drawings inside.
bool IsFragmentInput(const std::string& path, const ReadOptions& options);

/// Finds out whether an input is there, without reading it. @return an exit code; a failure was reported
int CheckInput(const std::string& path);

/// The drawings inside an XML document that the options ask for; that there are none was reported.
std::vector<const ORVXmlNode*> SelectFragments(const ORVXmlNode* root, const std::string& path,
                                               const ReadOptions& options);

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
