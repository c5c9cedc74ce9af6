// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/serve/worker_link.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "platform/system/ORVPrintLimits.h"

namespace {

constexpr std::size_t kMostErrors = std::size_t{16} << 10U;

void CloseOne(int& descriptor) {
    if (descriptor >= 0) close(std::exchange(descriptor, -1));
}

bool WaitsForMore() { return errno == EAGAIN || errno == EINTR; }

}  // namespace

bool WorkerLink::Start(ForkServer& server, std::uint64_t id) {
    Close();
    id_ = id;
    jobCount_ = 0;
    std::array<int, 2> sockets{-1, -1}, errors{-1, -1};
    bool isStarted = socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets.data()) == 0 &&
                     pipe2(errors.data(), O_CLOEXEC) == 0;
    isStarted = isStarted && server.Spawn(id, sockets[1], errors[1]);
    const int error = errno;
    CloseOne(sockets[1]);
    CloseOne(errors[1]);
    socket_ = sockets[0];
    errors_ = errors[0];
    if (!isStarted) {
        Close();
        errno = error;
        return false;
    }
    fcntl(socket_, F_SETFL, O_NONBLOCK);
    fcntl(errors_, F_SETFL, O_NONBLOCK);
    state_ = State::kStarting;
    return true;
}

void WorkerLink::Close() {
    CloseSocket();
    CloseOne(errors_);
    state_ = State::kNone;
    outBody_ = nullptr;
    body_.clear();
    text_.clear();
}

void WorkerLink::CloseSocket() { CloseOne(socket_); }

void WorkerLink::Give(const JobHead& head, const std::string& words, const std::string& body) {
    out_.assign(reinterpret_cast<const char*>(&head), sizeof head).append(words);
    outBody_ = &body;
    written_ = headBytes_ = bodyBytes_ = 0;
    body_.clear();
    PumpErrors();
    text_.clear();
    state_ = State::kBusy;
    ++jobCount_;
    // Does not read: a quick answer is left to Pump, whose caller expects it.
    if (!Write()) CloseSocket();
}

short WorkerLink::GetEvents() const {
    const bool hasMore = state_ == State::kBusy && outBody_ && written_ < out_.size() + outBody_->size();
    return static_cast<short>(hasMore ? POLLIN | POLLOUT : POLLIN);
}

bool WorkerLink::Pump() {
    if (socket_ < 0) return false;
    // If the socket fails, the worker has ended; the fork server reports that.
    if (!Write() || !Read()) {
        CloseSocket();
        return false;
    }
    if (state_ == State::kBusy && headBytes_ == sizeof answer_ && bodyBytes_ == answer_.bodyBytes) {
        state_ = State::kIdle;
        outBody_ = nullptr;
        PumpErrors();
        return true;
    }
    return false;
}

bool WorkerLink::Write() {
    while (state_ == State::kBusy && outBody_ && written_ < out_.size() + outBody_->size()) {
        const std::size_t headLeft = out_.size() - std::min(written_, out_.size());
        const std::size_t bodyAt = written_ - std::min(written_, out_.size());
        std::array<iovec, 2> parts{
            iovec{out_.data() + (out_.size() - headLeft), headLeft},
            iovec{const_cast<char*>(outBody_->data()) + bodyAt, outBody_->size() - bodyAt}};
        const ssize_t sent = writev(socket_, parts.data(), static_cast<int>(parts.size()));
        // The worker may have answered before it read the whole job.
        if (sent < 0) return WaitsForMore() || errno == EPIPE;
        written_ += static_cast<std::size_t>(sent);
    }
    return true;
}

bool WorkerLink::Read() {
    if (state_ != State::kBusy) {
        char byte = 0;
        const ssize_t got = read(socket_, &byte, 1);
        if (got == 1 && state_ == State::kStarting && byte == kWorkerReady) {
            state_ = State::kIdle;
            return true;
        }
        return got < 0 && WaitsForMore();
    }
    for (;;) {
        const bool isHead = headBytes_ < sizeof answer_;
        if (!isHead && !MakeRoom()) return false;
        char* const to = isHead ? reinterpret_cast<char*>(&answer_) + headBytes_ : body_.data() + bodyBytes_;
        const std::size_t left = isHead ? sizeof answer_ - headBytes_ : body_.size() - bodyBytes_;
        if (left == 0) return true;
        const ssize_t got = read(socket_, to, left);
        if (got <= 0) return got < 0 && WaitsForMore();
        (isHead ? headBytes_ : bodyBytes_) += static_cast<std::size_t>(got);
    }
}

/// Grows the buffer as data arrive: a compromised worker could announce any size.
bool WorkerLink::MakeRoom() {
    constexpr std::uint64_t kPart = std::uint64_t{1} << 20U;
    if (answer_.bodyBytes > ORVPrintLimits::Get(ORVPrintLimit::kOutputBytes)) return false;
    if (body_.size() == bodyBytes_) body_.resize(std::min(answer_.bodyBytes, body_.size() + kPart));
    return true;
}

void WorkerLink::PumpErrors() {
    if (errors_ < 0) return;
    std::array<char, 4096> block;
    ssize_t got = 0;
    while ((got = read(errors_, block.data(), block.size())) > 0)
        text_.append(block.data(), std::min(static_cast<std::size_t>(got), kMostErrors - text_.size()));
    if (got == 0) CloseOne(errors_);
}

std::string WorkerLink::TakeErrors() { return std::exchange(text_, {}); }
