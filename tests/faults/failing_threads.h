// SPDX-License-Identifier: Apache-2.0
#pragma once

/// While it lives, no thread can be created, as if the system had too many.
class NoThreads {
public:
    NoThreads();
    ~NoThreads();
    NoThreads(const NoThreads&) = delete;
    NoThreads& operator=(const NoThreads&) = delete;

    /// Number of threads refused since the last construction.
    static int GetRefused();
};
