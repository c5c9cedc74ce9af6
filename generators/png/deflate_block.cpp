// SPDX-License-Identifier: Apache-2.0
#include "generators/png/deflate_block.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "generators/png/huffman_codes.h"

namespace {

constexpr unsigned int kLongestCode = 15, kLongestLengthCode = 7;
// Symbols in the list of code lengths: repeat the last length; a short run and a long run of zeros.
constexpr std::uint8_t kRepeat = 16, kFewZeros = 17, kManyZeros = 18;
constexpr std::size_t kLengthSymbols = 19;
constexpr std::array<std::uint8_t, kLengthSymbols> kLengthOrder{16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                                11, 4,  12, 3, 13, 2, 14, 1, 15};

/// A base-2 logarithm in eighths. Integers only: it affects the bytes written, which must not depend on the
/// machine.
unsigned int LogarithmOf(std::uint32_t number) {
    const auto whole = static_cast<unsigned int>(std::bit_width(number)) - 1;
    const std::uint32_t eighths = whole >= 3 ? number >> (whole - 3) : number << (3 - whole);
    return whole * DeflateBlock::kBit + (eighths & 7U);
}

/// Computes the costs of symbols from their counts. A symbol that has not occurred gets a cost, too.
template <std::size_t kCount, class ExtraBits>
void SetCosts(const std::array<std::uint32_t, kCount>& counts, ExtraBits extraBitsOf,
              std::array<std::uint16_t, kCount>& costs) {
    constexpr unsigned int kMost = 13 * DeflateBlock::kBit;
    std::uint32_t sum = kCount / 4;
    for (const std::uint32_t count : counts) sum += count;
    const unsigned int whole = LogarithmOf(sum);
    for (std::size_t i = 0; i < kCount; ++i) {
        const unsigned int part = LogarithmOf(counts[i] + 1);
        const unsigned int cost = std::clamp(whole > part ? whole - part : 0, DeflateBlock::kBit, kMost);
        costs[i] = static_cast<std::uint16_t>(cost + extraBitsOf(i) * DeflateBlock::kBit);
    }
}

/// Code lengths as a list of symbols, each with its repeat count in the upper byte.
class LengthList {
public:
    void Add(std::uint8_t symbol, std::size_t number = 0) {
        items_[count_++] = static_cast<std::uint16_t>(symbol | number << 8U);
        ++symbolCounts_[symbol];
    }
    void AddRun(std::uint8_t length, std::size_t count) {
        if (length > 0) {
            Add(length);
            --count;
        }
        const std::size_t most = length > 0 ? 6 : 138;
        while (count >= 3) {
            const std::size_t part = std::min(count, most);
            if (length > 0)
                Add(kRepeat, part - 3);
            else
                part <= 10 ? Add(kFewZeros, part - 3) : Add(kManyZeros, part - 11);
            count -= part;
        }
        for (; count > 0; --count) Add(length);
    }
    std::span<const std::uint16_t> GetItems() const { return std::span(items_).first(count_); }
    const std::array<std::uint32_t, kLengthSymbols>& GetCounts() const { return symbolCounts_; }

private:
    std::array<std::uint16_t, 320> items_{};
    std::size_t count_ = 0;
    std::array<std::uint32_t, kLengthSymbols> symbolCounts_{};
};

constexpr unsigned int NumberBits(std::uint8_t symbol) {
    return symbol == kRepeat ? 2 : symbol == kFewZeros ? 3 : symbol == kManyZeros ? 7 : 0;
}

/// The number of lengths up to the last that is not 0.
std::size_t CountUsed(std::span<const std::uint8_t> lengths, std::size_t least) {
    std::size_t count = lengths.size();
    while (count > least && lengths[count - 1] == 0) --count;
    return count;
}

}  // namespace

struct DeflateBlock::Codes {
    HuffmanCodes<kSymbols> symbols;
    HuffmanCodes<kDistances> distances;
};

/// Writes bits to memory that is large enough.
class DeflateBlock::BitWriter {
public:
    BitWriter(std::uint8_t* to, std::uint64_t bits, unsigned int count)
        : to_(to), bits_(bits), count_(count) {}

