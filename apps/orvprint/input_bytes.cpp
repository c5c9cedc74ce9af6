#include "apps/orvprint/input_bytes.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <new>

#include "apps/orvprint/memory_ahead.h"
#include "apps/orvprint/memory_limit.h"
#include "platform/system/ORVPrintLimits.h"

namespace {

/// Memory that grows and is not filled with zeros first.
class GrowingBytes {
public:
    ~GrowingBytes() { std::free(bytes_); }
    GrowingBytes() = default;
    GrowingBytes(const GrowingBytes&) = delete;
    GrowingBytes& operator=(const GrowingBytes&) = delete;

    void Reserve(std::size_t room) {
        void* const bytes = std::realloc(bytes_, room);
        if (!bytes) throw std::bad_alloc();
        bytes_ = static_cast<char*>(bytes);
        room_ = room;
    }
    char* GetBytes() const { return bytes_; }
    std::size_t GetRoom() const { return room_; }

private:
    char* bytes_ = nullptr;
    std::size_t room_ = 0;
};

}  // namespace

InputBytes::InputBytes(std::string&& text) {
    const auto owner = std::make_shared<const std::string>(std::move(text));
    bytes_ = *owner;
    owner_ = owner;
}

bool ReadAll(int descriptor, InputBytes& bytes) {
    // A file's size is known; one byte more finds its end without growing. Streams grow.
    struct stat information {};
    const bool isFile = fstat(descriptor, &information) == 0 && S_ISREG(information.st_mode);
    constexpr std::size_t kStreamRoom = std::size_t{1} << 16U;
    const std::size_t room = isFile ? static_cast<std::size_t>(information.st_size) + 1 : kStreamRoom;
    const std::uint64_t most = ORVPrintLimits::Get(ORVPrintLimit::kInputBytes);
    // Of a sparse file, not even the room is taken.
    if (isFile && room - 1 > most) {
        errno = EFBIG;
        return false;
    }
    const auto buffer = std::make_shared<GrowingBytes>();
    AllowMemoryFor(room);
    buffer->Reserve(room);
    if (isFile) MakeMemoryReady(buffer->GetBytes(), room);
    std::size_t size = 0;
    for (;;) {
        if (size == buffer->GetRoom()) {
            AllowMemoryFor(size);
            buffer->Reserve(std::max(kStreamRoom, 2 * size));
        }
        const ssize_t got = read(descriptor, buffer->GetBytes() + size, buffer->GetRoom() - size);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return false;
        if (got == 0) break;
        size += static_cast<std::size_t>(got);
        if (size > most) {
            errno = EFBIG;
            return false;
        }
    }
    bytes = InputBytes(buffer, {buffer->GetBytes(), size});
    return true;
}
