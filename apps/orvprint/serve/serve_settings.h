// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "apps/orvprint/input/inputs.h"

/// What the service is told.
struct ServeSettings {
    std::string socket;         ///< path of a Unix socket; empty without
    std::string address;        ///< HOST:PORT; empty without
    bool allowsRemote = false;  ///< the address may be one that other machines reach
    unsigned int workers = 0;   ///< 0 for one for each processor
    unsigned int queue = 256;   ///< jobs that wait at most
    std::uint64_t mostRequestBytes = std::uint64_t{64} << 20U;
    unsigned int mostConnections = 1000;
    unsigned int patience = 30;         ///< seconds for a request to come
    unsigned int jobsPerWorker = 1000;  ///< then it is replaced
    bool isQuiet = false;               ///< no line for each job
    /// How drawings are read, unless a job says otherwise. The time limit is for each job.
    ReadOptions read;
};
