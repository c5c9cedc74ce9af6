// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/end_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "apps/orvprint/process/signals.h"

namespace {

volatile std::sig_atomic_t caught = 0;
volatile std::sig_atomic_t writeEnd = -1;

void Note(int signal) {
    const int error = errno;
    caught = signal;
    const ssize_t ignored = write(writeEnd, "", 1);
    static_cast<void>(ignored);
    errno = error;
}

}  // namespace

EndSignals::EndSignals() {
    if (pipe2(pipe_.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    writeEnd = pipe_[1];
    HandleEndingSignals(Note);
}

void EndSignals::Drain() const {
    std::array<char, 16> ignored;
    while (read(pipe_[0], ignored.data(), ignored.size()) > 0) {
    }
}

int EndSignals::GetCaught() { return caught; }
