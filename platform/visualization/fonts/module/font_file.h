// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

/// A font file mapped into memory. All libraries read from it, so that a file is opened once, and a file that
/// cannot be opened is distinguished from one that contains no font.
class FontFile {
public:
    /// Opens a file. Throws FontFailure or std::bad_alloc.
    explicit FontFile(const std::string& path);
    /// Uses bytes that are already in memory.
    struct Bytes {
        std::string bytes;
    };
    explicit FontFile(Bytes own) : own_(std::move(own.bytes)) {}
    ~FontFile();
    FontFile(const FontFile&) = delete;
    FontFile& operator=(const FontFile&) = delete;

    std::string_view GetBytes() const {
        return address_ ? std::string_view(static_cast<const char*>(address_), size_) : own_;
    }

private:
    void* address_ = nullptr;
    std::size_t size_ = 0;
    const std::string own_;
};
