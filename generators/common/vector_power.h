// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>

#if defined(__x86_64__) && defined(__GNUC__)
/// Instruction sets that single functions are compiled for, beyond those of the whole program.
#define ORV_HAS_WIDE_VECTORS 1
#define ORV_FOR_AVX2 __attribute__((target("avx2,bmi,bmi2")))
#define ORV_FOR_SSE41 __attribute__((target("sse4.1")))
#else
#define ORV_HAS_WIDE_VECTORS 0
#endif

/// Vector instruction sets. Results are identical, bit for bit, with all of them.
enum class VectorPower : std::uint8_t {
    kPlain,  ///< those the whole program is compiled for
    kSse41,
    kAvx2,
};

/// The best instruction set of this processor.
inline VectorPower DetectVectorPower() {
#if ORV_HAS_WIDE_VECTORS
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2"))
        return VectorPower::kAvx2;
    if (__builtin_cpu_supports("sse4.1")) return VectorPower::kSse41;
#endif
    return VectorPower::kPlain;
}

/// The instruction set to use, for all threads: the best one available unless a test has set another.
inline std::atomic<VectorPower>& UsedVectorPower() {
    static std::atomic<VectorPower> power{DetectVectorPower()};
    return power;
}
