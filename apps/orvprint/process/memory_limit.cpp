// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/memory_limit.h"

#include <pthread.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstddef>

#include "platform/system/ORVPrintLimits.h"

namespace {

#if defined(ORV_SANITIZED)
constexpr bool kIsBounded = false;  // sanitizers reserve memory of their own
#else
constexpr bool kIsBounded = true;
#endif

// Inputs up to this total do not raise the limit; each byte beyond raises it by kBytesPerInputByte.
constexpr std::uint64_t kFreeInputBytes = std::uint64_t{32} << 20U;
constexpr std::uint64_t kBytesPerInputByte = 32;
constexpr std::uint64_t kMostInputBytes = std::uint64_t{1} << 50U;  // keeps sums from overflowing
// The whole stack of a thread counts against the limit, though almost none of it is used; so threads get
// smaller stacks than usual.
constexpr std::size_t kStackBytes = std::size_t{2} << 20U;

std::uint64_t inputBytesSoFar = 0;
std::uint64_t bound = 0;  // the limit in force, in bytes; 0: none

void Apply() {
    const std::uint64_t limit = ORVPrintLimits::Get(ORVPrintLimit::kMemory);
    rlimit now{};
    if (!kIsBounded || getrlimit(RLIMIT_DATA, &now) != 0) return;
    // Never raises a limit set by the user or the system.
    static const rlim_t most = now.rlim_cur;
    const std::uint64_t large = inputBytesSoFar > kFreeInputBytes ? inputBytesSoFar - kFreeInputBytes : 0;
    bound = limit + kBytesPerInputByte * std::min(large, kMostInputBytes);
    now.rlim_cur = std::min<rlim_t>(most, bound);
    if (setrlimit(RLIMIT_DATA, &now) != 0) bound = 0;
}

}  // namespace

void BoundMemory() {
    pthread_attr_t attributes;
    if (kIsBounded && pthread_attr_init(&attributes) == 0) {
        pthread_attr_setstacksize(&attributes, kStackBytes);
        pthread_setattr_default_np(&attributes);
        pthread_attr_destroy(&attributes);
    }
    inputBytesSoFar = 0;
    Apply();
}

void AllowMemoryFor(std::uint64_t inputBytes) {
    inputBytesSoFar += inputBytes;
    Apply();
}

std::uint64_t GetMemoryLimitReached() {
    rusage used{};
    if (bound == 0 || getrusage(RUSAGE_SELF, &used) != 0) return 0;
    // A growing vector needs twice its size again while it reallocates.
    constexpr std::uint64_t kShare = 3;
    return static_cast<std::uint64_t>(used.ru_maxrss) * 1024 >= bound / kShare ? bound : 0;
}