    /// At most 57 bits in total between two calls of Store.
    void Put(std::uint64_t bits, unsigned int count) {
        bits_ |= bits << count_;
        count_ += count;
    }
    template <std::size_t kCount>
    void PutSymbol(const HuffmanCodes<kCount>& codes, std::size_t symbol) {
        Put(codes.codes[symbol], codes.lengths[symbol]);
    }
    /// Writes the same 1 to 30 bits several times.
    void PutTimes(std::uint64_t bits, unsigned int count, std::size_t times) {
        constexpr unsigned int kMostBits = 48;
        for (; times > 1 && count * 2 <= kMostBits; times /= 2) {
            if (times % 2 != 0) {
                Put(bits, count);
                Store();
            }
            bits |= bits << count;
            count *= 2;
        }
        for (; times > 0; --times) {
            Put(bits, count);
            Store();
        }
    }
    void Store() {
        // The stream is little-endian, like the machine (see lanes.h).
        std::memcpy(to_, &bits_, sizeof bits_);
        to_ += count_ / 8;
        bits_ >>= count_ & ~7U;
        count_ &= 7U;
    }
    void FillByte() {
        count_ = (count_ + 7) & ~7U;
        Store();
    }

    std::uint8_t* GetEnd() const { return to_; }
    std::uint64_t GetBits() const { return bits_; }
    unsigned int GetCount() const { return count_; }

private:
    std::uint8_t* to_;
    std::uint64_t bits_;
    unsigned int count_;
};

void DeflateBlock::Begin() {
    tokenCount_ = 0;
    bits_ = 0;
    bitCount_ = 0;
    symbolCounts_.fill(0);
    distanceCounts_.fill(0);
    // Initial costs, from the start of typical drawings: a lot of white, few matches but those of the pixel
    // to the left.
    symbolCosts_.fill(8 * kBit);
    symbolCosts_[0] = 6 * kBit;
    symbolCosts_[255] = 4 * kBit;
    for (std::size_t i = 0; i < kLengths.bases.size(); ++i)
        symbolCosts_[kFirstLength + i] = static_cast<std::uint16_t>((5U + kLengths.extraBits[i]) * kBit);
    for (unsigned int i = 0; i < kDistances; ++i)
        distanceCosts_[i] = static_cast<std::uint16_t>(((i < 3 ? 2U : 4U) + ExtraBitsOfDistance(i)) * kBit);
}

void DeflateBlock::UpdateCosts() {
    SetCosts(
        symbolCounts_,
        [](std::size_t i) -> unsigned int {
            return i < kFirstLength ? 0 : kLengths.extraBits[i - kFirstLength];
        },
        symbolCosts_);
    SetCosts(
        distanceCounts_, [](std::size_t i) { return ExtraBitsOfDistance(static_cast<unsigned int>(i)); },
        distanceCosts_);
}

std::size_t DeflateBlock::CountBits(const Codes& codes) const {
    std::size_t bits = 0;
    for (std::size_t i = 0; i < kSymbols; ++i) {
        const unsigned int extra = i < kFirstLength ? 0 : kLengths.extraBits[i - kFirstLength];
        bits += symbolCounts_[i] * std::size_t{codes.symbols.lengths[i] + extra};
    }
    for (unsigned int i = 0; i < kDistances; ++i)
        bits += distanceCounts_[i] * std::size_t{codes.distances.lengths[i] + ExtraBitsOfDistance(i)};
    return bits;
}

void DeflateBlock::WriteTokens(const Codes& codes, BitWriter& writer) const {
    // The bits of each literal, with their number in the upper half; likewise for lengths, whose codes and
    // extra bits take at most twenty bits.
    std::array<std::uint32_t, kFirstLength> literals{};
    std::array<std::uint32_t, kLongestMatch + 1> lengths{};
    for (std::size_t i = 0; i < literals.size(); ++i)
        literals[i] = std::uint32_t{codes.symbols.lengths[i]} << 16U | codes.symbols.codes[i];
    for (std::size_t length = kShortestMatch; length <= kLongestMatch; ++length) {
        const std::size_t code = kLengths.codes[length], symbol = kFirstLength + code;
        const auto extra = static_cast<std::uint32_t>(length - kLengths.bases[code]);
        const std::uint32_t bits = codes.symbols.lengths[symbol];
        lengths[length] =
            (bits + kLengths.extraBits[code]) << 20U | extra << bits | codes.symbols.codes[symbol];
    }
    const auto putLiteral = [&](std::uint32_t byte) {
        const std::uint32_t entry = literals[byte & 0xFFU];
        writer.Put(entry & 0xFFFFU, entry >> 16U);
    };
    for (std::size_t i = 0; i < tokenCount_; ++i) {
        const std::uint32_t token = tokens_[i];
        if ((token & kMatchFlag) != 0 && (token & kRepeatFlag) != 0) {
            const std::size_t distanceCode = token & 3U;
            const std::uint32_t longest = lengths[kLongestMatch];
            const unsigned int bits = longest >> 20U;
            writer.PutTimes((longest & 0xFFFFFU) | std::uint64_t{codes.distances.codes[distanceCode]} << bits,
                            bits + codes.distances.lengths[distanceCode], token >> 15U & kMostRepeats);
        } else if ((token & kMatchFlag) != 0) {
            const std::uint32_t entry = lengths[(token >> 15U & 0xFFU) + kShortestMatch];
            const std::size_t distance = (token & (kWindow - 1)) + 1;
            const unsigned int distanceCode = DistanceCode(distance);
            writer.Put(entry & 0xFFFFFU, entry >> 20U);
            writer.PutSymbol(codes.distances, distanceCode);
            writer.Put(distance - BaseOfDistance(distanceCode), ExtraBitsOfDistance(distanceCode));
        } else if ((token & kLiteralFlag) != 0) {
            putLiteral(token);
        } else {
            putLiteral(token);
            putLiteral(token >> 8U);
            putLiteral(token >> 16U);
        }
        writer.Store();
    }
}

