// SPDX-License-Identifier: Apache-2.0
#pragma once

/// As long as it lives, no thread can be started in this program, as when there are too many already.
class NoThreads {
public:
    NoThreads();
    ~NoThreads();
    NoThreads(const NoThreads&) = delete;
    NoThreads& operator=(const NoThreads&) = delete;

    /// Threads that were asked for in that time.
    static int GetRefused();
};
