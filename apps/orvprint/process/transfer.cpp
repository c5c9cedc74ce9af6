// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/transfer.h"

#include <unistd.h>

#include <cerrno>

bool ReceiveBytes(int descriptor, void* bytes, std::size_t size) {
    auto* to = static_cast<char*>(bytes);
    while (size > 0) {
        const ssize_t got = read(descriptor, to, size);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        to += got;
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

bool SendBytes(int descriptor, const void* bytes, std::size_t size) {
    const auto* from = static_cast<const char*>(bytes);
    while (size > 0) {
        const ssize_t sent = write(descriptor, from, size);
        if (sent < 0 && errno == EINTR) continue;
        if (sent <= 0) return false;
        from += sent;
        size -= static_cast<std::size_t>(sent);
    }
    return true;
}
