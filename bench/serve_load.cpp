// SPDX-License-Identifier: Apache-2.0

// Load generator for a running service, over its Unix socket. Each of CLIENTS connections sends one request
// at a time, as fast as answers arrive or at a fixed rate. A page that differs from the first one of its
// drawing counts as wrong. Writes one line of JSON.
//
//     serve_load SOCKET CLIENTS REQUESTS RATE QUERY DRAWING... [-- HOSTILE...]
//
// RATE is in requests per second; 0 sends as fast as answers arrive. If there are hostile drawings, every
// twentieth request sends one, and any answer to it is accepted.

#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Drawing {
    std::string request;
    bool isHostile = false;
    std::string expected;  // first body received with status 200
};

struct Client {
    int socket = -1;
    Drawing* drawing = nullptr;  // null when idle
    std::size_t sent = 0;
    std::string come;
    Clock::time_point due;
};

struct Result {
    std::vector<double> seconds;  // latencies of good drawings
    std::map<int, std::size_t> statuses, hostileStatuses;
    std::size_t wrong = 0, unanswered = 0;
};

std::string ReadAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Drawing ReadDrawing(const std::string& path, const std::string& query, bool isHostile) {
    const std::string body = ReadAll(path);
    Drawing drawing;
    drawing.request = "POST /print?" + query +
                      " HTTP/1.1\r\nHost: x\r\nContent-Type: image/svg+xml\r\nContent-Length: " +
                      std::to_string(body.size()) + "\r\n\r\n" + body;
    drawing.isHostile = isHostile;
    return drawing;
}

class Load {
public:
    Load(std::string path, std::size_t clients, std::size_t requests, double rate)
        : path_(std::move(path)), requests_(requests), rate_(rate), clients_(clients) {
        events_ = epoll_create1(EPOLL_CLOEXEC);
    }

    void Add(Drawing drawing) { (drawing.isHostile ? hostile_ : good_).push_back(std::move(drawing)); }

    bool Run() {
        for (Client& client : clients_)
            if (!Connect(client)) return false;
        start_ = Clock::now();
        std::array<epoll_event, 128> events;
        while (done_ < requests_) {
            GiveOut();
            const int count = epoll_wait(events_, events.data(), static_cast<int>(events.size()), Timeout());
            for (int i = 0; i < count; ++i)
                Follow(*static_cast<Client*>(events[static_cast<std::size_t>(i)].data.ptr));
        }
        seconds_ = std::chrono::duration<double>(Clock::now() - start_).count();
        return true;
    }

    void Write() {
        std::vector<double>& all = result_.seconds;
        std::sort(all.begin(), all.end());
        const auto at = [&](double share) {
            return all.empty()
                       ? 0.0
                       : 1e3 * all[std::min(all.size() - 1, static_cast<std::size_t>(
                                                                share * static_cast<double>(all.size())))];
        };
        std::printf(
            "{\"requests\":%zu,\"seconds\":%.3f,\"rate\":%.1f,\"p50\":%.3f,\"p99\":%.3f,\"max\":%.3f,"
            "\"wrong\":%zu,\"unanswered\":%zu,",
            done_, seconds_, static_cast<double>(done_) / seconds_, at(0.5), at(0.99), at(1.0), result_.wrong,
            result_.unanswered);
        WriteCounts("statuses", result_.statuses);
        std::printf(",");
        WriteCounts("hostile", result_.hostileStatuses);
        std::printf("}\n");
    }

private:
    static void WriteCounts(const char* name, const std::map<int, std::size_t>& counts) {
        std::printf("\"%s\":{", name);
        const char* comma = "";
        for (const auto& [status, count] : counts) {
            std::printf("%s\"%d\":%zu", comma, status, count);
            comma = ",";
        }
        std::printf("}");
    }

