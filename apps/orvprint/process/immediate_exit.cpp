#include "apps/orvprint/process/sudden_end.h"

#include <poll.h>
#include <unistd.h>

#include <exception>
#include <new>

#include "apps/orvprint/process/exit_codes.h"
#include "generators/common/ORVTemporaryFile.h"

namespace {

/// True when what ends the process is a refused request for memory. Rethrowing needs none.
bool IsMemorySpent() {
    try {
        if (std::current_exception()) std::rethrow_exception(std::current_exception());
    } catch (const std::bad_alloc&) {
        return true;
    } catch (...) {  // the handler from before tells of it
    }
    return false;
}

std::terminate_handler before = nullptr;

void Terminate() {
    if (IsMemorySpent()) EndSuddenly("orvprint: out of memory\n");
    before();
}

}  // namespace

void EndSuddenly(std::string_view words) {
    ORVTemporaryFile::RemoveAll();
    // A reader of standard error that takes nothing more must not keep the process.
    constexpr int kPatience = 1000;  // milliseconds
    pollfd errors{STDERR_FILENO, POLLOUT, 0};
    if (poll(&errors, 1, kPatience) > 0) {
        const ssize_t ignored = write(STDERR_FILENO, words.data(), words.size());
        static_cast<void>(ignored);
    }
    _exit(kExitFailed);
}

void EndSuddenlyWithoutMemory() { before = std::set_terminate(Terminate); }
