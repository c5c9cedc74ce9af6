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

/// Options of the C interface: key, value, ..., null.
using OptionPairs = const char* const*;

/// Access policy of one document. Also records which files were read, so that output never overwrites them.
class DocumentAccess final : public ORVFileAccessPolicy {
public:
    void AllowFolder(const std::string& folder) { folders_.AllowFolder(folder); }
    bool MayRead(const ORVUnicodeString& path) const override;
    const FileSet& GetFiles() const { return files_; }

private:
    ORVFolderAccessPolicy folders_;
    mutable FileSet files_;
};

/// The object behind an orvprint_document handle. Used by one thread at a time. Functions throw
/// std::bad_alloc.
class LibraryDocument final : private PrintHost, private PrintWatch {
public:
    LibraryDocument() = default;

    /// Starts a call that can fail: clears the result and error of the previous one.
    void BeginCall();
    /// Ends a call with an error. Allocates no memory for short texts, so it can report that memory ran out.
    int Fail(PrintResult result, const char* text);
    int GetResult() const { return result_; }
    const char* GetError() const { return error_.c_str(); }

    void SetCancel(orvprint_cancel_function cancel, void* data) { cancel_ = {cancel, data}; }
    void SetProgress(orvprint_progress_function progress, void* data) { progress_ = {progress, data}; }
    void SetNote(orvprint_note_function note, void* data) { note_ = {note, data}; }

    int OpenFile(const std::string& path, OptionPairs options);
    /// @param owner  keeps the bytes alive; null if the caller does
    int OpenBytes(std::shared_ptr<const void> owner, std::string_view bytes, OptionPairs options);
    int OpenReader(orvprint_read_function read, void* data, OptionPairs options);
    void Close();

    int CountPages(unsigned int& count);
    /// @param page   page number, from 1
    /// @param facts  set on success; owned by the document
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
    std::vector<PageFacts> pages_;  // of all drawings, in order
};
