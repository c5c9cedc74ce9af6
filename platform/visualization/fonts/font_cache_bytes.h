// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/system/ORVBaseObject.h"

/// Adds a header to the content of a cache file: a magic number, which names the kind and version of the
/// file, and a checksum. The file is for one machine: numbers are in native byte order, which the magic
/// number reveals.
std::string SealCacheFile(std::uint64_t magic, std::string_view body);
/// Finds the content of such a file. The checksum detects modified, truncated and foreign files.
/// @return false when the file is not of this kind or was modified; `body` is then unspecified
[[nodiscard]] bool OpenCacheFile(std::string_view bytes, std::uint64_t magic, std::string_view& body);
/// The header of a sealed file: it differs for files of different content.
ORV_PLATFORM_EXPORT std::string_view HeaderOfCacheFile(std::string_view bytes);

/// Appends values to the content of a cache file.
class CacheWriter {
public:
    template <class Number>
    void Put(Number number) {
        const std::size_t at = bytes_.size();
        bytes_.resize(at + sizeof number);
        std::memcpy(bytes_.data() + at, &number, sizeof number);
    }
    void PutText(std::string_view text) {
        Put(static_cast<std::uint32_t>(text.size()));
        bytes_ += text;
    }
    const std::string& Bytes() const { return bytes_; }

private:
    std::string bytes_;
};

/// Reads values from the front. After the first failure, all reads fail.
class CacheReader {
public:
    explicit CacheReader(std::string_view bytes) : rest_(bytes) {}

    template <class Number>
    void Take(Number& number) {
        if (isGood_ && rest_.size() >= sizeof number) {
            std::memcpy(&number, rest_.data(), sizeof number);
            rest_.remove_prefix(sizeof number);
        } else {
            number = 0;
            isGood_ = false;
        }
    }
    void TakeText(std::string& text) {
        std::uint32_t size = 0;
        Take(size);
        isGood_ = isGood_ && size <= rest_.size();
        if (!isGood_) return;
        text = rest_.substr(0, size);
        rest_.remove_prefix(size);
    }
    /// Reads the number of items that follow. @param leastSize  least size of an item in bytes
    std::size_t TakeCount(std::size_t leastSize) {
        std::uint32_t count = 0;
        Take(count);
        isGood_ = isGood_ && count <= rest_.size() / leastSize;
        return isGood_ ? count : 0;
    }
    bool IsGood() const { return isGood_; }
    bool IsAtEnd() const { return isGood_ && rest_.empty(); }

private:
    std::string_view rest_;
    bool isGood_ = true;
};
