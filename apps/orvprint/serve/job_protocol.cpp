// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/serve/job_protocol.h"

#include <cstring>

namespace {

void Append(std::string& bytes, std::string_view text) {
    const auto size = static_cast<std::uint32_t>(text.size());
    bytes.append(reinterpret_cast<const char*>(&size), sizeof size).append(text);
}

bool Take(std::string_view& bytes, std::string& text) {
    std::uint32_t size = 0;
    if (bytes.size() < sizeof size) return false;
    std::memcpy(&size, bytes.data(), sizeof size);
    bytes.remove_prefix(sizeof size);
    if (bytes.size() < size) return false;
    text.assign(bytes.substr(0, size));
    bytes.remove_prefix(size);
    return true;
}

}  // namespace

std::string EncodeWords(const HttpWords& words) {
    std::string bytes;
    for (const auto& [name, value] : words) {
        Append(bytes, name);
        Append(bytes, value);
    }
    return bytes;
}

bool DecodeWords(std::string_view bytes, HttpWords& words) {
    while (!bytes.empty()) {
        auto& [name, value] = words.emplace_back();
        if (!Take(bytes, name) || !Take(bytes, value)) return false;
    }
    return true;
}
