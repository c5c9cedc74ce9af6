// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// The allocator of this program: operator new in all its forms, for every library that the program loads. It
/// counts, and refuses requests when it is told to.
class FailingAllocator {
public:
    enum class Refuses {
        kOne,      ///< the request only
        kAllFrom,  ///< the request and all that follow
    };

    /// From now on, refuses the request of this number, counted from 1; with 0 none.
    static void Begin(std::uint64_t request, Refuses refuses);
    /// No request is refused any more.
    static void End();

    /// Counts a request of whoever allocates in another way. @return false when it is to be refused
    static bool MayTake();

    /// Requests since Begin, and those of them that were refused.
    static std::uint64_t GetRequests();
    static std::uint64_t GetRefused();
    /// Blocks that are in use now.
    static std::int64_t GetLiveBlocks();

    /// The calling thread's requests are granted and not counted: what the test itself needs.
    class Granted {
    public:
        Granted();
        ~Granted();
        Granted(const Granted&) = delete;
        Granted& operator=(const Granted&) = delete;
    };
};
