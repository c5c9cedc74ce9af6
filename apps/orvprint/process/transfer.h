// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

/// Bytes between processes, through descriptors that wait. Nothing but read and write is called: a sandbox
/// allows no more of sockets.

/// Reads all of some bytes. @return false at the end, or with errno
bool ReceiveBytes(int descriptor, void* bytes, std::size_t size);
/// Writes all of some bytes. @return false with errno
bool SendBytes(int descriptor, const void* bytes, std::size_t size);

template <class Value>
bool Receive(int descriptor, Value& value) {
    return ReceiveBytes(descriptor, &value, sizeof value);
}

template <class Value>
bool Send(int descriptor, const Value& value) {
    return SendBytes(descriptor, &value, sizeof value);
}
