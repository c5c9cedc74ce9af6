// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/image_signature.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string_view>

bool LooksLikeImage(const std::string& path) {
    constexpr std::array<std::string_view, 5> kStarts{"\x89P", "\xFF\xD8", "BM", "GI", "RI"};
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) return false;
    std::array<char, 2> start{};
    const ssize_t size = read(descriptor, start.data(), start.size());
    close(descriptor);
    const std::string_view view(start.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
    return std::find(kStarts.begin(), kStarts.end(), view) != kStarts.end();
}
