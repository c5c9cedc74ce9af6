// SPDX-License-Identifier: Apache-2.0
#include "library/api/LibraryDocument.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "generators/common/ORVDescriptorOutput.h"
#include "generators/common/ORVFileOutput.h"
#include "library/print/creation_time.h"
#include "library/report/check_report.h"
#include "library/report/inspection.h"
#include "library/text/printable_text.h"
#include "platform/print/ORVPrintPropertiesManager.h"
#include "platform/print/ORVThreadPreferences.h"
#include "platform/system/ORVThreadLimits.h"
#include "platform/system/files.h"
#include "platform/system/growing_bytes.h"
#include "platform/visualization/fonts/text_failure.h"

namespace {

/// Applies a document's limits, preferences and access policy to the calling thread, and restores the
/// thread's previous ones when it goes out of scope.
class DocumentScope {
public:
    DocumentScope(const ORVPrintLimitValues& limits, const ORVPrintPreferences& preferences,
                  const DocumentAccess& access)
        : limits_(&limits), preferences_(preferences), before_(ORVFileAccessPolicy::GetCurrent()) {
        ORVFileAccessPolicy::SetCurrent(&access);
        ORVPrintPropertiesManager::ClearInfos();
    }
    ~DocumentScope() {
        ORVPrintPropertiesManager::ClearInfos();
        ORVFileAccessPolicy::SetCurrent(before_);
    }
    DocumentScope(const DocumentScope&) = delete;
    DocumentScope& operator=(const DocumentScope&) = delete;

private:
    const ORVThreadLimits limits_;
    const ORVThreadPreferences preferences_;
    const ORVFileAccessPolicy* const before_;
};

constexpr const char* kStreamAdvice =
    "takes one page of this format; choose it with the option pages, or render to a file";

class FileTarget final : public PrintTarget {
public:
    FileTarget(std::string path, const std::string& input, const FileSet& read)
        : path_(std::move(path)), input_(input), read_(read) {}

    std::string GetName() const override { return path_; }
    bool IsStream() const override { return false; }
    std::string GetAdvice() const override { return {}; }
    std::unique_ptr<ORVOutput> Open(bool isNumbered) override {
        auto output = std::make_unique<ORVFileOutput>(path_, isNumbered);
        if (!input_.empty()) output->Protect(input_);
        ProtectRead(*output);
        return output;
    }
    void BeforeCommit(ORVOutput& output) override { ProtectRead(static_cast<ORVFileOutput&>(output)); }

private:
    void ProtectRead(ORVFileOutput& output) const {
        for (const FileSet::Identity& file : read_.GetFiles()) output.Protect(file);
    }

    const std::string path_;
    const std::string& input_;
    const FileSet& read_;
};

class DescriptorTarget final : public PrintTarget {
public:
    explicit DescriptorTarget(int descriptor) : descriptor_(descriptor) {}

    std::string GetName() const override { return "output"; }
    bool IsStream() const override { return true; }
    std::string GetAdvice() const override { return kStreamAdvice; }
    std::unique_ptr<ORVOutput> Open(bool /*isNumbered*/) override {
        return std::make_unique<ORVDescriptorOutput>(descriptor_);
    }

private:
    const int descriptor_;
};

/// Collects the output until Commit(): generators may write from other threads, but the callback must be
/// called in the caller's thread.
class CallbackOutput final : public ORVOutput {
public:
    CallbackOutput(orvprint_write_function write, void* data) : write_(write), data_(data) {}

    int BeginPart() override { return 1; }
    int EndPart() override { return 1; }
    int Commit() override {
        for (const std::string& block : blocks_)
            if (write_(data_, block.data(), block.size()) != 1)
                return Try([this] { return Fail("the callback did not take it"); });
        return 1;
    }

private:
    int Append(const void* bytes, std::size_t size) override {
        constexpr std::size_t kBlock = std::size_t{1} << 20U;
        if (size == 0) return 1;
        return Try([&] {
            if (blocks_.empty() || blocks_.back().size() >= kBlock) blocks_.emplace_back();
            blocks_.back().append(static_cast<const char*>(bytes), size);
            return 1;
        });
    }

