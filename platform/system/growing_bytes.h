// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>
#include <string_view>

/// Memory that grows without being filled with zeros first, so that what is not used takes no room.
class GrowingBytes {
public:
    GrowingBytes() = default;
    ~GrowingBytes() { std::free(bytes_); }
    GrowingBytes(const GrowingBytes&) = delete;
    GrowingBytes& operator=(const GrowingBytes&) = delete;

    /// Makes room for so many bytes, more or less than before. Throws std::bad_alloc.
    void SetRoom(std::size_t room) {
        void* const bytes = std::realloc(bytes_, room > 0 ? room : 1);
        if (!bytes) throw std::bad_alloc();
        bytes_ = static_cast<char*>(bytes);
        room_ = room;
    }
    std::size_t GetRoom() const { return room_; }
    char* GetBytes() const { return bytes_; }

    /// How many bytes are in use, from the first one on.
    void SetSize(std::size_t size) { size_ = size; }
    std::string_view GetView() const { return {bytes_, size_}; }

private:
    char* bytes_ = nullptr;
    std::size_t room_ = 0;
    std::size_t size_ = 0;
};
