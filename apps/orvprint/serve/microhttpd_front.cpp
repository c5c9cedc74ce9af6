// SPDX-License-Identifier: Apache-2.0

// The HTTP server, on libmicrohttpd. Only the service loads that library.

#include <microhttpd.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "apps/orvprint/serve/HttpFront.h"

namespace {

using Clock = std::chrono::steady_clock;

// Memory of a connection: for the head of a request and a part of its body.
constexpr std::size_t kConnectionMemory = std::size_t{64} << 10U;
// A client that reads a response more slowly than this, after its patience has passed, is disconnected.
constexpr std::size_t kLeastBytesPerSecond = std::size_t{16} << 10U;
// Number of bytes of a refused body that are read and dropped, so that the client reads the refusal.
constexpr std::uint64_t kMostPassedOver = std::uint64_t{16} << 20U;
constexpr std::uint64_t kDaemonEvent = 0;  // instead of a request's id
constexpr int kSweep = 1000;               // milliseconds between checks for slow clients

/// A client's connection and its request.
struct Connection {
    enum class State { kIdle, kComing, kWaiting, kAnswered };

    MHD_Connection* handle = nullptr;
    int socket = -1;
    State state = State::kIdle;
    Clock::time_point since = Clock::now();  // of the state
    bool isSuspended = false, isGone = false;
    HttpRequest request;
    std::size_t held = 0;              // bytes counted by the user
    std::optional<HttpAnswer> answer;  // or the refusal, while the body is still arriving
    std::uint64_t passedOver = 0;      // bytes of the body dropped since the refusal

    void Become(State next) {
        state = next;
        since = Clock::now();
    }
};

std::string LowerWord(const char* text) {
    std::string word(text ? text : "");
    word.resize(std::min(word.find(';'), word.size()));
    while (word.ends_with(' ')) word.pop_back();
    for (char& c : word)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return word;
}

MHD_Result AddWord(void* to, MHD_ValueKind /*kind*/, const char* key, std::size_t keySize, const char* value,
                   std::size_t size) {
    try {
        static_cast<HttpWords*>(to)->emplace_back(std::string(key, keySize),
                                                  value ? std::string(value, size) : std::string());
        return MHD_YES;
    } catch (const std::bad_alloc&) {
        return MHD_NO;
    }
}

class MicroFront final : public HttpFront {
public:
    MicroFront() = default;
    ~MicroFront() override;

    bool Start(const std::vector<int>& sockets, const HttpSettings& settings, HttpUser& user,
               std::string& error) override;
    int GetDescriptor() const override { return events_; }
    int GetTimeout() const override;
    void Run() override;
    void Answer(std::uint64_t id, HttpAnswer answer) override;
    void StopListening() override;
    std::size_t CountRequests() const override { return requests_.size(); }
    std::size_t CountConnections() const override { return connections_.size(); }

private:
    bool StartOn(int socket, unsigned int connections, std::string& error);
    bool Watch(int descriptor, std::uint32_t events, std::uint64_t id) const;

    static MHD_Result Handle(void* front, MHD_Connection* handle, const char* url, const char* method,
                             const char* version, const char* bytes, std::size_t* size, void** request);
    static void NoteConnection(void* front, MHD_Connection* handle, void** connection,
                               MHD_ConnectionNotificationCode code);
    static void NoteEnd(void* front, MHD_Connection* handle, void** request, MHD_RequestTerminationCode code);

    MHD_Result Begin(Connection& connection, const char* url, const char* method);
    MHD_Result Grow(Connection& connection, std::string_view bytes);
    MHD_Result Complete(Connection& connection);
    MHD_Result SendAnswer(Connection& connection);
    void End(Connection& connection);
    void Resume(Connection& connection);
    void Lose(std::uint64_t id);
    void DropSlow();