    orvprint_write_function const write_;
    void* const data_;
    std::vector<std::string> blocks_;
};

class CallbackTarget final : public PrintTarget {
public:
    CallbackTarget(orvprint_write_function write, void* data) : write_(write), data_(data) {}

    std::string GetName() const override { return "output"; }
    bool IsStream() const override { return true; }
    std::string GetAdvice() const override { return kStreamAdvice; }
    std::unique_ptr<ORVOutput> Open(bool /*isNumbered*/) override {
        return std::make_unique<CallbackOutput>(write_, data_);
    }

private:
    orvprint_write_function const write_;
    void* const data_;
};

/// Makes a message one printable line: control characters in file names and document text are escaped.
std::string Line(const std::string& subject, std::string_view reason) {
    const std::string text = subject.empty() ? std::string(reason) : subject + ": " + std::string(reason);
    std::string line;
    PrintablePieces pieces(text);
    for (std::string_view piece; pieces.Next(piece);) line += piece;
    return line;
}

std::string LimitReached(ORVPrintLimit limit) {
    const ORVPrintLimits::Row& row = ORVPrintLimits::RowOf(limit);
    return "has more than " + std::to_string(ORVPrintLimits::Get(limit)) + " " + std::string(row.what) +
           ", the limit; to allow more, open it with the option limit=" + std::string(row.name) + "=N";
}

/// File name extension, which selects the output format; empty if there is none.
std::string_view EndingOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    if (slash != path.npos) path.remove_prefix(slash + 1);
    const std::size_t dot = path.rfind('.');
    return dot == path.npos || dot == 0 ? std::string_view() : path.substr(dot + 1);
}

}  // namespace

bool DocumentAccess::MayRead(const ORVUnicodeString& path) const {
    if (!folders_.MayRead(path)) return false;
    files_.Add(std::string(path.GetView()));
    return true;
}

void LibraryDocument::BeginCall() {
    result_ = kResultDone;
    error_.clear();
    isCancelled_ = false;
}

int LibraryDocument::Fail(PrintResult result, const char* text) {
    result_ = result;
    // The messages passed here fit the string's internal buffer, so nothing is allocated when memory has run
    // out.
    error_ = text;
    return result;
}

int LibraryDocument::Report(PrintResult result, const std::string& subject, const std::string& reason) {
    const std::string line = Line(subject, reason);
    if (result == kResultDone) {
        if (note_.first) note_.first(note_.second, line.c_str());
    } else if (result_ == kResultDone) {  // the first error is kept
        result_ = result;
        error_ = line;
    }
    return result;
}

int LibraryDocument::Report(const std::string& subject, const ORVFailure& failure) {
    const PrintResult result = ResultOf(failure.reason);
    if (failure.limit) return Report(result, subject, LimitReached(*failure.limit));
    if (failure.reason == ORVFailureReason::kTextNotSet)
        return Report(result, subject, "text cannot be set: " + std::string(ORVGetTextFailure()));
    return Report(result, subject, failure.text);
}

bool LibraryDocument::IsCancelled() {
    if (!isCancelled_ && cancel_.first) isCancelled_ = cancel_.first(cancel_.second) != 0;
    return isCancelled_;
}

void LibraryDocument::EndPage() {
    ++pagesDone_;
    if (progress_.first) progress_.first(progress_.second, pagesDone_, std::max(pagesDone_, pagesWanted_));
}

int LibraryDocument::SetWords(WordUse use, OptionPairs options, PrintWords& words) {
    for (; options && *options; options += 2) {
        if (!options[1])
            return Report(kResultUsage, "--" + std::string(*options), "has no value; options are pairs");
        if (const int code = SetWord(use, *options, options[1], *this, words); code != kResultDone)
            return code;
    }
    return kResultDone;
}

InputOrigin LibraryDocument::Origin() { return {path_, path_.empty() ? "input" : path_, *this}; }

void LibraryDocument::Close() {
    drawings_.clear();
    pages_.clear();
    bytes_ = InputBytes();
    access_.reset();
    path_.clear();
}

