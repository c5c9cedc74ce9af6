// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/input/PrintHost.h"

/// The command as a host of the library: failures and notes become lines on standard error, and every input
/// raises the memory limit.
class CommandHost final : public PrintHost {
public:
    int Report(PrintResult result, const std::string& subject, const std::string& reason) override;
    int Report(const std::string& subject, const ORVFailure& failure) override;
    void CountInput(std::uint64_t bytes) override;
    void PrepareMemory(void* start, std::size_t size) override;
};

/// The command's only host.
PrintHost& Host();
