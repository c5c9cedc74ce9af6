// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "library/api/orvprint.h"
#include "library/input/drawings.h"
#include "library/input/file_set.h"
#include "library/print/print_words.h"
#include "platform/print/ORVPrintPreferences.h"
#include "platform/system/ORVFileAccessPolicy.h"

/// Options as the C interface takes them: key, value, ..., null.
using OptionPairs = const char* const*;

/// Allows the folders of a document, and notes which files it asked for: they are no outputs.
class DocumentAccess final : public ORVFileAccessPolicy {
public:
    void AllowFolder(const std::string& folder) { folders_.AllowFolder(folder); }
    bool MayRead(const ORVUnicodeString& path) const override;
    const FileSet& GetFiles() const { return files_; }

private:
    ORVFolderAccessPolicy folders_;
    mutable FileSet files_;
};

/// What stands behind a handle of the C interface. It belongs to one thread at a time. Throws std::bad_alloc.
class LibraryDocument final : private PrintHost, private PrintWatch {
public:
    LibraryDocument() = default;

    /// Begins a call that can fail: forgets what the one before it left.
    void BeginCall();
    /// Ends a call with what was thrown. Needs no memory.
    int Fail(PrintResult result, const char* text);
    int GetResult() const { return result_; }
    const char* GetError() const { return error_.c_str(); }

    void SetCancel(orvprint_cancel_function cancel, void* data) { cancel_ = {cancel, data}; }
    void SetProgress(orvprint_progress_function progress, void* data) { progress_ = {progress, data}; }
    void SetNote(orvprint_note_function note, void* data) { note_ = {note, data}; }

    int OpenFile(const std::string& path, OptionPairs options);
    /// @param owner  keeps the bytes where they are; null where the caller does
    int OpenBytes(std::shared_ptr<const void> owner, std::string_view bytes, OptionPairs options);
    int OpenReader(orvprint_read_function read, void* data, OptionPairs options);
    void Close();

    int CountPages(unsigned int& count);
    /// @param page  from 1
    int FindPage(unsigned int page, const PageFacts*& facts);

    int RenderFile(const std::string& path, OptionPairs options);
    int RenderDescriptor(int descriptor, OptionPairs options);
    int RenderWriter(orvprint_write_function write, void* data, OptionPairs options);
    int Check(OptionPairs options, std::string& json);
    int Dump(std::string& json);

private:
    int Report(PrintResult result, const std::string& subject, const std::string& reason) override;
    int Report(const std::string& subject, const ORVFailure& failure) override;
    bool IsCancelled() override;
    void EndPage() override;

    int SetWords(WordUse use, OptionPairs options, PrintWords& words);
    int Open(const std::string& path, OptionPairs options, const std::function<int(InputBytes& bytes)>& read);
    int ReadDrawings();
    void AllowFolders();
    int RequireOpen();
    int Render(PrintWords& words, PrintTarget& target);
    unsigned int CountWanted(const PageOptions& options) const;
    InputOrigin Origin();

    PrintResult result_ = kResultDone;
    std::string error_;
    std::pair<orvprint_cancel_function, void*> cancel_{};
    std::pair<orvprint_progress_function, void*> progress_{};
    std::pair<orvprint_note_function, void*> note_{};
    bool isCancelled_ = false;
    unsigned int pagesDone_ = 0, pagesWanted_ = 0;

    ReadWords words_;
    ORVPrintPreferences preferences_;
    std::unique_ptr<DocumentAccess> access_;
    std::string path_;
    InputBytes bytes_;
    std::vector<Drawing> drawings_;
    std::vector<PageFacts> pages_;  // of all drawings
};
