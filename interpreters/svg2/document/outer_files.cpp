// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/document/outer_files.h"

#include <array>
#include <cstdint>
#include <cstdio>

#include "interpreters/svg2/values/scanner.h"
#include "platform/system/ORVPrintLimits.h"
#include "platform/system/ORVString.h"
#include "platform/system/files.h"

namespace svg2 {
namespace {

int Base64Value(char c) {
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a' + 26;
    if (c >= '0' && c <= '9') return c - '0' + 52;
    if (c == '+' || c == '-') return 62;
    if (c == '/' || c == '_') return 63;
    return -1;
}

/// Decodes percent-encoded characters.
char NextCharacter(std::string_view text, std::size_t& i) {
    const auto digit = [](char c) {
        if (IsDigit(c)) return c - '0';
        const char lower = ToLower(c);
        return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
    };
    const char c = text[i++];
    if (c != '%' || i + 2 > text.size() || digit(text[i]) < 0 || digit(text[i + 1]) < 0) return c;
    const char decoded = static_cast<char>(digit(text[i]) * 16 + digit(text[i + 1]));
    i += 2;
    return decoded;
}

bool DecodeBase64(std::string_view text, std::string& bytes) {
    std::uint32_t bits = 0;
    unsigned int count = 0;
    bytes.reserve(text.size() / 4 * 3);
    for (std::size_t i = 0; i < text.size();) {
        const char c = NextCharacter(text, i);
        if (IsSpace(c)) continue;
        if (c == '=') break;
        const int value = Base64Value(c);
        if (value < 0) return false;
        bits = bits << 6U | static_cast<std::uint32_t>(value);
        if (++count % 4 == 0) {
            bytes += static_cast<char>(bits >> 16U & 255U);
            bytes += static_cast<char>(bits >> 8U & 255U);
            bytes += static_cast<char>(bits & 255U);
        }
    }
    if (count % 4 == 2) bytes += static_cast<char>(bits >> 4U & 255U);
    if (count % 4 == 3) {
        bytes += static_cast<char>(bits >> 10U & 255U);
        bytes += static_cast<char>(bits >> 2U & 255U);
    }
    return true;
}

/// Reads a whole file that the access policy allows.
bool ReadFile(const ORVUnicodeString& path, std::string& bytes) {
    const std::string name(path.GetView());
    std::FILE* file = std::fopen(name.c_str(), "rb");
    if (!file) return false;
    bool isWhole = ORVMayReadOpenFile(fileno(file));
    const std::uint64_t most = ORVPrintLimits::Get(ORVPrintLimit::kInputBytes);
    std::array<char, 1U << 16U> block{};
    while (isWhole) {
        const std::size_t got = std::fread(block.data(), 1, block.size(), file);
        bytes.append(block.data(), got);
        if (got < block.size()) break;
        isWhole = bytes.size() <= most;
    }
    isWhole = isWhole && std::ferror(file) == 0;
    std::fclose(file);
    return isWhole;
}

}  // namespace

bool ReadDataUri(std::string_view uri, std::string& bytes) {
    if (!EqualsIgnoringCase(uri.substr(0, 5), "data:")) return false;
    const std::size_t comma = uri.find(',');
    if (comma == std::string_view::npos) return false;
    const std::string_view type = uri.substr(0, comma), data = uri.substr(comma + 1);
    constexpr std::string_view kBase64 = "base64";
    if (type.size() > kBase64.size() &&
        EqualsIgnoringCase(type.substr(type.size() - kBase64.size()), kBase64))
        return DecodeBase64(data, bytes);
    bytes.reserve(data.size());
    for (std::size_t i = 0; i < data.size();) bytes += NextCharacter(data, i);
    return true;
}

bool ReadOuterFile(std::string_view reference, const ORVUnicodeString& documentPath, std::string& bytes) {
    if (EqualsIgnoringCase(reference.substr(0, 5), "data:")) return ReadDataUri(reference, bytes);
    if (reference.find("://") != std::string_view::npos) {
        constexpr std::string_view kFile = "file://";
        if (!reference.starts_with(kFile)) return false;
        reference.remove_prefix(kFile.size());
    }
    std::string name;
    for (std::size_t i = 0; i < reference.size();) name += NextCharacter(reference, i);
    ORVUnicodeString folder, file;
    ORVSplitPath(documentPath, folder, file);
    const ORVUnicodeString path =
        name.starts_with('/') ? ORVUnicodeString(name) : ORVMakePath(folder, ORVUnicodeString(name));
    return ORVFileStat(path) == 1 && ORVFileAccess(path, 0) == 1 && ReadFile(path, bytes);
}

}  // namespace svg2
