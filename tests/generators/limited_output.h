// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "generators/common/ORVOutput.h"

/// Accepts a limited number of bytes. After a write that exceeds the remaining room, it accepts none.
class LimitedOutput final : public ORVOutput {
public:
    explicit LimitedOutput(std::size_t room) : room_(room) {}

    int BeginPart() override { return 1; }
    int EndPart() override { return 1; }
    int Commit() override { return 1; }

private:
    int Append(const void* /*bytes*/, std::size_t size) override {
        if (size > room_) {
            room_ = 0;
            return Fail("no room");
        }
        room_ -= size;
        return 1;
    }

    std::size_t room_;
};
