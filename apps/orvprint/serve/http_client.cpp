// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/serve/http_client.h"

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>

#include "apps/orvprint/serve/percent_codes.h"

namespace {

constexpr std::size_t kMostHead = std::size_t{64} << 10U;

class Socket {
public:
    Socket() = default;
    ~Socket() {
        if (descriptor_ >= 0) close(descriptor_);
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    bool Connect(const std::string& place, std::string& error) {
        const std::size_t colon = place.rfind(':');
        const bool isPath = place.find('/') != std::string::npos || colon == std::string::npos;
        return isPath ? ConnectPath(place, error)
                      : ConnectAddress(place.substr(0, colon), place.substr(colon + 1), error);
    }
    int Get() const { return descriptor_; }

private:
    bool ConnectPath(const std::string& path, std::string& error) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        if (path.size() >= sizeof address.sun_path) {
            error =
                "the path of a socket is shorter than " + std::to_string(sizeof address.sun_path) + " bytes";
            return false;
        }
        path.copy(address.sun_path, path.size());
        descriptor_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (descriptor_ >= 0 &&
            connect(descriptor_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
            return true;
        error = std::strerror(errno);
        return false;
    }

    bool ConnectAddress(std::string host, const std::string& port, std::string& error) {
        if (host.starts_with('[') && host.ends_with(']')) host = host.substr(1, host.size() - 2);
        if (host == "localhost") host = "127.0.0.1";
        addrinfo wanted{}, *found = nullptr;
        wanted.ai_socktype = SOCK_STREAM;
        wanted.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
        if (const int status = getaddrinfo(host.c_str(), port.c_str(), &wanted, &found); status != 0) {
            error = gai_strerror(status);
            return false;
        }
        descriptor_ = socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const bool isConnected =
            descriptor_ >= 0 && connect(descriptor_, found->ai_addr, found->ai_addrlen) == 0;
        error = isConnected ? "" : std::strerror(errno);
        freeaddrinfo(found);
        return isConnected;
    }

    int descriptor_ = -1;
};

/// Sends bytes and receives at the same time: a service may answer before it has read everything.
/// @return false with errno
bool Exchange(int socket, const std::array<std::string_view, 2>& parts, std::uint64_t most,
              std::string& come) {
    std::size_t part = 0, at = 0;
    std::array<char, 65536> block;
    for (;;) {
        while (part < parts.size() && at == parts[part].size()) {
            ++part;
            at = 0;
        }
        const bool hasMore = part < parts.size();
        pollfd ready{socket, static_cast<short>(hasMore ? POLLIN | POLLOUT : POLLIN), 0};
        if (poll(&ready, 1, -1) < 0 && errno != EINTR) return false;
        if (hasMore && (ready.revents & POLLOUT) != 0) {
            const ssize_t sent =
                send(socket, parts[part].data() + at, parts[part].size() - at, MSG_NOSIGNAL | MSG_DONTWAIT);
            if (sent > 0) at += static_cast<std::size_t>(sent);
            if (sent < 0 && errno != EAGAIN && errno != EINTR)
                part = parts.size();  // the answer gives the reason
        }
        if ((ready.revents & (POLLIN | POLLHUP | POLLERR)) == 0) continue;
        const ssize_t got = recv(socket, block.data(), block.size(), MSG_DONTWAIT);
        if (got == 0) return true;
        if (got < 0 && (errno == EAGAIN || errno == EINTR)) continue;
        if (got < 0) return !come.empty();
        come.append(block.data(), static_cast<std::size_t>(got));
        if (come.size() > most + kMostHead) {
            errno = EFBIG;
            return false;
        }
    }
}

bool IsSameWord(std::string_view name, std::string_view wanted) {
    return std::equal(name.begin(), name.end(), wanted.begin(), wanted.end(), [](char a, char b) {
        return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
    });
}

template <class Number>
bool ReadNumber(std::string_view text, Number& number) {
    const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), number);
    return status == std::errc{} && end == text.data() + text.size();
}

/// Removes the first line. @return false if no line is complete
bool TakeLine(std::string_view& text, std::string_view& line) {
    const std::size_t end = text.find("\r\n");
    if (end == std::string_view::npos) return false;
    line = text.substr(0, end);
    text.remove_prefix(end + 2);
    return true;
}

/// @return false if the response is malformed or incomplete
bool ReadAnswer(std::string_view bytes, HttpAnswer& answer) {
    constexpr std::string_view kVersion = "HTTP/1.";
    std::string_view line;
    if (!TakeLine(bytes, line) || !line.starts_with(kVersion) || line.size() < 12) return false;
    if (!ReadNumber(line.substr(9, 3), answer.status)) return false;
    std::size_t length = std::string_view::npos;
    while (TakeLine(bytes, line) && !line.empty()) {
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos) return false;
        const std::string_view name = line.substr(0, colon);
        std::string_view value = line.substr(colon + 1);
        while (value.starts_with(' ')) value.remove_prefix(1);
        if (IsSameWord(name, "content-length") && !ReadNumber(value, length)) return false;
        if (IsSameWord(name, "content-type")) answer.contentType = value;
        answer.headers.emplace_back(name, value);
    }
    if (!line.empty() || length == std::string_view::npos || bytes.size() != length) return false;
    answer.body = bytes;
    return true;
}

std::string Encoded(std::string_view text) {
    return EncodePercent(text, [](char c) {
        constexpr std::string_view kPlain = "-._~/";
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               kPlain.find(c) != std::string_view::npos;
    });
}

}  // namespace

bool AskService(const std::string& place, const std::string& path, std::string_view body, std::uint64_t most,
                HttpAnswer& answer, std::string& error) {
    Socket socket;
    if (!socket.Connect(place, error)) return false;
    const std::string head = "POST " + path +
                             " HTTP/1.1\r\nHost: orvprint\r\nConnection: close\r\nContent-Type: "
                             "application/octet-stream\r\nContent-Length: " +
                             std::to_string(body.size()) + "\r\n\r\n";
    std::string come;
    if (!Exchange(socket.Get(), {head, body}, most, come)) {
        error = errno == EFBIG ? "the document is larger than the limit output-bytes" : std::strerror(errno);
        return false;
    }
    if (ReadAnswer(come, answer)) return true;
    error = come.empty() ? "ended the connection without an answer"
                         : "is no service for printing, or was cut short";
    return false;
}

std::string PathWithQuery(const std::string& path, const HttpWords& words) {
    std::string text = path;
    char sign = '?';
    for (const auto& [name, value] : words) {
        text += std::exchange(sign, '&');
        text += Encoded(name) + "=" + Encoded(value);
    }
    return text;
}
