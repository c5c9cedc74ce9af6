// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/immediate_exit.h"

#include <poll.h>
#include <unistd.h>

#include <exception>
#include <new>

#include "apps/orvprint/process/exit_codes.h"
#include "generators/common/ORVTemporaryFile.h"

namespace {

/// True if a failed allocation is what terminates the process. Rethrowing does not allocate.
bool IsOutOfMemory() {
    try {
        if (std::current_exception()) std::rethrow_exception(std::current_exception());
    } catch (const std::bad_alloc&) {
        return true;
    } catch (...) {  // the previous handler reports it
    }
    return false;
}

std::terminate_handler before = nullptr;

void Terminate() {
    if (IsOutOfMemory()) ExitImmediately("orvprint: out of memory\n");
    before();
}

}  // namespace

void ExitImmediately(std::string_view message) {
    ORVTemporaryFile::RemoveAll();
    // Exits even if the reader of standard error has stopped reading.
    constexpr int kPatience = 1000;  // milliseconds
    pollfd errors{STDERR_FILENO, POLLOUT, 0};
    if (poll(&errors, 1, kPatience) > 0) {
        const ssize_t ignored = write(STDERR_FILENO, message.data(), message.size());
        static_cast<void>(ignored);
    }
    _exit(kExitFailed);
}

void ExitImmediatelyWhenOutOfMemory() { before = std::set_terminate(Terminate); }
