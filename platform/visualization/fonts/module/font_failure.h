// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>
#include <new>
#include <string_view>

#include "platform/visualization/fonts/text_failure.h"

/// Thrown within the module where text cannot be set as it should; never leaves it. Needs no memory.
class FontFailure final : public std::exception {
public:
    /// @param parts  one line: what is missing, and what to do
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

/// Ends in a failure, or in std::bad_alloc, for a file that could not be opened or read.
[[noreturn]] void FailForFile(std::string_view path, int error);

/// Calls `work` at the module's border. @return false after a failure, which is noted
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

/// The font libraries answer a lack of memory with empty fonts, glyphs and tables, and fontconfig falls over:
/// what they keep is not made unless there is plenty. Throws std::bad_alloc.
void MakeSureOfMemory();
/// Likewise, a folder that cannot be opened counts as empty. Throws FontFailure.
void MakeSureOfHandles();