    bool Connect(Client& client) {
        if (client.socket >= 0) close(client.socket);
        client.drawing = nullptr;
        client.come.clear();
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path_.copy(address.sun_path, sizeof address.sun_path - 1);
        client.socket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (connect(client.socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
            std::perror("serve_load");
            return false;
        }
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.ptr = &client;
        return epoll_ctl(events_, EPOLL_CTL_ADD, client.socket, &event) == 0;
    }

    Clock::time_point DueTime(std::size_t number) const {
        return start_ + std::chrono::duration_cast<Clock::duration>(
                            std::chrono::duration<double>(static_cast<double>(number) / rate_));
    }

    int Timeout() const {
        if (rate_ <= 0.0 || given_ >= requests_) return 1000;
        const auto left = DueTime(given_) - Clock::now();
        const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(left).count();
        return static_cast<int>(std::clamp<long long>(milliseconds, 0, 1000));
    }

    void GiveOut() {
        for (Client& client : clients_) {
            if (given_ >= requests_) return;
            if (client.drawing) continue;
            const Clock::time_point now = Clock::now();
            // Latency counts from the due time, even if no client was free then.
            const Clock::time_point due = rate_ > 0.0 ? DueTime(given_) : now;
            if (due > now) return;
            client.due = due;
            client.drawing = &Choose(given_++);
            client.sent = 0;
            client.come.clear();
            Send(client);
        }
    }

    Drawing& Choose(std::size_t number) {
        constexpr std::size_t kEvery = 20;
        if (!hostile_.empty() && number % kEvery == kEvery - 1)
            return hostile_[number / kEvery % hostile_.size()];
        return good_[number % good_.size()];
    }

    void Send(Client& client) {
        const std::string& bytes = client.drawing->request;
        while (client.sent < bytes.size()) {
            const ssize_t sent =
                send(client.socket, bytes.data() + client.sent, bytes.size() - client.sent, MSG_NOSIGNAL);
            if (sent < 0 && errno == EINTR) continue;
            if (sent <= 0) return;  // the next recv reports the error
            client.sent += static_cast<std::size_t>(sent);
        }
    }

    void Follow(Client& client) {
        std::array<char, 65536> block;
        const ssize_t got = recv(client.socket, block.data(), block.size(), MSG_DONTWAIT);
        if (got < 0 && (errno == EAGAIN || errno == EINTR)) return;
        if (got <= 0) {
            if (client.drawing) {
                ++done_;
                ++result_.unanswered;
            }
            if (!Connect(client)) std::exit(1);
            return;
        }
        client.come.append(block.data(), static_cast<std::size_t>(got));
        if (client.drawing && IsWhole(client.come)) Take(client);
    }

    static std::size_t BodyOf(const std::string& bytes) {
        const std::size_t end = bytes.find("\r\n\r\n");
        return end == std::string::npos ? end : end + 4;
    }

    static bool IsWhole(const std::string& bytes) {
        const std::size_t body = BodyOf(bytes);
        if (body == std::string::npos) return false;
        constexpr std::string_view kLength = "Content-Length: ";
        const std::size_t at = bytes.find(kLength);
        return at < body &&
               bytes.size() - body >= std::strtoull(bytes.c_str() + at + kLength.size(), nullptr, 10);
    }

    void Take(Client& client) {
        Drawing& drawing = *client.drawing;
        const int status = std::atoi(client.come.c_str() + 9);
        ++done_;
        ++(drawing.isHostile ? result_.hostileStatuses : result_.statuses)[status];
        if (!drawing.isHostile) {
            result_.seconds.push_back(std::chrono::duration<double>(Clock::now() - client.due).count());
            std::string body = client.come.substr(BodyOf(client.come));
            if (status == 200 && drawing.expected.empty())
                drawing.expected = std::move(body);
            else if (status == 200 && body != drawing.expected)
                ++result_.wrong;
        }
        client.drawing = nullptr;
        if (client.come.find("Connection: close") < BodyOf(client.come)) Connect(client);
    }

    const std::string path_;
    const std::size_t requests_;
    const double rate_;
    std::vector<Client> clients_;
    std::vector<Drawing> good_, hostile_;
    int events_ = -1;
    std::size_t given_ = 0, done_ = 0;
    Clock::time_point start_;
    double seconds_ = 0.0;
    Result result_;
};

}  // namespace

int main(int count, char** arguments) {
    constexpr std::size_t kMostClients = 1000;
    if (count < 7) {
        std::fputs("usage: serve_load SOCKET CLIENTS REQUESTS RATE QUERY DRAWING... [-- HOSTILE...]\n",
                   stderr);
        return 2;
    }
    const std::size_t clients =
        std::clamp<std::size_t>(std::strtoull(arguments[2], nullptr, 10), 1, kMostClients);
    Load load(arguments[1], clients, std::strtoull(arguments[3], nullptr, 10), std::atof(arguments[4]));
    bool isHostile = false;
    for (int i = 6; i < count; ++i) {
        if (std::string_view(arguments[i]) == "--")
            isHostile = true;
        else
            load.Add(ReadDrawing(arguments[i], arguments[5], isHostile));
    }
    if (!load.Run()) return 1;
    load.Write();
    return 0;
}
