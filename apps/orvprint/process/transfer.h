// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

/// Transfers bytes between processes through blocking descriptors. Uses read and write only, because the
/// sandbox allows no other calls on sockets.

/// Reads exactly as many bytes as fit.
/// @return false at the end of the stream, or with errno
bool ReceiveBytes(int descriptor, void* bytes, std::size_t size);
/// Writes all bytes.
/// @return false with errno
bool SendBytes(int descriptor, const void* bytes, std::size_t size);

template <class Value>
bool Receive(int descriptor, Value& value) {
    return ReceiveBytes(descriptor, &value, sizeof value);
}

template <class Value>
bool Send(int descriptor, const Value& value) {
    return SendBytes(descriptor, &value, sizeof value);
}