void LibraryDocument::AllowFolders() {
    access_ = std::make_unique<DocumentAccess>();
    if (words_.readsNoFiles) return;
    if (!path_.empty()) {
        ORVUnicodeString folder, name;
        ORVSplitPath(path_, folder, name);
        access_->AllowFolder(folder.IsEmpty() ? std::string(".") : std::string(folder.GetView()));
    }
    for (const std::string& folder : words_.drawing.allowedFolders) access_->AllowFolder(folder);
}

int LibraryDocument::Open(const std::string& path, OptionPairs options,
                          const std::function<int(InputBytes&)>& read) {
    Close();
    PrintWords words;
    if (const int code = SetWords(WordUse::kReading, options, words); code != kResultDone) return code;
    words_ = words.read;
    path_ = path;
    preferences_ = PreferencesOf(words_.drawing);
    AllowFolders();
    int code = kResultDone;
    {
        const DocumentScope scope(words_.limits, preferences_, *access_);
        code = read(bytes_);
        if (code == kResultDone) code = ReadDrawings();
    }
    if (code != kResultDone) Close();
    return code;
}

int LibraryDocument::ReadDrawings() {
    const auto cancelled = [this] { return Report(kResultCancelled, Origin().name, "was cancelled"); };
    if (const int code = CheckKind(Origin(), bytes_); code != kResultDone) return code;
    if (IsCancelled()) return cancelled();
    // Checking reads the bytes again, and they may belong to the host, so they are kept.
    DrawingOptions options = words_.drawing;
    options.keepsBytes = true;
    return UseDrawings(Origin(), options, bytes_, [&](const Drawing& drawing) {
        if (IsCancelled()) return cancelled();
        pages_.insert(pages_.end(), drawing.pages.begin(), drawing.pages.end());
        drawings_.push_back(drawing);
        return static_cast<int>(kResultDone);
    });
}

int LibraryDocument::OpenFile(const std::string& path, OptionPairs options) {
    return Open(path, options, [this](InputBytes& bytes) {
        const int descriptor = open(path_.c_str(), O_RDONLY | O_CLOEXEC);
        if (descriptor < 0) return Report(kResultUnreadable, path_, std::strerror(errno));
        const int code = ReadBytes(Origin(), descriptor, bytes);
        close(descriptor);
        return code;
    });
}

int LibraryDocument::OpenBytes(std::shared_ptr<const void> owner, std::string_view given,
                               OptionPairs options) {
    return Open({}, options, [&](InputBytes& bytes) {
        if (given.size() > ORVPrintLimits::Get(ORVPrintLimit::kInputBytes))
            return Report(Origin().name, ORVFailure::OfLimit(ORVPrintLimit::kInputBytes));
        bytes = InputBytes(std::move(owner), given);
        return Unpack(Origin(), bytes);
    });
}

int LibraryDocument::OpenReader(orvprint_read_function read, void* data, OptionPairs options) {
    return Open({}, options, [&](InputBytes& bytes) {
        constexpr std::size_t kBlock = std::size_t{1} << 16U;
        const std::uint64_t most = ORVPrintLimits::Get(ORVPrintLimit::kInputBytes);
        const auto buffer = std::make_shared<std::string>();
        for (;;) {
            const std::size_t size = buffer->size();
            buffer->resize(size + kBlock);
            const std::size_t got = read(data, buffer->data() + size, kBlock);
            if (got > kBlock)
                return Report(kResultUnreadable, Origin().name, "the callback could not read it");
            buffer->resize(size + got);
            if (buffer->size() > most)
                return Report(Origin().name, ORVFailure::OfLimit(ORVPrintLimit::kInputBytes));
            if (got == 0) break;
        }
        bytes = InputBytes(buffer, *buffer);
        return Unpack(Origin(), bytes);
    });
}

int LibraryDocument::RequireOpen() {
    return drawings_.empty() ? Report(kResultUsage, "", "no document is open")
                             : static_cast<int>(kResultDone);
}

int LibraryDocument::CountPages(unsigned int& count) {
    count = static_cast<unsigned int>(pages_.size());
    return RequireOpen();
}

