// SPDX-License-Identifier: Apache-2.0
#include "generators/common/ORVDescriptorOutput.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {
constexpr std::size_t kBufferSize = 1U << 16U;
}

int ORVDescriptorOutput::BeginPart() {
    return Try([&] {
        if (begun_) return Fail("several pages do not fit into one stream of this format");
        begun_ = true;
        return 1;
    });
}

int ORVDescriptorOutput::Append(const void* bytes, std::size_t size) {
    return Try([&] {
        const char* from = static_cast<const char*>(bytes);
        buffer_.insert(buffer_.end(), from, from + size);
        return buffer_.size() < kBufferSize ? 1 : Flush();
    });
}

int ORVDescriptorOutput::EndPart() {
    return Try([&] { return Flush(); });
}

int ORVDescriptorOutput::Flush() {
    if (!GetError().empty()) return 0;
    std::size_t done = 0;
    while (done < buffer_.size()) {
        const ssize_t written = write(descriptor_, buffer_.data() + done, buffer_.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return Fail(std::strerror(errno));
        done += static_cast<std::size_t>(written);
    }
    buffer_.clear();
    return 1;
}
