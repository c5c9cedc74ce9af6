// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

/// The bytes of a font file, mapped into memory. All libraries read them here, so that a file is opened once,
/// and that a file which cannot be opened is told from one that holds no font.
class FontFile {
public:
    /// Throws FontFailure or std::bad_alloc.
    explicit FontFile(const std::string& path);
    /// Bytes that are in memory already.
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
