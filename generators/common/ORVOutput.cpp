// SPDX-License-Identifier: Apache-2.0
#include "generators/common/ORVOutput.h"

ORVOutput::~ORVOutput() = default;

int ORVOutput::Fail(const ORVFailure& failure) {
    if (!failure_) failure_ = failure;
    return 0;
}

int ORVOutput::EndPastLimit() {
    isPastLimit_ = true;
    return Try([this] {
        ORVFailure failure = ORVFailure::OfLimit(ORVPrintLimit::kOutputBytes);
        failure.text = "has more bytes than the limit of output bytes allows";
        return Fail(failure);
    });
}

int ORVOutput::Write(const void* bytes, std::size_t size) {
    if (isPastLimit_ || size > bytesLeft_) return EndPastLimit();
    bytesLeft_ -= size;
    return Append(bytes, size);
}

int ORVMemoryOutput::BeginPart() {
    ++count_;
    return 1;
}

int ORVMemoryOutput::Append(const void* bytes, std::size_t size) {
    return Try([&] {
        bytes_.append(static_cast<const char*>(bytes), size);
        return 1;
    });
}