    HttpSettings settings_;
    HttpUser* user_ = nullptr;
    int events_ = -1;
    std::vector<MHD_Daemon*> daemons_;
    std::unordered_set<Connection*> connections_;
    std::unordered_map<std::uint64_t, Connection*> requests_;
    std::uint64_t lastId_ = 0;
    bool mustRun_ = false, isStopping_ = false;
    Clock::time_point sweep_ = Clock::now();
};

MicroFront::~MicroFront() {
    // The library cannot stop suspended connections.
    for (const auto& [id, connection] : requests_) {
        connection->isGone = true;
        Resume(*connection);
    }
    for (MHD_Daemon* const daemon : daemons_) {
        MHD_run(daemon);
        MHD_stop_daemon(daemon);
    }
    if (events_ >= 0) close(events_);
}

bool MicroFront::Start(const std::vector<int>& sockets, const HttpSettings& settings, HttpUser& user,
                       std::string& error) {
    settings_ = settings;
    user_ = &user;
    events_ = epoll_create1(EPOLL_CLOEXEC);
    if (events_ < 0) {
        error = std::strerror(errno);
        return false;
    }
    const auto each = static_cast<unsigned int>(settings.mostConnections / sockets.size());
    return std::all_of(sockets.begin(), sockets.end(),
                       [&](int socket) { return StartOn(socket, std::max(each, 1U), error); });
}

bool MicroFront::StartOn(int socket, unsigned int connections, std::string& error) {
    // No threads of its own, and nothing on standard error.
    constexpr unsigned int kFlags = MHD_USE_EPOLL | MHD_ALLOW_SUSPEND_RESUME;
    MHD_Daemon* const daemon =
        MHD_start_daemon(kFlags, 0, nullptr, nullptr, &MicroFront::Handle, this, MHD_OPTION_LISTEN_SOCKET,
                         socket, MHD_OPTION_CONNECTION_LIMIT, connections, MHD_OPTION_CONNECTION_TIMEOUT,
                         settings_.patience, MHD_OPTION_CONNECTION_MEMORY_LIMIT, kConnectionMemory,
                         MHD_OPTION_NOTIFY_CONNECTION, &MicroFront::NoteConnection, this,
                         MHD_OPTION_NOTIFY_COMPLETED, &MicroFront::NoteEnd, this, MHD_OPTION_END);
    if (!daemon) {
        error = "the server cannot be started: " + std::string(std::strerror(errno));
        return false;
    }
    daemons_.push_back(daemon);
    const MHD_DaemonInfo* const info = MHD_get_daemon_info(daemon, MHD_DAEMON_INFO_EPOLL_FD);
    if (info && Watch(info->epoll_fd, EPOLLIN, kDaemonEvent)) return true;
    error = "the server cannot be watched: " + std::string(std::strerror(errno));
    return false;
}

bool MicroFront::Watch(int descriptor, std::uint32_t events, std::uint64_t id) const {
    epoll_event event{};
    event.events = events;
    event.data.u64 = id;
    return epoll_ctl(events_, EPOLL_CTL_ADD, descriptor, &event) == 0;
}

int MicroFront::GetTimeout() const {
    if (mustRun_) return 0;
    int least = connections_.empty() ? -1 : kSweep;
    for (MHD_Daemon* const daemon : daemons_) {
        MHD_UNSIGNED_LONG_LONG milliseconds = 0;
        if (MHD_get_timeout(daemon, &milliseconds) == MHD_YES &&
            (least < 0 || milliseconds < static_cast<unsigned int>(least)))
            least = static_cast<int>(std::min<MHD_UNSIGNED_LONG_LONG>(milliseconds, kSweep));
    }
    return least;
}

void MicroFront::Run() {
    mustRun_ = false;
    std::array<epoll_event, 64> events;
    const int count = epoll_wait(events_, events.data(), static_cast<int>(events.size()), 0);
    for (int i = 0; i < count; ++i)
        if (const std::uint64_t id = events[static_cast<std::size_t>(i)].data.u64; id != kDaemonEvent)
            Lose(id);
    DropSlow();
    for (MHD_Daemon* const daemon : daemons_) MHD_run(daemon);
}

void MicroFront::Answer(std::uint64_t id, HttpAnswer answer) {
    const auto found = requests_.find(id);
    if (found == requests_.end() || found->second->isGone) return;
    Connection& connection = *found->second;
    user_->Release(connection.held);
    connection.held = answer.body.size();
    std::string().swap(connection.request.body);
    connection.answer = std::move(answer);
    Resume(connection);
}

void MicroFront::StopListening() {
    if (std::exchange(isStopping_, true)) return;
    for (MHD_Daemon* const daemon : daemons_) {
        const MHD_DaemonInfo* const info = MHD_get_daemon_info(daemon, MHD_DAEMON_INFO_LISTEN_FD);
        // Connections that the kernel has already accepted are served.
        constexpr int kMostRounds = 1000;
        pollfd waiting{info ? info->listen_fd : -1, POLLIN, 0};
        for (int round = 0; round < kMostRounds && poll(&waiting, 1, 0) > 0; ++round) MHD_run(daemon);
        MHD_quiesce_daemon(daemon);
        for (int round = 0; round < 3; ++round) MHD_run(daemon);
    }
}

MHD_Result MicroFront::Handle(void* front, MHD_Connection* handle, const char* url, const char* method,
                              const char* /*version*/, const char* bytes, std::size_t* size, void** request) {
    MicroFront& self = *static_cast<MicroFront*>(front);
    const MHD_ConnectionInfo* const info =
        MHD_get_connection_info(handle, MHD_CONNECTION_INFO_SOCKET_CONTEXT);
    if (!info || !info->socket_context) return MHD_NO;
    Connection& connection = *static_cast<Connection*>(info->socket_context);
    try {
        if (!*request) {
            *request = &connection;
            return self.Begin(connection, url, method);
        }
        if (connection.isGone) return MHD_NO;
        if (*size > 0) {
            const std::string_view come(bytes, *size);
            *size = 0;
            return self.Grow(connection, come);
        }
        if (connection.state == Connection::State::kComing) return self.Complete(connection);
        return connection.answer ? self.SendAnswer(connection) : MHD_YES;
    } catch (const std::bad_alloc&) {
        return MHD_NO;
    }
}

void MicroFront::NoteConnection(void* front, MHD_Connection* handle, void** connection,
                                MHD_ConnectionNotificationCode code) {
    MicroFront& self = *static_cast<MicroFront*>(front);
    if (code == MHD_CONNECTION_NOTIFY_CLOSED) {
        auto* const old = static_cast<Connection*>(*connection);
        if (!old) return;
        self.End(*old);
        self.connections_.erase(old);
        delete old;
        *connection = nullptr;
        return;
    }
    try {
        auto added = std::make_unique<Connection>();
        added->handle = handle;
        const MHD_ConnectionInfo* const info =
            MHD_get_connection_info(handle, MHD_CONNECTION_INFO_CONNECTION_FD);
        added->socket = info ? info->connect_fd : -1;
        self.connections_.insert(added.get());
        *connection = added.release();
    } catch (const std::bad_alloc&) {  // out of memory: its requests are refused
    }
}

void MicroFront::NoteEnd(void* front, MHD_Connection* /*handle*/, void** request,
                         MHD_RequestTerminationCode /*code*/) {
    if (auto* const connection = static_cast<Connection*>(*request))
        static_cast<MicroFront*>(front)->End(*connection);
    *request = nullptr;
}

MHD_Result MicroFront::Begin(Connection& connection, const char* url, const char* method) {
    connection.request = HttpRequest();
    HttpRequest& head = connection.request;
    head.id = ++lastId_;
    head.method = method;
    head.path = url;
    const auto header = [&](const char* name) {
        return MHD_lookup_connection_value(connection.handle, MHD_HEADER_KIND, name);
    };
    head.contentType = LowerWord(header(MHD_HTTP_HEADER_CONTENT_TYPE));
    head.contentCoding = LowerWord(header(MHD_HTTP_HEADER_CONTENT_ENCODING));
    if (const char* const length = header(MHD_HTTP_HEADER_CONTENT_LENGTH))
        head.length = std::strtoull(length, nullptr, 10);
    if (MHD_get_connection_values_n(connection.handle, MHD_GET_ARGUMENT_KIND, &AddWord, &head.query) < 0)
        return MHD_NO;
    requests_.emplace(head.id, &connection);
    connection.Become(Connection::State::kComing);
    HttpAnswer refusal;
    if (user_->MayCome(head, refusal)) return MHD_YES;
    connection.answer = std::move(refusal);
    // A body that fits into the buffer is read first, so that the connection can be kept open.
    return head.length > kConnectionMemory ? SendAnswer(connection) : MHD_YES;
}

MHD_Result MicroFront::Grow(Connection& connection, std::string_view bytes) {
    std::string& body = connection.request.body;
    if (!connection.answer) {
        HttpAnswer refusal;
        if (user_->MayGrow(bytes.size(), body.size() + bytes.size(), refusal)) {
            connection.held += bytes.size();
            body.append(bytes);
            return MHD_YES;
        }
        connection.answer = std::move(refusal);
        std::string().swap(body);
    }
    connection.passedOver += bytes.size();
    return connection.passedOver > kMostPassedOver ? MHD_NO : MHD_YES;
}

MHD_Result MicroFront::Complete(Connection& connection) {
    if (connection.answer) return SendAnswer(connection);
    connection.Become(Connection::State::kWaiting);
    const std::uint64_t id = connection.request.id;
    user_->Take(std::move(connection.request));
    connection.request.id = id;
    if (connection.answer) return SendAnswer(connection);
    MHD_suspend_connection(connection.handle);
    connection.isSuspended = true;
    if (connection.socket >= 0) Watch(connection.socket, EPOLLRDHUP, id);
    return MHD_YES;
}

/// Does not copy the body: it stays in the connection until the request ends.
MHD_Result MicroFront::SendAnswer(Connection& connection) {
    HttpAnswer& answer = *connection.answer;
    connection.Become(Connection::State::kAnswered);
    MHD_Response* const response =
        MHD_create_response_from_buffer(answer.body.size(), answer.body.data(), MHD_RESPMEM_PERSISTENT);
    if (!response) return MHD_NO;
    if (!answer.contentType.empty())
        MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, answer.contentType.c_str());
    for (const auto& [name, value] : answer.headers)
        MHD_add_response_header(response, name.c_str(), value.c_str());
    if (isStopping_) MHD_add_response_header(response, MHD_HTTP_HEADER_CONNECTION, "close");
    const MHD_Result result =
        MHD_queue_response(connection.handle, static_cast<unsigned int>(answer.status), response);
    MHD_destroy_response(response);
    return result;
}

