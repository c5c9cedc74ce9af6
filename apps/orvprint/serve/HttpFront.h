// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// Names with values, as a query or header has them.
using HttpWords = std::vector<std::pair<std::string, std::string>>;

/// What a client asks for.
struct HttpRequest {
    std::uint64_t id = 0;  ///< of no other request
    std::string method, path;
    HttpWords query;                         ///< decoded
    std::string contentType, contentCoding;  ///< in lower case, without parameters; empty when not said
    std::uint64_t length = 0;                ///< of the body in bytes, as announced; 0 when it was not
    std::string body;
};

/// What it is answered.
struct HttpAnswer {
    int status = 200;
    std::string contentType;
    HttpWords headers;
    std::string body;
};

/// Whoever answers requests. The front calls it from within its own calls, in the same thread.
class HttpUser {
public:
    HttpUser() = default;
    virtual ~HttpUser() = default;
    HttpUser(const HttpUser&) = delete;
    HttpUser& operator=(const HttpUser&) = delete;

    /// The head of a request has come. @return whether its body is wanted; else it is answered at once
    virtual bool MayCome(const HttpRequest& head, HttpAnswer& refusal) = 0;
    /// More of a body has come. @return whether there is room for it, which then counts as held; else the
    /// request is answered so when it is over
    /// @param more   bytes that have come
    /// @param total  of the body with them
    virtual bool MayGrow(std::size_t more, std::size_t total, HttpAnswer& refusal) = 0;
    /// A request is complete. It is answered with HttpFront::Answer, now or later.
    virtual void Take(HttpRequest request) = 0;
    /// The client of a request went away that has no answer yet; it gets none.
    virtual void Leave(std::uint64_t id) = 0;
    /// Bytes of a body, or of an answer's body, are held no more.
    virtual void Release(std::size_t bytes) = 0;
};

struct HttpSettings {
    std::uint64_t mostBodyBytes = 0;
    unsigned int mostConnections = 0;
    /// Seconds for a request to come, or for a client to take anything of an answer.
    unsigned int patience = 0;
};

/// HTTP over sockets that listen. All happens within the calls of one thread; there is no other.
class HttpFront {
public:
    HttpFront() = default;
    virtual ~HttpFront() = default;
    HttpFront(const HttpFront&) = delete;
    HttpFront& operator=(const HttpFront&) = delete;

    /// @param sockets  that listen; they stay the caller's
    /// @return false with an error
    virtual bool Start(const std::vector<int>& sockets, const HttpSettings& settings, HttpUser& user,
                       std::string& error) = 0;
    /// Can be read when there is something to do.
    virtual int GetDescriptor() const = 0;
    /// Milliseconds after which there is something to do all the same; -1 for never.
    virtual int GetTimeout() const = 0;
    /// Does what there is to do.
    virtual void Run() = 0;
    /// Answers a request that was taken; one whose client is gone is passed over.
    virtual void Answer(std::uint64_t id, HttpAnswer answer) = 0;
    /// Takes the connections that wait, and no more.
    virtual void StopListening() = 0;
    /// Requests that are coming, wait, or are being answered.
    virtual std::size_t CountRequests() const = 0;
    virtual std::size_t CountConnections() const = 0;
};

/// The module that knows the library of HTTP, and what it exports: a function without arguments that returns
/// a new front, or null when out of memory.
inline constexpr const char* kServeModule = "liborvserve.so";
inline constexpr const char* kServeFactory = "ORVCreateHttpFront";
using HttpFrontFactory = HttpFront* (*)();
