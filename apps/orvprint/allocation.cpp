#include "apps/orvprint/allocation.h"

#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace {

constexpr std::size_t kMebibyte = std::size_t{1} << 20U;
constexpr std::size_t kLargePage = 2 * kMebibyte;
constexpr std::size_t kLeastDocument = 2 * kMebibyte;
// What a model takes of memory that its document takes, for documents of small shapes.
constexpr std::size_t kModelGrowth = 5;
constexpr std::size_t kMostReserved = 512 * kMebibyte;
constexpr int kUsualTopPad = 128 << 10;

void UseLargePages(const void* begin, const void* end) {
    const std::uintptr_t first =
        (reinterpret_cast<std::uintptr_t>(begin) + kLargePage - 1) / kLargePage * kLargePage;
    const std::uintptr_t last = reinterpret_cast<std::uintptr_t>(end) / kLargePage * kLargePage;
    // Refused, the pages are of the usual size.
    if (first < last) madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
}

// Address space only: what is never written takes no memory.
void GrowHeap(std::size_t size) {
    const char* const begin = static_cast<const char*>(sbrk(0));
    const std::size_t atEnd = mallinfo2().keepcost;
    if (atEnd >= size) return;
    mallopt(M_TOP_PAD, static_cast<int>(size));
    void* volatile piece = std::malloc(atEnd + kUsualTopPad);  // or a compiler would see that it is not used
    std::free(piece);
    mallopt(M_TOP_PAD, kUsualTopPad);
    UseLargePages(begin, sbrk(0));
}

}  // namespace

void TuneAllocation() {
    // The lists for small pieces, and giving memory back in between, are dear when the pieces go at once.
    mallopt(M_MXFAST, 0);
    mallopt(M_TRIM_THRESHOLD, static_cast<int>(1024 * kMebibyte));
    mallopt(M_MMAP_THRESHOLD, static_cast<int>(32 * kMebibyte));
}

void MakeRoomForDocument(std::string& bytes, std::size_t size) {
    if (size >= kLeastDocument) GrowHeap(std::min(size * kModelGrowth, kMostReserved));
    bytes.reserve(size);
    if (size >= kLeastDocument) UseLargePages(bytes.data(), bytes.data() + size);
}
