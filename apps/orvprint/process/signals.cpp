// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/signals.h"

#include <pthread.h>

#include <array>
#include <csignal>

#include "generators/common/ORVTemporaryFile.h"

namespace {

// Without the signals for a file too large and for a closed pipe, which are ignored.
constexpr std::array kSentSignals{SIGHUP,    SIGINT,  SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2,  SIGALRM,
                                  SIGVTALRM, SIGPROF, SIGXCPU, SIGPOLL, SIGPWR,  SIGSTKFLT};

// Crashes: bugs of the command or of a library.
#if defined(ORV_SANITIZED)
constexpr std::array<int, 0> kCrashes{};  // sanitizers report them
#else
constexpr std::array kCrashes{SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV, SIGSYS, SIGTRAP};
#endif

const pthread_t mainThread = pthread_self();

void SetHandler(int signal, void (*handler)(int), unsigned int flags) {
    struct sigaction action {
    }, before{};
    action.sa_handler = handler;
    action.sa_flags = static_cast<int>(flags);
    if (sigaction(signal, &action, &before) == 0 && before.sa_handler == SIG_IGN)
        sigaction(signal, &before, nullptr);
}

void EndAsItWouldHave(int signal) {
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void EndBySignal(int signal) {
    // Any thread may get the signal, but only the main thread blocks signals while it creates files.
    if (pthread_equal(pthread_self(), mainThread) == 0) {
        pthread_kill(mainThread, signal);
        return;
    }
    ORVTemporaryFile::RemoveAll();
    EndAsItWouldHave(signal);
}

/// Runs in the thread that crashed: no other is reliable.
void EndByCrash(int signal) {
    ORVTemporaryFile::RemoveAll();
    EndAsItWouldHave(signal);
}

/// Provides a stack for the handler after an overflow of the main thread's stack.
void PrepareSpareStack() {
    static std::array<char, 65536> memory;
    stack_t stack{};
    stack.ss_sp = memory.data();
    stack.ss_size = memory.size();
    sigaltstack(&stack, nullptr);
}

}  // namespace

const std::vector<int>& EndingSignals() {
    static const std::vector<int> signals = [] {
        std::vector<int> all(kSentSignals.begin(), kSentSignals.end());
        for (int signal = SIGRTMIN; signal <= SIGRTMAX; ++signal) all.push_back(signal);
        return all;
    }();
    return signals;
}

void HandleEndingSignals(void (*handler)(int)) {
    for (const int signal : EndingSignals()) SetHandler(signal, handler, 0);
}

void EndCleanlyOnSignals() {
    HandleEndingSignals(EndBySignal);
    if (kCrashes.empty()) return;
    PrepareSpareStack();
    // A crash in the handler ends the process at once.
    for (const int signal : kCrashes) SetHandler(signal, EndByCrash, SA_ONSTACK | SA_NODEFER | SA_RESETHAND);
}

void LeaveTerminalSignalsToParent() {
    HandleEndingSignals(SIG_DFL);
    for (const int signal : {SIGINT, SIGQUIT, SIGHUP}) std::signal(signal, SIG_IGN);
}
