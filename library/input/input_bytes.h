// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "library/input/PrintHost.h"

/// The bytes of an input, with shared ownership: copies refer to the same bytes.
class InputBytes {
public:
    InputBytes() = default;
    /// @param owner  keeps the bytes alive; null if the caller does
    InputBytes(std::shared_ptr<const void> owner, std::string_view bytes)
        : owner_(std::move(owner)), bytes_(bytes) {}

    std::string_view GetView() const { return bytes_; }
    const std::shared_ptr<const void>& GetOwner() const { return owner_; }

private:
    std::shared_ptr<const void> owner_;
    std::string_view bytes_;
};

/// The source of an input, and the host that receives messages about it.
struct InputOrigin {
    std::string path;  ///< path of its file; empty for bytes from elsewhere
    std::string name;  ///< its name in messages
    PrintHost& host;   ///< must outlive this object
};

/// Reads a descriptor to its end. Throws std::bad_alloc.
/// @return false with errno set if reading failed; EFBIG if the input exceeds the size limit
bool ReadAll(int descriptor, PrintHost& host, InputBytes& bytes);

/// Reads a whole input and decompresses it if it is gzip data, whatever its name; it may be empty.
/// @return a result; failures are reported to the host
int ReadBytes(const InputOrigin& origin, int descriptor, InputBytes& bytes);

/// Replaces compressed bytes with their content.
/// @return a result; failures are reported to the host
int Unpack(const InputOrigin& origin, InputBytes& bytes);

/// Checks that an input is not empty and is not recognised as another file type.
/// @return a result; failures are reported to the host
int CheckKind(const InputOrigin& origin, const InputBytes& bytes);
