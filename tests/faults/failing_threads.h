// SPDX-License-Identifier: Apache-2.0
#pragma once

/// While it lives, creating a thread fails, as when there are too many.
class NoThreads {
public:
    NoThreads();
    ~NoThreads();
    NoThreads(const NoThreads&) = delete;
    NoThreads& operator=(const NoThreads&) = delete;

    /// Number of threads that were refused.
    static int GetRefused();
};
