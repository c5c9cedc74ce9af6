// SPDX-License-Identifier: Apache-2.0
#include "generators/common/deflate_chunk.h"

#include <isa-l.h>
#include <libdeflate.h>

#include <algorithm>
#include <limits>

#include "platform/system/ORVThreadValue.h"

namespace {

/// Buffers that a thread reuses between calls.
struct Workspace {
    std::vector<std::uint8_t> levelMemory = std::vector<std::uint8_t>(ISAL_DEF_LVL1_DEFAULT);
    std::vector<std::uint8_t> input;
};

Workspace& GetWorkspace() {
    static ORVThreadValue<Workspace> workspaces;
    return workspaces.Get();
}

// The compressor leaves the upper halves of the vector registers in use. That can halve the speed of all
// floating-point code that the thread runs afterwards.
void FreeUpperHalves() {
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx")) __asm__ volatile("vzeroupper" ::: "memory");
#endif
}

// The code below sets internal state of the compressor as this version expects it; generators/CMakeLists.txt
// refuses other versions.
static_assert(ISAL_VERSION == ISAL_MAKE_VERSION(2, 30, 0));

// At the start of a stream, the compressor enters the second byte into its hash table under a hash of its own
// state's address, and occasionally finds a match there: equal input would not always give equal output. It
// does not do so if told that there is history, with an empty hash table. The caller must then also clear
// that table and set its size.
void BeginWithHistory(isal_zstream& stream, std::vector<std::uint8_t>& levelMemory) {
    constexpr std::size_t kTableEnd = ISAL_DEF_LVL1_REQ + 4 * IGZIP_K;  // with a margin
    std::fill_n(levelMemory.begin(), kTableEnd, std::uint8_t{0});
    stream.internal_state.has_hist = IGZIP_HIST;
    stream.internal_state.hash_mask = IGZIP_LVL1_HASH_SIZE - 1;
    stream.internal_state.dist_mask = IGZIP_HIST_SIZE - 1;
}

// How far before the first byte the compressor may read.
constexpr std::size_t kDeflateFront = IGZIP_HIST_SIZE;

/// A copy with kDeflateFront bytes of room in front, valid until the thread's next call.
std::span<std::uint8_t> WithFront(std::span<const std::uint8_t> bytes) {
    std::vector<std::uint8_t>& input = GetWorkspace().input;
    input.resize(std::max(input.size(), kDeflateFront + bytes.size()));
    std::copy(bytes.begin(), bytes.end(), input.data() + kDeflateFront);
    return std::span(input).subspan(kDeflateFront, bytes.size());
}

/// @param bytes  preceded by kDeflateFront writable bytes, unless empty
bool Deflate(std::span<std::uint8_t> bytes, bool isWhole, std::vector<std::uint8_t>& out) {
    // The library uses 32-bit sizes; bands are far smaller.
    if (bytes.size() > std::numeric_limits<std::uint32_t>::max() / 2) return false;
    std::vector<std::uint8_t>& levelMemory = GetWorkspace().levelMemory;
    isal_zstream stream;
    isal_deflate_init(&stream);
    stream.level = 1;
    stream.level_buf = levelMemory.data();
    stream.level_buf_size = static_cast<std::uint32_t>(levelMemory.size());
    stream.gzip_flag = isWhole ? IGZIP_ZLIB : IGZIP_DEFLATE;
    stream.flush = isWhole ? NO_FLUSH : FULL_FLUSH;
    stream.end_of_stream = isWhole ? 1 : 0;
    stream.next_in = bytes.data();
    if (!bytes.empty()) {
        BeginWithHistory(stream, levelMemory);
        // The compressor may read bytes before the first one; they must not match anything.
        std::fill_n(bytes.data() - kDeflateFront, kDeflateFront, static_cast<std::uint8_t>(~bytes.front()));
    }
    stream.avail_in = static_cast<std::uint32_t>(bytes.size());
    while (true) {
        const std::size_t start = out.size();
        // Drawings compress well; anything else takes further iterations.
        const std::size_t room = std::max<std::size_t>(bytes.size() / 16, 4096);
        out.resize(start + room);
        stream.next_out = out.data() + start;
        stream.avail_out = static_cast<std::uint32_t>(room);
        const int status = isal_deflate(&stream);
        FreeUpperHalves();
        if (status != COMP_OK) return false;
        out.resize(start + room - stream.avail_out);
        if (stream.avail_out > 0) return true;
    }
}

}  // namespace

bool ORVDeflateChunk(std::span<const std::uint8_t> bytes, std::vector<std::uint8_t>& out) {
    return Deflate(WithFront(bytes), false, out);
}

bool ORVDeflateWhole(std::span<const std::uint8_t> bytes, std::vector<std::uint8_t>& out) {
    return Deflate(WithFront(bytes), true, out);
}

std::uint32_t ORVAdler32(std::span<const std::uint8_t> bytes) {
    return libdeflate_adler32(1, bytes.data(), bytes.size());
}

std::uint32_t ORVCombineAdler32(std::uint32_t first, std::uint32_t second, std::uint64_t secondLength) {
    // The low half is 1 plus the sum of all bytes, the high half the sum of the low halves after each byte.
    constexpr std::uint64_t kModulus = 65521;
    const std::uint64_t a1 = first & 0xFFFFU, b1 = first >> 16U, a2 = second & 0xFFFFU, b2 = second >> 16U;
    const std::uint64_t a = (a1 + a2 + kModulus - 1) % kModulus;
    const std::uint64_t b = (b1 + b2 + (secondLength % kModulus) * (a1 + kModulus - 1)) % kModulus;
    return static_cast<std::uint32_t>(b << 16U | a);
}

std::uint32_t ORVCrc32(std::span<const std::uint8_t> bytes) {
    return libdeflate_crc32(0, bytes.data(), bytes.size());
}
