// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/peak_memory.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <string_view>

PeakMemory::~PeakMemory() {
    for (const int file : {status_, reset_})
        if (file >= 0) close(file);
}

void PeakMemory::Open() {
    status_ = open("/proc/self/status", O_RDONLY | O_CLOEXEC);
    reset_ = open("/proc/self/clear_refs", O_WRONLY | O_CLOEXEC);
}

void PeakMemory::Begin() const {
    // "5" resets the high-water mark to the current size. If that is not permitted, the mark covers all jobs
    // so far.
    [[maybe_unused]] const bool isSet = reset_ >= 0 && pwrite(reset_, "5", 1, 0) == 1;
}

std::uint64_t PeakMemory::Get() const {
    constexpr std::string_view kName = "VmHWM:";
    std::array<char, 4096> bytes;
    const ssize_t size = status_ < 0 ? 0 : pread(status_, bytes.data(), bytes.size(), 0);
    const std::string_view text(bytes.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
    const std::size_t found = text.find(kName);
    if (found == std::string_view::npos) return 0;
    const std::size_t number = text.find_first_of("0123456789", found);
    if (number == std::string_view::npos) return 0;
    std::uint64_t kilobytes = 0;
    std::from_chars(text.data() + number, text.data() + text.size(), kilobytes);
    return kilobytes * 1024;
}
