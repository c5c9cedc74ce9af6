// SPDX-License-Identifier: Apache-2.0
#include "library/input/input_bytes.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>

#include "library/input/foreign_input.h"
#include "platform/system/ORVPrintLimits.h"
#include "platform/system/growing_bytes.h"
#include "platform/system/gzip.h"

bool ReadAll(int descriptor, PrintHost& host, InputBytes& bytes) {
    // For a file the size is known; one extra byte detects its end without reallocation. Buffers for streams
    // grow.
    struct stat information {};
    const bool isFile = fstat(descriptor, &information) == 0 && S_ISREG(information.st_mode);
    constexpr std::size_t kStreamRoom = std::size_t{1} << 16U;
    const std::size_t room = isFile ? static_cast<std::size_t>(information.st_size) + 1 : kStreamRoom;
    const std::uint64_t most = ORVPrintLimits::Get(ORVPrintLimit::kInputBytes);
    // Checked first, so that no memory is allocated for a huge sparse file.
    if (isFile && room - 1 > most) {
        errno = EFBIG;
        return false;
    }
    const auto buffer = std::make_shared<GrowingBytes>();
    // For streams, only the bytes read are counted, not the capacity of the buffer.
    std::size_t counted = 0;
    const auto count = [&](std::size_t size) {
        if (size <= counted) return;
        host.CountInput(size - counted);
        counted = size;
    };
    if (isFile) count(room - 1);
    buffer->SetRoom(room);
    if (isFile) host.PrepareMemory(buffer->GetBytes(), room);
    std::size_t size = 0;
    for (;;) {
        if (size == buffer->GetRoom()) {
            count(size);
            buffer->SetRoom(std::max(kStreamRoom, 2 * size));
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
    count(size);
    buffer->SetSize(size);
    bytes = InputBytes(buffer, buffer->GetView());
    return true;
}

int Unpack(const InputOrigin& origin, InputBytes& bytes) {
    if (!IsGzip(bytes.GetView())) return kResultDone;
    // Counts towards the memory limit as it is stored: the size claimed in the header proves nothing.
    const auto content = std::make_shared<GrowingBytes>();
    std::string error;
    switch (UnpackGzip(bytes.GetView(), UnpackLimits::InForce(), *content, error)) {
        case UnpackResult::kUnpacked: bytes = InputBytes(content, content->GetView()); return kResultDone;
        case UnpackResult::kOverLimit: return origin.host.Report(kResultFailed, origin.name, error);
        case UnpackResult::kDamaged: break;
    }
    return origin.host.Report(kResultUnreadable, origin.name, error);
}

int ReadBytes(const InputOrigin& origin, int descriptor, InputBytes& bytes) {
    const bool isRead = ReadAll(descriptor, origin.host, bytes);
    const int error = errno;
    if (!isRead && error == EFBIG)
        return origin.host.Report(origin.name, ORVFailure::OfLimit(ORVPrintLimit::kInputBytes));
    if (!isRead) return origin.host.Report(kResultUnreadable, origin.name, std::strerror(error));
    return Unpack(origin, bytes);
}

int CheckKind(const InputOrigin& origin, const InputBytes& bytes) {
    if (bytes.GetView().empty()) return origin.host.Report(kResultUnreadable, origin.name, "is empty");
    if (const std::string_view kind = DescribeForeignInput(bytes.GetView()); !kind.empty())
        return origin.host.Report(kResultNotWellFormed, origin.name,
                                  "is " + std::string(kind) + ", not an SVG drawing");
    return kResultDone;
}