/// Called when a request has ended, for any reason.
void MicroFront::End(Connection& connection) {
    if (requests_.erase(connection.request.id) > 0) {
        if (connection.state == Connection::State::kWaiting && !connection.isGone && !connection.answer)
            user_->Leave(connection.request.id);
        user_->Release(connection.held);
    }
    connection.held = 0;
    connection.passedOver = 0;
    connection.answer.reset();
    connection.request = HttpRequest();
    connection.isGone = false;
    connection.Become(Connection::State::kIdle);
}

void MicroFront::Resume(Connection& connection) {
    if (!std::exchange(connection.isSuspended, false)) return;
    if (connection.socket >= 0) epoll_ctl(events_, EPOLL_CTL_DEL, connection.socket, nullptr);
    MHD_resume_connection(connection.handle);
    mustRun_ = true;
}

/// Called when a waiting client has disconnected.
void MicroFront::Lose(std::uint64_t id) {
    const auto found = requests_.find(id);
    if (found == requests_.end() || !found->second->isSuspended) return;
    Connection& connection = *found->second;
    connection.isGone = true;
    Resume(connection);
    user_->Leave(id);
}

/// Disconnects clients that send or read too slowly. The library disconnects only completely idle ones.
void MicroFront::DropSlow() {
    const Clock::time_point now = Clock::now();
    if (now < sweep_) return;
    sweep_ = now + std::chrono::milliseconds(kSweep);
    for (const Connection* const connection : connections_) {
        if (connection->state == Connection::State::kWaiting) continue;
        const std::size_t extra = connection->answer ? connection->answer->body.size() : 0;
        const auto patience = std::chrono::seconds(settings_.patience + extra / kLeastBytesPerSecond);
        if (now - connection->since > patience) shutdown(connection->socket, SHUT_RDWR);
    }
}

}  // namespace

extern "C" __attribute__((visibility("default"))) HttpFront* ORVCreateHttpFront() {
    return new (std::nothrow) MicroFront;
}
