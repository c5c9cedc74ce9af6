// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "apps/orvprint/input/inputs.h"

/// The settings of the service.
struct ServeSettings {
    std::string socket;         ///< path of a Unix socket; empty: none
    std::string address;        ///< HOST:PORT; empty: none
    bool allowsRemote = false;  ///< other machines may be able to reach the address
    unsigned int workers = 0;   ///< 0: one per processor
    unsigned int queue = 256;   ///< maximum number of waiting jobs
    std::uint64_t mostRequestBytes = std::uint64_t{64} << 20U;
    unsigned int mostConnections = 1000;
    unsigned int patience = 30;         ///< seconds to wait for a request
    unsigned int jobsPerWorker = 1000;  ///< after which it is replaced
    bool isQuiet = false;               ///< do not log jobs
    /// How drawings are read, unless a job says otherwise. The time limit is for each job.
    ReadOptions read;
};
