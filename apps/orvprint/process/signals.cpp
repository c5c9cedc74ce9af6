// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/signals.h"

#include <pthread.h>

#include <array>
#include <csignal>

#include "generators/common/ORVTemporaryFile.h"

namespace {

// SIGXFSZ and SIGPIPE are missing: they are ignored, and the failed write is reported instead.
constexpr std::array kSentSignals{SIGHUP,    SIGINT,  SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2,  SIGALRM,
                                  SIGVTALRM, SIGPROF, SIGXCPU, SIGPOLL, SIGPWR,  SIGSTKFLT};

// Caused by defects in our code or in a library.
#if defined(ORV_SANITIZED)
constexpr std::array<int, 0> kCrashes{};  // the sanitizers' own handlers report these
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
    // Any thread may receive the signal, but only the main thread blocks signals while it creates files.
    if (pthread_equal(pthread_self(), mainThread) == 0) {
        pthread_kill(mainThread, signal);
        return;
    }
    ORVTemporaryFile::RemoveAll();
    EndAsItWouldHave(signal);
}

/// Handles it in the crashing thread: no other thread can be relied on.
void EndByCrash(int signal) {
    ORVTemporaryFile::RemoveAll();
    EndAsItWouldHave(signal);
}

/// Stack for the handler when the main thread's stack has overflowed.
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
    // A crash inside the handler terminates the process at once.
    for (const int signal : kCrashes) SetHandler(signal, EndByCrash, SA_ONSTACK | SA_NODEFER | SA_RESETHAND);
}

void LeaveTerminalSignalsToParent() {
    HandleEndingSignals(SIG_DFL);
    for (const int signal : {SIGINT, SIGQUIT, SIGHUP}) std::signal(signal, SIG_IGN);
}
