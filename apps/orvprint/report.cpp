#include "apps/orvprint/report.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "apps/orvprint/memory_limit.h"
#include "platform/visualization/fonts/text_failure.h"

namespace {

/// Text on its way to standard error. Needs no memory, of which there may be none left.
class ErrorLine {
public:
    ErrorLine() = default;
    ~ErrorLine() { Flush(); }
    ErrorLine(const ErrorLine&) = delete;
    ErrorLine& operator=(const ErrorLine&) = delete;

    /// One line, whatever a document or file name holds.
    void Put(std::string_view text) {
        for (const char c : text) PutByte(static_cast<unsigned char>(c) < 0x20 ? ' ' : c);
    }
    void End() { PutByte('\n'); }

private:
    void PutByte(char c) {
        if (size_ == bytes_.size()) Flush();
        bytes_[size_++] = c;
    }
    void Flush() {
        std::fwrite(bytes_.data(), 1, size_, stderr);
        size_ = 0;
    }

    std::array<char, 4096> bytes_{};
    std::size_t size_ = 0;
};

}  // namespace

std::string DisplayName(const std::string& path, std::string_view standardStream) {
    return path == "-" ? std::string(standardStream) : path;
}

int Report(ExitCode code, const std::string& subject, const std::string& reason) {
    ErrorLine line;
    line.Put("orvprint: ");
    if (!subject.empty()) {
        line.Put(subject);
        line.Put(": ");
    }
    line.Put(reason);
    // Those words come from every library of ours, as texts.
    if (reason.ends_with("memory is spent"))
        if (const std::uint64_t limit = GetMemoryLimitReached(); limit != 0) {
            std::array<char, 24> number{};
            const char* const end = std::to_chars(number.data(), number.data() + number.size(), limit).ptr;
            line.Put(": more than ");
            line.Put({number.data(), static_cast<std::size_t>(end - number.data())});
            line.Put(" bytes, which is the limit; if that is meant, raise it with --limit memory=N");
        }
    line.End();
    return code;
}

std::string TextCannotBeSet() { return "text cannot be set: " + std::string(ORVGetTextFailure()); }