int LibraryDocument::FindPage(unsigned int page, const PageFacts*& facts) {
    if (const int code = RequireOpen(); code != kResultDone) return code;
    if (page == 0 || page > pages_.size())
        return Report(kResultPageOutOfRange, Origin().name,
                      "there is no page " + std::to_string(page) + " (" + std::to_string(pages_.size()) +
                          (pages_.size() == 1 ? " page)" : " pages)"));
    facts = &pages_[page - 1];
    return kResultDone;
}

unsigned int LibraryDocument::CountWanted(const PageOptions& options) const {
    if (!options.elementId.empty()) return 1;
    return static_cast<unsigned int>(
        options.pages.Select(0, static_cast<unsigned int>(pages_.size())).size());
}

int LibraryDocument::Render(PrintWords& words, PrintTarget& target) {
    const ORVOutputFormat* const format = ORVFindOutputFormat(words.pages.format);
    if (!format)
        return Report(kResultUnknownFormat, target.GetName(),
                      "cannot tell the output format from the name; give it with the option format");
    const bool isStandard = IsStandard(words_.drawing);
    PageOptions options;
    if (const int code = ReadPageWords(words.pages, isStandard, *this, options); code != kResultDone)
        return code;
    pagesDone_ = 0;
    pagesWanted_ = CountWanted(options);
    JobFacts facts;
    facts.inputNames = Origin().name;
    facts.isStandard = isStandard;
    facts.keepsDrawings = true;
    facts.creationTime =
        CreationTime(path_.empty() ? std::vector<std::string>() : std::vector<std::string>{path_});
    const DocumentScope scope(words_.limits, preferences_, *access_);
    PrintWatch* const watch = cancel_.first || progress_.first ? this : nullptr;
    PrintJob job(options, *format, std::move(facts), target, *this, watch);
    for (const Drawing& drawing : drawings_)
        if (const int code = job.Print(Origin().name, drawing); code != kResultDone) return code;
    return job.Finish();
}

int LibraryDocument::RenderFile(const std::string& path, OptionPairs options) {
    PrintWords words;
    if (const int code = RequireOpen(); code != kResultDone) return code;
    if (const int code = SetWords(WordUse::kPrinting, options, words); code != kResultDone) return code;
    if (words.pages.format.empty()) words.pages.format = EndingOf(path);
    FileTarget target(path, path_, access_->GetFiles());
    return Render(words, target);
}

int LibraryDocument::RenderDescriptor(int descriptor, OptionPairs options) {
    PrintWords words;
    if (const int code = RequireOpen(); code != kResultDone) return code;
    if (const int code = SetWords(WordUse::kPrinting, options, words); code != kResultDone) return code;
    DescriptorTarget target(descriptor);
    return Render(words, target);
}

int LibraryDocument::RenderWriter(orvprint_write_function write, void* data, OptionPairs options) {
    PrintWords words;
    if (const int code = RequireOpen(); code != kResultDone) return code;
    if (const int code = SetWords(WordUse::kPrinting, options, words); code != kResultDone) return code;
    CallbackTarget target(write, data);
    return Render(words, target);
}

int LibraryDocument::Check(OptionPairs options, std::string& json) {
    PrintWords words;
    if (const int code = RequireOpen(); code != kResultDone) return code;
    if (const int code = SetWords(WordUse::kChecking, options, words); code != kResultDone) return code;
    const DocumentScope scope(words_.limits, preferences_, *access_);
    Findings findings(words.ignored);
    const CheckedInput checked = CheckBytes(Origin(), words_.drawing, bytes_.GetView(), findings);
    if (checked.failure != kResultDone) return checked.failure;
    JsonWriter writer(json);
    WriteCheckJson(writer, Origin().name, checked, findings);
    writer.Flush();
    return kResultDone;
}

int LibraryDocument::Dump(std::string& json) {
    if (const int code = RequireOpen(); code != kResultDone) return code;
    const DocumentScope scope(words_.limits, preferences_, *access_);
    JsonWriter writer(json);
    if (drawings_.size() > 1) writer.BeginArray();
    for (const Drawing& drawing : drawings_)
        if (const int code = WriteInspection(drawing.interpreter, {Origin().name, "output", *this}, writer);
            code != kResultDone)
            return code;
    if (drawings_.size() > 1) writer.EndArray();
    writer.Flush();
    return kResultDone;
}
