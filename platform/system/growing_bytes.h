// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>
#include <string_view>

/// Resizable byte buffer that, unlike std::string, does not zero new memory, so that unused pages are never
/// touched.
class GrowingBytes {
public:
    GrowingBytes() = default;
    ~GrowingBytes() { std::free(bytes_); }
    GrowingBytes(const GrowingBytes&) = delete;
    GrowingBytes& operator=(const GrowingBytes&) = delete;

    /// Resizes the buffer, up or down. Throws std::bad_alloc.
    void SetRoom(std::size_t room) {
        void* const bytes = std::realloc(bytes_, room > 0 ? room : 1);
        if (!bytes) throw std::bad_alloc();
        bytes_ = static_cast<char*>(bytes);
        room_ = room;
    }
    std::size_t GetRoom() const { return room_; }
    char* GetBytes() const { return bytes_; }

    /// Sets the number of bytes in use, counted from the start.
    void SetSize(std::size_t size) { size_ = size; }
    std::string_view GetView() const { return {bytes_, size_}; }

private:
    char* bytes_ = nullptr;
    std::size_t room_ = 0;
    std::size_t size_ = 0;
};
