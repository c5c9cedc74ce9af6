// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/cff_table.h"

#include <cstddef>
#include <cstdint>

namespace {

/// Reads big-endian numbers. Reading past the end is a permanent failure.
class Reader {
public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    bool IsGood() const { return good_; }
    bool IsAtEnd() const { return !good_ || at_ == bytes_.size(); }
    std::uint32_t Number(std::size_t size) {
        const std::string_view own = Take(size);
        std::uint32_t number = 0;
        for (const char c : own) number = number << 8U | static_cast<unsigned char>(c);
        return number;
    }
    std::string_view Take(std::size_t size) {
        good_ = good_ && size <= bytes_.size() - at_;
        if (!good_) return {};
        at_ += size;
        return bytes_.substr(at_ - size, size);
    }

private:
    std::string_view bytes_;
    std::size_t at_ = 0;
    bool good_ = true;
};

/// Skips an INDEX. @return its first object, empty if there is none
std::string_view TakeIndex(Reader& reader) {
    const std::uint32_t count = reader.Number(2);
    if (count == 0) return {};
    const std::uint32_t offsetSize = reader.Number(1);
    if (offsetSize < 1 || offsetSize > 4) return reader.Take(SIZE_MAX);
    // Offsets are relative to the byte before the data.
    const std::uint32_t first = reader.Number(offsetSize), second = reader.Number(offsetSize);
    std::uint32_t last = second;
    for (std::uint32_t i = 2; i <= count && reader.IsGood(); ++i) last = reader.Number(offsetSize);
    if (first != 1 || second < first || last < second) return reader.Take(SIZE_MAX);
    const std::string_view data = reader.Take(last - 1);
    return data.substr(0, reader.IsGood() ? second - 1 : 0);
}

}  // namespace

bool IsPlainCffTable(std::string_view table) {
    Reader reader(table);
    const std::uint32_t version = reader.Number(1);
    reader.Take(1);
    const std::uint32_t headerSize = reader.Number(1);
    if (version != 1 || headerSize < 3) return false;
    reader.Take(headerSize - 3);
    TakeIndex(reader);  // the Name INDEX
    Reader dictionary(TakeIndex(reader));
    if (!reader.IsGood()) return false;

    constexpr std::uint32_t kEscape = 12, kRegistryOrderingSupplement = 30;
    while (!dictionary.IsAtEnd()) {
        const std::uint32_t byte = dictionary.Number(1);
        if (byte == kEscape) {
            if (dictionary.Number(1) == kRegistryOrderingSupplement) return false;
        } else if (byte == 28) {
            dictionary.Take(2);
        } else if (byte == 29) {
            dictionary.Take(4);
        } else if (byte == 30) {  // a real number, terminated by a nibble
            std::uint32_t nibbles = 0;
            do {
                nibbles = dictionary.Number(1);
            } while (dictionary.IsGood() && (nibbles & 0x0FU) != 0x0FU && nibbles >> 4U != 0x0FU);
        } else if (byte >= 247 && byte <= 254) {
            dictionary.Take(1);
        }
    }
    return dictionary.IsGood();
}
