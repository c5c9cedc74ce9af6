// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// Name-value pairs of a query or of headers.
using HttpWords = std::vector<std::pair<std::string, std::string>>;

/// A request.
struct HttpRequest {
    std::uint64_t id = 0;  ///< unique among all requests
    std::string method, path;
    HttpWords query;                         ///< decoded
    std::string contentType, contentCoding;  ///< in lower case, without parameters; empty if absent
    std::uint64_t length = 0;                ///< announced size of the body in bytes; 0 if unknown
    std::string body;
};

/// A response.
struct HttpAnswer {
    int status = 200;
    std::string contentType;
    HttpWords headers;
    std::string body;
};

/// Handles requests. Called by the front, in the thread that runs it.
class HttpUser {
public:
    HttpUser() = default;
    virtual ~HttpUser() = default;
    HttpUser(const HttpUser&) = delete;
    HttpUser& operator=(const HttpUser&) = delete;

    /// The head of a request has arrived.
    /// @return whether its body is wanted; if not, the request is answered at once
    virtual bool MayCome(const HttpRequest& head, HttpAnswer& refusal) = 0;
    /// Part of a body has arrived.
    /// @return whether it fits into the memory for bodies, to which it is then added; if not, the request is
    ///         refused at its end
    /// @param more   bytes that arrived
    /// @param total  size of the body so far
    virtual bool MayGrow(std::size_t more, std::size_t total, HttpAnswer& refusal) = 0;
    /// A request is complete. Answer it with HttpFront::Answer, now or later.
    virtual void Take(HttpRequest request) = 0;
    /// The client of an unanswered request has disconnected; do not answer it.
    virtual void Leave(std::uint64_t id) = 0;
    /// Bytes of a request body or response body have been released.
    virtual void Release(std::size_t bytes) = 0;
};

struct HttpSettings {
    std::uint64_t mostBodyBytes = 0;
    unsigned int mostConnections = 0;
    /// Seconds to wait for a request, or for a client to read any part of a response.
    unsigned int patience = 0;
};

/// An HTTP server on listening sockets. All its work is done inside calls from one thread; it has no threads
/// of its own.
class HttpFront {
public:
    HttpFront() = default;
    virtual ~HttpFront() = default;
    HttpFront(const HttpFront&) = delete;
    HttpFront& operator=(const HttpFront&) = delete;

    /// @param sockets  listening sockets, owned by the caller
    /// @return false with an error
    virtual bool Start(const std::vector<int>& sockets, const HttpSettings& settings, HttpUser& user,
                       std::string& error) = 0;
    /// A descriptor that becomes readable when there is work.
    virtual int GetDescriptor() const = 0;
    /// Milliseconds until there is work in any case; -1: never.
    virtual int GetTimeout() const = 0;
    /// Does all pending work.
    virtual void Run() = 0;
    /// Answers a request; ignored if its client has disconnected.
    virtual void Answer(std::uint64_t id, HttpAnswer answer) = 0;
    /// Accepts the pending connections, and no more after that.
    virtual void StopListening() = 0;
    /// Number of requests being received, waiting, or being answered.
    virtual std::size_t CountRequests() const = 0;
    virtual std::size_t CountConnections() const = 0;
};

/// The module that links libmicrohttpd, and the function that it exports: it takes no arguments and returns a
/// new front, or null when out of memory.
inline constexpr const char* kServeModule = "liborvserve.so";
inline constexpr const char* kServeFactory = "ORVCreateHttpFront";
using HttpFrontFactory = HttpFront* (*)();
