// SPDX-License-Identifier: Apache-2.0
#include "fuzz/support/FuzzTarget.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "platform/model/ORVPrtModel.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

std::vector<FuzzTarget>& Targets() {
    static std::vector<FuzzTarget> targets;
    return targets;
}

}  // namespace

FuzzTarget::FuzzTarget(std::string_view name, void (*run)(std::string_view bytes)) : name_(name), run_(run) {
    Targets().push_back(*this);
}

std::span<const FuzzTarget> FuzzTarget::GetAll() { return Targets(); }

void FuzzTarget::SetLimits() {
    ORVPrtModel::SetPrimitiveLimit(5'000);
    ORVPixelImage::SetPixelLimit(1 << 18);
}

void Require(bool condition, const char* file, int line) {
    if (condition) return;
    std::fprintf(stderr, "%s:%d: what must be true is not\n", file, line);
    std::abort();
}
