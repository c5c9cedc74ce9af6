// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

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

/// Reads all there is. Throws std::bad_alloc.
/// @return false with errno when reading failed; EFBIG for more than an input may have
bool ReadAll(int descriptor, InputBytes& bytes);
