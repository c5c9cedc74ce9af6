// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/peak_memory.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

PeakMemory::~PeakMemory() {
    if (reset_ >= 0) close(reset_);
}

void PeakMemory::Open() { reset_ = open("/proc/self/clear_refs", O_WRONLY | O_CLOEXEC); }

void PeakMemory::Begin() const {
    // "5" resets the high-water mark to the current size. If that is not permitted, the mark covers all jobs
    // so far.
    [[maybe_unused]] const bool isSet = reset_ >= 0 && pwrite(reset_, "5", 1, 0) == 1;
}

std::uint64_t PeakMemory::Get() const {
    // The kernel keeps it with the memory that "5" sets it in, and tells without writing a page of text. What
    // a process had before it became this program would count too; these are forked and run no other.
    rusage used{};
    if (getrusage(RUSAGE_SELF, &used) != 0 || used.ru_maxrss < 0) return 0;
    return static_cast<std::uint64_t>(used.ru_maxrss) * 1024;
}
