// SPDX-License-Identifier: Apache-2.0
#include "tests/apps/serve/serve_run.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <csignal>
#include <fstream>
#include <sstream>
#include <thread>

#include "tests/support/test_texts.h"

namespace {

constexpr int kPatience = 60;  // seconds

/// Asks repeatedly. @return false if the answer is still no after a minute
template <class Question>
bool WaitUntil(Question question) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(kPatience);
    while (!question()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

void SetPatience(int socket) {
    const timeval patience{kPatience, 0};
    setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
}

std::vector<pid_t> ChildrenOf(pid_t pid) {
    std::ifstream list("/proc/" + std::to_string(pid) + "/task/" + std::to_string(pid) + "/children");
    std::vector<pid_t> children;
    for (pid_t child = 0; list >> child;) children.push_back(child);
    return children;
}

nlohmann::json JsonOf(const Answer& answer) {
    return answer.Header("content-type") == "application/json"
               ? nlohmann::json::parse(answer.body, nullptr, false)
               : nlohmann::json();
}

}  // namespace

std::string Answer::Header(const std::string& name) const {
    const auto found = headers.find(name);
    return found == headers.end() ? std::string() : found->second;
}

std::string Answer::Message() const {
    const nlohmann::json json = JsonOf(*this);
    return json.is_object() ? json.value("message", "") : std::string();
}

int Answer::Code() const {
    const nlohmann::json json = JsonOf(*this);
    return json.is_object() ? json.value("code", -1) : -1;
}

Client::Client(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    socket_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    SetPatience(socket_);
    if (connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) Close();
}

Client::Client(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    socket_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    SetPatience(socket_);
    if (connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) Close();
}

Client::~Client() { Close(); }

void Client::Close() {
    if (socket_ >= 0) close(socket_);
    socket_ = -1;
}

bool Client::Send(const std::string& bytes) const {
    for (std::size_t at = 0; at < bytes.size();) {
        const ssize_t sent = send(socket_, bytes.data() + at, bytes.size() - at, MSG_NOSIGNAL);
        if (sent <= 0) return false;
        at += static_cast<std::size_t>(sent);
    }
    return true;
}

void Client::Post(const std::string& path, const std::string& body, const std::string& headers) const {
    Send("POST " + path + " HTTP/1.1\r\nHost: x\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" +
         headers + "\r\n" + body);
}

Answer Client::Receive() {
    std::array<char, 65536> block;
    const auto more = [&] {
        const ssize_t got = recv(socket_, block.data(), block.size(), 0);
        if (got <= 0) return false;
        come_.append(block.data(), static_cast<std::size_t>(got));
        return true;
    };
    Answer answer;
    while (come_.find("\r\n\r\n") == std::string::npos)
        if (!more()) return answer;
    const std::size_t end = come_.find("\r\n\r\n");
    std::istringstream head(come_.substr(0, end));
    come_.erase(0, end + 4);
    std::string line;
    std::getline(head, line);
    const int status = std::stoi(line.substr(line.find(' ')));
    while (std::getline(head, line)) {
        std::string name = line.substr(0, line.find(':'));
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return std::tolower(c); });
        std::string value = line.substr(line.find(':') + 2);
        if (value.ends_with('\r')) value.pop_back();
        answer.headers.emplace(name, value);
    }
    const std::string length = answer.Header("content-length");
    const std::size_t size = length.empty() ? 0 : std::stoul(length);
    while (come_.size() < size)
        if (!more()) return answer;
    answer.body = come_.substr(0, size);
    come_.erase(0, size);
    answer.status = status;
    return answer;
}

bool Client::WaitForEnd() {
    std::array<char, 4096> block;
    ssize_t got = 0;
    while ((got = recv(socket_, block.data(), block.size(), 0)) > 0) {
    }
    return got == 0 || errno == ECONNRESET;
}

ServeTest::~ServeTest() {
    if (!isRunning_) return;
    for (const pid_t worker : Workers()) kill(worker, SIGCONT);
    kill(running_.pid, SIGTERM);
    EXPECT_TRUE(WaitUntil([this] { return !IsAlive(running_.pid); })) << "the service does not end";
    Stop(SIGKILL);
}

void ServeTest::Serve(std::vector<std::string> arguments) {
    std::vector<std::string> command{"env", "SOURCE_DATE_EPOCH=0", ORV_TOOL_PATH, "serve"};
    if (std::find(arguments.begin(), arguments.end(), "--listen") == arguments.end())
        arguments.insert(arguments.begin(), {"--socket", Path()});
    command.insert(command.end(), arguments.begin(), arguments.end());
    running_ = StartProgram(command);
    isRunning_ = true;
    ASSERT_TRUE(WaitUntil(
        [this] { return Log().find("\"started\"") != std::string::npos || !IsAlive(running_.pid); }));
    ASSERT_TRUE(IsAlive(running_.pid)) << Log();
}

ToolRun ServeTest::Stop(int signal) {
    isRunning_ = false;
    // Suspended workers would never end.
    for (const pid_t worker : Workers()) kill(worker, SIGCONT);
    kill(running_.pid, signal);
    return ToolTest::WaitFor(running_);
}

Answer ServeTest::Get(const std::string& path) const {
    Client client(Path());
    client.Send("GET " + path + " HTTP/1.1\r\nHost: x\r\n\r\n");
    return client.Receive();
}

Answer ServeTest::Post(const std::string& path, const std::string& body, const std::string& headers) const {
    Client client(Path());
    client.Post(path, body, headers);
    return client.Receive();
}

std::map<std::string, double> ServeTest::Metrics() const {
    std::istringstream lines(Get("/metrics").body);
    std::map<std::string, double> metrics;
    for (std::string line; std::getline(lines, line);)
        if (!line.starts_with('#'))
            metrics[line.substr(0, line.rfind(' '))] = std::stod(line.substr(line.rfind(' ')));
    return metrics;
}

void ServeTest::WaitFor(const std::string& metric, double value) const {
    double last = -1.0;
    EXPECT_TRUE(WaitUntil([&] { return (last = Metrics()[metric]) == value; })) << metric << " is " << last;
}

std::vector<pid_t> ServeTest::Workers() const {
    const std::vector<pid_t> forks = ChildrenOf(running_.pid);
    return forks.empty() ? std::vector<pid_t>() : ChildrenOf(forks.front());
}

std::vector<pid_t> ServeTest::StopWorkers() const {
    EXPECT_TRUE(WaitUntil([this] { return Get("/health").status == 200; }));
    const auto workers = static_cast<std::size_t>(Metrics()["orvprint_workers"]);
    // One job for each worker, so that all become ready.
    for (std::size_t i = 0; i < workers; ++i) EXPECT_EQ(Post("/print", SmallDrawing("<rect/>")).status, 200);
    EXPECT_TRUE(WaitUntil([&] { return Workers().size() == workers; }));
    const std::vector<pid_t> pids = Workers();
    for (const pid_t pid : pids) kill(pid, SIGSTOP);
    return pids;
}

std::string ServeTest::Log() const { return ReadAll(running_.err); }

void ServeTest::WaitForLog(const std::string& text) const {
    EXPECT_TRUE(WaitUntil([&] { return Log().find(text) != std::string::npos; })) << text;
}

bool ServeTest::IsAlive(pid_t pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string text;
    std::getline(stat, text);
    const std::size_t end = text.rfind(')');
    return end != std::string::npos && end + 2 < text.size() && text[end + 2] != 'Z' && text[end + 2] != 'X';
}

std::string LongDrawing() { return SmallDrawing(Repeat("<g><line x2='9' stroke='red'/></g>", 250'000)); }
