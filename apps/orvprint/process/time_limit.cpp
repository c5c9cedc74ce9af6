// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/time_limit.h"

#include <pthread.h>
#include <sys/time.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <cstring>
#include <string_view>

#include "apps/orvprint/process/immediate_exit.h"
#include "library/text/printable_text.h"

namespace {

double limit = 0.0;  // seconds; 0: no limit

/// The message for a timeout. It is prepared in advance, since a signal handler can neither format nor
/// allocate, and does not change while the timer runs.
struct {
    std::array<char, kLongestExitMessage> bytes{};
    std::size_t size = 0;

    /// @param room  bytes to keep free behind the text, which is truncated if it is too long
    void Put(std::string_view text, std::size_t room = 1) {
        PrintablePieces pieces(text);
        for (std::string_view piece; size + room < bytes.size() && pieces.Next(piece);) {
            piece = piece.substr(0, bytes.size() - room - size);
            std::copy(piece.begin(), piece.end(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
            size += piece.size();
        }
    }
} words;

void PrepareWords(std::string_view name) {
    constexpr std::size_t kRest = 256;  // leaves room for the words behind the name
    words.size = 0;
    words.Put("orvprint: ");
    words.Put(name, kRest);
    words.Put(": takes longer than ");
    std::array<char, 32> number{};
    const char* const end = std::to_chars(number.data(), number.data() + number.size(), limit).ptr;
    words.Put({number.data(), static_cast<std::size_t>(end - number.data())});
    words.Put(limit == 1.0 ? " second" : " seconds");
    words.Put(", the limit; to allow more, use --time-limit N");
    words.bytes[words.size++] = '\n';
}

pthread_t drawingThread{};

void TimeIsUp(int signal) {
    // Any thread may receive the signal, but only the drawing thread blocks signals while it creates files.
    if (pthread_equal(pthread_self(), drawingThread) == 0) {
        pthread_kill(drawingThread, signal);
        return;
    }
    ExitImmediately({words.bytes.data(), words.size});
}

void SetTimer(double seconds) {
    itimerval timer{};
    const auto microseconds = static_cast<long long>(seconds * 1e6);
    timer.it_value.tv_sec = static_cast<time_t>(microseconds / 1'000'000);
    timer.it_value.tv_usec = static_cast<suseconds_t>(microseconds % 1'000'000);
    setitimer(ITIMER_REAL, &timer, nullptr);
}

}  // namespace

void SetTimeLimit(double seconds) { limit = seconds; }

void DrawingTime::Begin(const std::string& name) {
    if (limit <= 0.0) return;
    End();
    PrepareWords(name);
    drawingThread = pthread_self();
    // The parent may have left the signal blocked or ignored.
    std::signal(SIGALRM, TimeIsUp);
    sigset_t alarms;
    sigemptyset(&alarms);
    sigaddset(&alarms, SIGALRM);
    pthread_sigmask(SIG_UNBLOCK, &alarms, nullptr);
    SetTimer(limit);
    isRunning_ = true;
}

void DrawingTime::End() {
    if (isRunning_) SetTimer(0.0);
    isRunning_ = false;
}
