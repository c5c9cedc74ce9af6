// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/serve/listening_sockets.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>

#include "apps/orvprint/process/report.h"

namespace {

constexpr int kFirstGiven = 3;  // number of the first descriptor that systemd passes
constexpr mode_t kSocketMode = 0660;

/// The number in an environment variable; 0 if there is none.
long NumberOf(const char* name) {
    const char* const text = std::getenv(name);
    long number = 0;
    if (text) std::from_chars(text, text + std::strlen(text), number);
    return number;
}

struct Address {
    sockaddr_storage storage{};
    socklen_t size = 0;
    bool isLoopback = false;
};

bool ReadPort(const std::string& text, in_port_t& port) {
    std::uint16_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, status] = std::from_chars(text.data(), end, number);
    port = htons(number);
    return !text.empty() && status == std::errc{} && stop == end;
}

/// Numeric hosts only: what a name resolves to may change.
bool ReadAddress(const std::string& text, Address& address) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string::npos) return false;
    std::string host = text.substr(0, colon);
    if (host == "localhost") host = "127.0.0.1";
    in_port_t port = 0;
    if (!ReadPort(text.substr(colon + 1), port)) return false;
    auto& four = reinterpret_cast<sockaddr_in&>(address.storage);
    if (inet_pton(AF_INET, host.c_str(), &four.sin_addr) == 1) {
        four.sin_family = AF_INET;
        four.sin_port = port;
        address.size = sizeof four;
        address.isLoopback = (ntohl(four.sin_addr.s_addr) >> 24U) == IN_LOOPBACKNET;
        return true;
    }
    auto& six = reinterpret_cast<sockaddr_in6&>(address.storage);
    if (!host.starts_with('[') || !host.ends_with(']')) return false;
    if (inet_pton(AF_INET6, host.substr(1, host.size() - 2).c_str(), &six.sin6_addr) != 1) return false;
    six.sin6_family = AF_INET6;
    six.sin6_port = port;
    address.size = sizeof six;
    address.isLoopback = IN6_IS_ADDR_LOOPBACK(&six.sin6_addr);
    return true;
}

/// The address with the port that the system chose.
std::string PlaceOf(int socket, const std::string& asked) {
    sockaddr_storage storage{};
    socklen_t size = sizeof storage;
    if (getsockname(socket, reinterpret_cast<sockaddr*>(&storage), &size) != 0) return asked;
    const in_port_t port = storage.ss_family == AF_INET6
                               ? reinterpret_cast<const sockaddr_in6&>(storage).sin6_port
                               : reinterpret_cast<const sockaddr_in&>(storage).sin_port;
    return asked.substr(0, asked.rfind(':') + 1) + std::to_string(ntohs(port));
}

bool IsSocket(const std::string& path) {
    struct stat facts {};
    return lstat(path.c_str(), &facts) == 0 && S_ISSOCK(facts.st_mode);
}

}  // namespace

ListeningSockets::~ListeningSockets() {
    if (!path_.empty()) unlink(path_.c_str());
    for (const int descriptor : descriptors_) close(descriptor);
    // The lock is released only after the file has been removed.
    if (lock_ >= 0) close(lock_);
}

int ListeningSockets::Open(const ServeSettings& settings) {
    if (settings.socket.empty() && settings.address.empty()) return TakeGiven();
    if (!settings.socket.empty())
        if (const int code = OpenPath(settings.socket); code != kExitDone) return code;
    if (settings.address.empty()) return kExitDone;
    return OpenAddress(settings.address, settings.allowsRemote);
}

int ListeningSockets::TakeGiven() {
    const long count = NumberOf("LISTEN_PID") == getpid() ? NumberOf("LISTEN_FDS") : 0;
    constexpr long kMost = 64;
    for (int descriptor = kFirstGiven; descriptor < kFirstGiven + static_cast<int>(std::min(count, kMost));
         ++descriptor) {
        int listens = 0;
        socklen_t size = sizeof listens;
        if (getsockopt(descriptor, SOL_SOCKET, SO_ACCEPTCONN, &listens, &size) != 0 || listens == 0)
            return Report(kExitUsage, "LISTEN_FDS", "hands over what is no listening socket");
        fcntl(descriptor, F_SETFD, FD_CLOEXEC);
        fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK);
        descriptors_.push_back(descriptor);
    }
    unsetenv("LISTEN_PID");
    unsetenv("LISTEN_FDS");
    if (descriptors_.empty())
        return Report(kExitUsage, "",
                      "no socket to listen on; give one with --socket PATH or --listen HOST:PORT");
    places_ = "the sockets handed over";
    return kExitDone;
}

/// Opens a Unix socket. A lock file beside it shows whether a service is running there: the socket of a
/// killed service is replaced, one in use is not.
int ListeningSockets::OpenPath(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        return Report(kExitUsage, "--socket " + path,
                      "is longer than " + std::to_string(sizeof address.sun_path - 1) + " bytes");
    path.copy(address.sun_path, path.size());
    const std::string lock = path + ".lock";
    lock_ = open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (lock_ < 0) return Report(kExitUnwritable, lock, std::strerror(errno));
    if (flock(lock_, LOCK_EX | LOCK_NB) != 0)
        return Report(kExitUnwritable, path, "another service listens there");
    if (access(path.c_str(), F_OK) == 0 && !IsSocket(path))
        return Report(kExitUnwritable, path, "is there and is no socket");
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0) return Report(kExitUnwritable, path, std::strerror(errno));
    // A program that does not use the lock may be listening there.
    if (IsSocket(path) && connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
        close(socket);
        return Report(kExitUnwritable, path, "another service listens there");
    }
    unlink(path.c_str());
    const mode_t before = umask(static_cast<mode_t>(~kSocketMode & 0777U));
    const bool isBound = bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    const int error = errno;
    umask(before);
    if (!isBound) {
        close(socket);
        return Report(kExitUnwritable, path, std::strerror(error));
    }
    path_ = path;
    return Listen(socket, path);
}

int ListeningSockets::OpenAddress(const std::string& text, bool allowsRemote) {
    Address address;
    if (!ReadAddress(text, address))
        return Report(kExitUsage, "--listen " + text,
                      "is not an address with a port, such as 127.0.0.1:8631 or [::1]:8631");
    if (!address.isLoopback && !allowsRemote)
        return Report(
            kExitUsage, "--listen " + text,
            "is an address that other machines reach, and the service asks nobody who he is; if that "
            "is meant, add --allow-remote");
    const int socket = ::socket(address.storage.ss_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0) return Report(kExitUnwritable, text, std::strerror(errno));
    const int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    if (bind(socket, reinterpret_cast<const sockaddr*>(&address.storage), address.size) != 0) {
        const int error = errno;
        close(socket);
        return Report(kExitUnwritable, text, std::strerror(error));
    }
    return Listen(socket, PlaceOf(socket, text));
}

int ListeningSockets::Listen(int socket, const std::string& place) {
    descriptors_.push_back(socket);
    if (listen(socket, SOMAXCONN) != 0) return Report(kExitUnwritable, place, std::strerror(errno));
    places_ += (places_.empty() ? "" : " and ") + place;
    return kExitDone;
}
