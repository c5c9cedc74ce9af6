// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/serve/fork_server.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <map>
#include <new>
#include <utility>

#include "apps/orvprint/process/signals.h"
#include "apps/orvprint/process/worker_process.h"

namespace {

struct Order {
    enum class Kind : std::uint8_t { kSpawn, kKill } kind = Kind::kSpawn;
    std::uint64_t id = 0;
};

constexpr std::uint64_t kReady = 0;  // instead of a child's id

/// Sends an order with its descriptors, if any.
bool SendOrder(int control, const Order& order, const int* descriptors, std::size_t count) {
    Order copy = order;
    iovec part{&copy, sizeof copy};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(2 * sizeof(int))> room{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    if (count > 0) {
        message.msg_control = room.data();
        message.msg_controllen = CMSG_SPACE(count * sizeof(int));
        cmsghdr* const head = CMSG_FIRSTHDR(&message);
        head->cmsg_level = SOL_SOCKET;
        head->cmsg_type = SCM_RIGHTS;
        head->cmsg_len = CMSG_LEN(count * sizeof(int));
        std::memcpy(CMSG_DATA(head), descriptors, count * sizeof(int));
    }
    ssize_t sent = sendmsg(control, &message, MSG_NOSIGNAL);
    while (sent < 0 && errno == EINTR) sent = sendmsg(control, &message, MSG_NOSIGNAL);
    return sent == static_cast<ssize_t>(sizeof copy);
}

/// @return false at the end of the stream
bool ReceiveOrder(int control, Order& order, std::array<int, 2>& descriptors) {
    descriptors = {-1, -1};
    iovec part{&order, sizeof order};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(2 * sizeof(int))> room{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = room.data();
    message.msg_controllen = room.size();
    ssize_t got = recvmsg(control, &message, MSG_CMSG_CLOEXEC);
    while (got < 0 && errno == EINTR) got = recvmsg(control, &message, MSG_CMSG_CLOEXEC);
    if (got != static_cast<ssize_t>(sizeof order)) return false;
    if (const cmsghdr* const head = CMSG_FIRSTHDR(&message);
        head && head->cmsg_type == SCM_RIGHTS && head->cmsg_len == CMSG_LEN(sizeof descriptors))
        std::memcpy(descriptors.data(), CMSG_DATA(head), sizeof descriptors);
    return true;
}

/// The forking process.
class Forker {
public:
    Forker(int control, const ForkServer::Child& child) : control_(control), child_(child) {}

    /// Returns when the parent process has ended.
    void Run() {
        sigset_t children;
        sigemptyset(&children);
        sigaddset(&children, SIGCHLD);
        sigprocmask(SIG_BLOCK, &children, &before_);
        ends_ = signalfd(-1, &children, SFD_CLOEXEC | SFD_NONBLOCK);
        if (ends_ < 0 || !Tell({kReady, 0})) return;
        for (;;) {
            std::array<pollfd, 2> ready{pollfd{control_, POLLIN, 0}, pollfd{ends_, POLLIN, 0}};
            if (poll(ready.data(), ready.size(), -1) < 0 && errno != EINTR) return;
            if (ready[1].revents != 0) Reap();
            if (ready[0].revents != 0 && !Obey()) break;
        }
        EndChildren();
    }

private:
    /// Idle children end by themselves; the others are killed after a moment.
    void EndChildren() {
        constexpr int kPatience = 200;  // milliseconds
        pollfd ended{ends_, POLLIN, 0};
        while (!children_.empty() && poll(&ended, 1, kPatience) > 0) Reap();
        for (const auto& [pid, id] : children_) kill(pid, SIGKILL);
    }

    bool Tell(const ForkServer::End& end) const {
        return send(control_, &end, sizeof end, MSG_NOSIGNAL) == static_cast<ssize_t>(sizeof end);
    }

    bool Obey() {
        Order order;
        std::array<int, 2> descriptors;
        if (!ReceiveOrder(control_, order, descriptors)) return false;
        if (order.kind == Order::Kind::kSpawn) {
            Spawn(order.id, descriptors);
        } else {
            for (const auto& [pid, id] : children_)
                if (id == order.id) kill(pid, SIGKILL);
        }
        for (const int descriptor : descriptors)
            if (descriptor >= 0) close(descriptor);
        return true;
    }

    void Spawn(std::uint64_t id, const std::array<int, 2>& descriptors) {
        const pid_t parent = getpid();
        const pid_t pid = fork();
        if (pid == 0) Become(descriptors, parent);
        if (pid > 0)
            children_[pid] = id;
        else
            Tell({id, SIGKILL});  // fork failed: reported as if the child had been killed
    }

    [[noreturn]] void Become(const std::array<int, 2>& descriptors, pid_t parent) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        close(control_);
        close(ends_);
        sigprocmask(SIG_SETMASK, &before_, nullptr);
        int code = 1;
        if (getppid() == parent && dup2(descriptors[1], STDERR_FILENO) == STDERR_FILENO) {
            close(descriptors[1]);
            try {
                code = child_(descriptors[0]);
            } catch (const std::bad_alloc&) {
            }
        }
        LeaveProcess(code);
    }

    void Reap() {
        std::array<char, sizeof(signalfd_siginfo)> ignored;
        while (read(ends_, ignored.data(), ignored.size()) > 0) {
        }
        int status = 0;
        for (pid_t pid = 0; (pid = waitpid(-1, &status, WNOHANG)) > 0;) {
            const auto child = children_.find(pid);
            if (child == children_.end()) continue;
            Tell({child->second, status});
            children_.erase(child);
        }
    }

    const int control_;
    const ForkServer::Child& child_;
    int ends_ = -1;
    sigset_t before_{};
    std::map<pid_t, std::uint64_t> children_;
};

/// Closes all descriptors but the standard streams and one more: workers must not hold the listening sockets.
void CloseAllBut(int kept) {
    const auto first = static_cast<unsigned int>(kept);
    if (first > 3) close_range(3, first - 1, 0);
    close_range(first + 1, ~0U, 0);
}

/// Ignores signals that a terminal or service manager sends to all processes: the parent decides when to end.
void LeaveEndToParent() {
    LeaveTerminalSignalsToParent();
    std::signal(SIGTERM, SIG_IGN);
}

}  // namespace

ForkServer::~ForkServer() {
    if (control_ >= 0) close(control_);
    if (pid_ <= 0) return;
    while (waitpid(pid_, nullptr, 0) < 0 && errno == EINTR) {
    }
}

bool ForkServer::Start(const Preparation& prepare, const Child& child) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) return false;
    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        CloseAllBut(ends[1]);
        LeaveEndToParent();
        int code = 1;
        try {
            if (getppid() == parent) code = prepare();
            if (code == 0) Forker(ends[1], child).Run();
        } catch (const std::bad_alloc&) {
        }
        LeaveProcess(code);
    }
    const int error = errno;
    close(ends[1]);
    control_ = ends[0];
    errno = error;
    return pid_ > 0;
}

bool ForkServer::Spawn(std::uint64_t id, int socket, int errors) {
    const std::array<int, 2> descriptors{socket, errors};
    return SendOrder(control_, {Order::Kind::kSpawn, id}, descriptors.data(), descriptors.size());
}

bool ForkServer::Kill(std::uint64_t id) { return SendOrder(control_, {Order::Kind::kKill, id}, nullptr, 0); }

ForkServer::News ForkServer::Take(End& end) const {
    const ssize_t got = recv(control_, &end, sizeof end, MSG_DONTWAIT);
    if (got == static_cast<ssize_t>(sizeof end)) return News::kEnd;
    return got < 0 && (errno == EAGAIN || errno == EINTR) ? News::kNone : News::kLost;
}

int ForkServer::WaitUntilReady() {
    End ready;
    ssize_t got = recv(control_, &ready, sizeof ready, 0);
    while (got < 0 && errno == EINTR) got = recv(control_, &ready, sizeof ready, 0);
    if (got == static_cast<ssize_t>(sizeof ready) && ready.id == kReady) return 0;
    int status = 0;
    while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
    }
    pid_ = -1;
    return WIFEXITED(status) && WEXITSTATUS(status) != 0 ? WEXITSTATUS(status) : 1;
}
