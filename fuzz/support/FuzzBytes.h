// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Takes choices from the front of an input; the rest is the data they apply to. An empty input chooses 0.
class FuzzBytes {
public:
    explicit FuzzBytes(std::string_view bytes) : rest_(bytes) {}

    /// Takes a choice from 0 to count - 1.
    std::size_t Below(std::size_t count) {
        if (rest_.empty()) return 0;
        const auto byte = static_cast<std::uint8_t>(rest_.front());
        rest_.remove_prefix(1);
        return byte % count;
    }
    bool Flag() { return Below(2) == 1; }
    std::string_view GetRest() const { return rest_; }

private:
    std::string_view rest_;
};
