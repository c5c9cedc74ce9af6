// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/content_hash.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <memory>
#include <vector>

// Compiles xxHash into this file, so that the command loads no further library.
#define XXH_INLINE_ALL
#include <xxhash.h>

namespace {

std::string Digits(const XXH128_hash_t& hash) {
    XXH128_canonical_t canonical;
    XXH128_canonicalFromHash(&canonical, hash);
    std::string text;
    for (const unsigned char byte : canonical.digest) {
        text += "0123456789abcdef"[byte >> 4U];
        text += "0123456789abcdef"[byte & 15U];
    }
    return text;
}

struct FreeState {
    void operator()(XXH3_state_t* state) const { XXH3_freeState(state); }
};

}  // namespace

std::string HashOfText(std::string_view text) { return Digits(XXH3_128bits(text.data(), text.size())); }

std::uint64_t StableNumber(std::string_view text) { return XXH3_64bits(text.data(), text.size()); }

FileContent HashFile(const std::string& path) {
    constexpr std::size_t kBlock = std::size_t{1} << 18U;
    FileContent content;
    // The contents of a pipe can be read only once, and are left to whoever prints them.
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) return content;
    if (struct stat facts{}; fstat(file, &facts) != 0 || !S_ISREG(facts.st_mode)) {
        close(file);
        return content;
    }
    const std::unique_ptr<XXH3_state_t, FreeState> state(XXH3_createState());
    bool isRead = state && XXH3_128bits_reset(state.get()) == XXH_OK;
    std::vector<char> block(kBlock);
    while (isRead) {
        const ssize_t got = read(file, block.data(), block.size());
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) {
            isRead = got == 0;
            break;
        }
        XXH3_128bits_update(state.get(), block.data(), static_cast<std::size_t>(got));
        content.bytes += static_cast<std::uint64_t>(got);
    }
    close(file);
    if (isRead) content.hash = Digits(XXH3_128bits_digest(state.get()));
    return content;
}
