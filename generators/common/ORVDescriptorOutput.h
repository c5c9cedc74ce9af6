// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "generators/common/ORVOutput.h"

/// Writes to an open file descriptor, such as standard output, through a buffer. It can hold one part only.
class ORV_GENERATORS_EXPORT ORVDescriptorOutput final : public ORVOutput {
public:
    /// @param descriptor  not owned: it is never closed here
    explicit ORVDescriptorOutput(int descriptor) : descriptor_(descriptor) {}

    int BeginPart() override;
    int EndPart() override;
    int Commit() override { return GetError().empty() ? 1 : 0; }

private:
    int Append(const void* bytes, std::size_t size) override;
    int Flush();

    int descriptor_;
    bool begun_ = false;
    std::vector<char> buffer_;
};
