// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

// Text helpers shared by tests.
inline std::string Repeat(std::string_view text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) result += text;
    return result;
}

/// Nested groups.
inline std::string Nested(std::size_t depth) { return Repeat("<g>", depth) + Repeat("</g>", depth); }

/// The elements of which Fan composes its levels.
struct FanParts {
    std::string leaf = "<rect width='1' height='1' fill='red'/>";  ///< content of the first level
    std::string element = "g";                                     ///< element of each level
};

/// Levels of definitions, each referring `breadth` times to the previous one, and a reference to the last: a
/// short text for breadth to the power of levels - 1 shapes.
/// @param attributes  of all references; they determine whether definitions are shared or duplicated
inline std::string Fan(int levels, std::size_t breadth, const std::string& attributes = {},
                       const FanParts& parts = {}) {
    const auto use = [&](int level) {
        return "<use xlink:href='#d" + std::to_string(level) + "' " + attributes + "/>";
    };
    const auto define = [&](int level, const std::string& content) {
        return "<defs><" + parts.element + " id='d" + std::to_string(level) + "'>" + content + "</" +
               parts.element + "></defs>";
    };
    std::string text = define(0, parts.leaf);
    for (int i = 1; i < levels; ++i) text += define(i, Repeat(use(i - 1), breadth));
    return text + use(levels - 1);
}

/// All bytes of a file; empty if it cannot be read.
inline std::string ReadAll(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}
