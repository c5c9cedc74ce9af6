// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "library/input/PrintHost.h"

/// The bytes of an input. Copies share them.
class InputBytes {
public:
    InputBytes() = default;
    /// Bytes that an owner keeps in place.
    InputBytes(std::shared_ptr<const void> owner, std::string_view bytes)
        : owner_(std::move(owner)), bytes_(bytes) {}

    std::string_view GetView() const { return bytes_; }
    const std::shared_ptr<const void>& GetOwner() const { return owner_; }

private:
    std::shared_ptr<const void> owner_;
    std::string_view bytes_;
};

/// Where an input comes from, and who hears what becomes of it.
struct InputOrigin {
    std::string path;  ///< of its file; empty for bytes that lie nowhere
    std::string name;  ///< what messages call it
    PrintHost& host;   ///< must outlive this
};

/// Reads all there is. Throws std::bad_alloc.
/// @return false with errno when reading failed; EFBIG for more than an input may have
bool ReadAll(int descriptor, PrintHost& host, InputBytes& bytes);

/// Reads all of an input and unpacks it when it is gzip data, whatever its name; it may be empty.
/// @return a result; a failure was reported
int ReadBytes(const InputOrigin& origin, int descriptor, InputBytes& bytes);

/// Replaces packed bytes by what they hold. @return a result; a failure was reported
int Unpack(const InputOrigin& origin, InputBytes& bytes);

/// Whether bytes may be a drawing: there are some, and they are of no other kind that can be told.
/// @return a result; a failure was reported
int CheckKind(const InputOrigin& origin, const InputBytes& bytes);
