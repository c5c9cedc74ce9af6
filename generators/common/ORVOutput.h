#pragma once

#include <cstddef>
#include <new>
#include <string>

/// Where the bytes of a format go. An output consists of parts, one after the other: a single one for formats
/// that hold a whole document, one a page for others. Nothing shows under its final name before Commit;
/// what was not committed goes away with the object. Nothing is thrown.
class ORVOutput {
public:
    ORVOutput() = default;
    ORVOutput(const ORVOutput&) = delete;
    ORVOutput& operator=(const ORVOutput&) = delete;
    virtual ~ORVOutput();

    /// Begins a part. @return 1, or 0 with an error
    [[nodiscard]] virtual int BeginPart() = 0;
    /// Appends to the part. @return 1, or 0 with an error
    [[nodiscard]] virtual int Write(const void* bytes, std::size_t size) = 0;
    /// Ends the part: all its bytes are on their way. @return 1, or 0 with an error
    [[nodiscard]] virtual int EndPart() = 0;
    /// Puts all parts in place. @return 1, or 0 with an error
    [[nodiscard]] virtual int Commit() = 0;

    /// What went wrong first; empty when nothing did.
    const std::string& GetError() const { return error_; }

protected:
    /// Notes an error unless there is one already. @return 0
    int Fail(const std::string& error);

    /// Does what may need memory. @return what it returns, or 0 with an error
    template <class Work>
    int Try(Work work) {
        try {
            return work();
        } catch (const std::bad_alloc&) {
            return Fail("memory is spent");  // so short that it needs none
        }
    }

private:
    std::string error_;
};

/// An output that stays in memory.
class ORVMemoryOutput final : public ORVOutput {
public:
    int BeginPart() override;
    int Write(const void* bytes, std::size_t size) override;
    int EndPart() override { return 1; }
    int Commit() override { return 1; }

    std::size_t GetPartCount() const { return count_; }
    /// The bytes of all parts, one after the other.
    const std::string& GetBytes() const { return bytes_; }

private:
    std::string bytes_;
    std::size_t count_ = 0;
};
