// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>

#if defined(__x86_64__) && defined(__GNUC__)
/// What a function may be compiled for beside the processor that all of the program is.
#define ORV_HAS_WIDE_VECTORS 1
#define ORV_FOR_AVX2 __attribute__((target("avx2,bmi,bmi2")))
#define ORV_FOR_SSE41 __attribute__((target("sse4.1")))
#else
#define ORV_HAS_WIDE_VECTORS 0
#endif

/// Which vector instructions of the processor a routine uses. All give the same results, bit for bit.
enum class VectorPower : std::uint8_t {
    kPlain,  ///< what all processors have that the program is compiled for
    kSse41,
    kAvx2,
};

/// The most that this processor has.
inline VectorPower DetectVectorPower() {
#if ORV_HAS_WIDE_VECTORS
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2"))
        return VectorPower::kAvx2;
    if (__builtin_cpu_supports("sse4.1")) return VectorPower::kSse41;
#endif
    return VectorPower::kPlain;
}

/// What is to be used: all that the processor has, unless a test has set less. For all threads.
inline std::atomic<VectorPower>& UsedVectorPower() {
    static std::atomic<VectorPower> power{DetectVectorPower()};
    return power;
}