void DeflateBlock::Write(std::vector<std::uint8_t>& out) {
    symbolCounts_[kEndOfBlock] = 1;
    Codes codes;
    codes.symbols.Make(symbolCounts_, kLongestCode);
    codes.distances.Make(distanceCounts_, kLongestCode);
    const std::size_t symbolsUsed = CountUsed(codes.symbols.lengths, kFirstLength),
                      distancesUsed = CountUsed(codes.distances.lengths, 1);
    // One list for both alphabets: runs may cross the border.
    std::array<std::uint8_t, kSymbols + kDistances> lengths{};
    std::copy_n(codes.symbols.lengths.begin(), symbolsUsed, lengths.begin());
    std::copy_n(codes.distances.lengths.begin(), distancesUsed,
                lengths.begin() + static_cast<std::ptrdiff_t>(symbolsUsed));
    LengthList list;
    for (std::size_t i = 0, end = 0; i < symbolsUsed + distancesUsed; i = end) {
        while (end < symbolsUsed + distancesUsed && lengths[end] == lengths[i]) ++end;
        list.AddRun(lengths[i], end - i);
    }
    HuffmanCodes<kLengthSymbols> lengthCodes;
    lengthCodes.Make(list.GetCounts(), kLongestLengthCode);
    std::size_t lengthsUsed = kLengthSymbols;
    while (lengthsUsed > 4 && lengthCodes.lengths[kLengthOrder[lengthsUsed - 1]] == 0) --lengthsUsed;

    constexpr std::size_t kMostOfHeader = 1024, kStoredAtOnce = 8;
    const std::size_t start = out.size();
    out.resize(start + kMostOfHeader + CountBits(codes) / 8 + kStoredAtOnce);
    BitWriter writer(out.data() + start, bits_, bitCount_);
    writer.Put(0, 1);  // not the last block
    writer.Put(2, 2);  // dynamic Huffman codes
    writer.Put(symbolsUsed - kFirstLength, 5);
    writer.Put(distancesUsed - 1, 5);
    writer.Put(lengthsUsed - 4, 4);
    writer.Store();
    for (std::size_t i = 0; i < lengthsUsed; ++i) {
        writer.Put(lengthCodes.lengths[kLengthOrder[i]], 3);
        writer.Store();
    }
    for (const std::uint16_t item : list.GetItems()) {
        const auto symbol = static_cast<std::uint8_t>(item & 0xFFU);
        writer.PutSymbol(lengthCodes, symbol);
        writer.Put(item >> 8U, NumberBits(symbol));
        writer.Store();
    }
    WriteTokens(codes, writer);
    writer.PutSymbol(codes.symbols, kEndOfBlock);
    writer.Store();
    bits_ = writer.GetBits();
    bitCount_ = writer.GetCount();
    out.resize(static_cast<std::size_t>(writer.GetEnd() - out.data()));
    tokenCount_ = 0;
    symbolCounts_.fill(0);
    distanceCounts_.fill(0);
}

void DeflateBlock::Align(std::vector<std::uint8_t>& out) {
    constexpr std::size_t kRoom = 16;
    const std::size_t start = out.size();
    out.resize(start + kRoom);
    BitWriter writer(out.data() + start, bits_, bitCount_);
    writer.Put(0, 3);  // a stored block, not the last
    writer.FillByte();
    writer.Put(0xFFFF0000U, 32);  // of zero bytes
    writer.Store();
    out.resize(static_cast<std::size_t>(writer.GetEnd() - out.data()));
    bits_ = 0;
    bitCount_ = 0;
}
