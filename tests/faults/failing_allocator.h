// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// Replaces operator new in all its forms, for the program and all libraries it loads. Counts requests, and
/// refuses those it is told to.
class FailingAllocator {
public:
    enum class Refuses {
        kOne,      ///< this request only
        kAllFrom,  ///< this request and all that follow
    };

    /// Starts counting, and refuses the request with this number, counted from 1; 0 refuses none.
    static void Begin(std::uint64_t request, Refuses refuses);
    /// Stops refusing requests.
    static void End();

    /// Counts a request by other means than operator new.
    /// @return false if it must be refused
    static bool MayTake();

    /// Numbers of requests, and of refused ones, since Begin().
    static std::uint64_t GetRequests();
    static std::uint64_t GetRefused();
    /// Number of blocks currently allocated.
    static std::int64_t GetLiveBlocks();

    /// While it lives, requests of the calling thread are granted and not counted: for the test's own
    /// allocations.
    class Granted {
    public:
        Granted();
        ~Granted();
        Granted(const Granted&) = delete;
        Granted& operator=(const Granted&) = delete;
    };
};
