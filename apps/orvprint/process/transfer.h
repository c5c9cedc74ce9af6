// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

/// Transfers bytes between processes through blocking descriptors. Uses only read and write, because the
/// sandbox denies other socket calls.

/// Reads exactly `size` bytes. @return false at the end of data, or on an error with errno set
bool ReceiveBytes(int descriptor, void* bytes, std::size_t size);
/// Writes exactly `size` bytes. @return false with errno set on failure
bool SendBytes(int descriptor, const void* bytes, std::size_t size);

template <class Value>
bool Receive(int descriptor, Value& value) {
    return ReceiveBytes(descriptor, &value, sizeof value);
}

template <class Value>
bool Send(int descriptor, const Value& value) {
    return SendBytes(descriptor, &value, sizeof value);
}
