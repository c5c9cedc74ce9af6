// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>
#include <new>
#include <string_view>

#include "platform/visualization/fonts/text_failure.h"

/// Thrown inside the module when text cannot be set correctly. Never leaves the module. Allocates nothing.
class FontFailure final : public std::exception {
public:
    /// @param parts  one line when joined: what is missing, and what to do
    explicit FontFailure(std::initializer_list<std::string_view> parts) {
        std::size_t length = 0;
        for (const std::string_view part : parts) {
            const std::size_t count = std::min(part.size(), text_.size() - 1 - length);
            std::copy_n(part.begin(), count, text_.begin() + static_cast<std::ptrdiff_t>(length));
            length += count;
        }
    }
    const char* what() const noexcept override { return text_.data(); }

private:
    std::array<char, 1024> text_{};
};

/// Throws FontFailure or std::bad_alloc for a file that could not be opened or read, depending on errno.
[[noreturn]] void FailForFile(std::string_view path, int error);

/// Calls `work` at the boundary of the module. @return false after a failure, which is noted
template <class Work>
bool NotingFailure(Work work) {
    try {
        work();
        return true;
    } catch (const FontFailure& failure) {
        ORVNoteTextFailure(failure.what());
        return false;
    }
}

/// When memory is exhausted, the font libraries return empty fonts, glyphs and tables, and fontconfig
/// crashes. Objects that they cache are therefore created only while enough memory is available. Throws
/// std::bad_alloc.
void MakeSureOfMemory();
/// The same for file descriptors: a folder that cannot be opened would count as empty. Throws FontFailure.
void MakeSureOfHandles();
