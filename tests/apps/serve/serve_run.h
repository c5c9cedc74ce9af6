// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/apps/tool_run.h"

/// An answer of the service.
struct Answer {
    int status = 0;                                   ///< 0 if the connection ended without an answer
    std::multimap<std::string, std::string> headers;  ///< names in lower case
    std::string body;

    /// Returns the first header of that name; empty if there is none.
    std::string Header(const std::string& name) const;
    /// Returns the message of a failure; empty for any other answer.
    std::string Message() const;
    int Code() const;
};

/// A client's connection. Waiting fails the test after a minute.
class Client {
public:
    explicit Client(const std::string& path);
    explicit Client(int port);
    ~Client();
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    bool IsConnected() const { return socket_ >= 0; }
    bool Send(const std::string& bytes) const;
    /// Sends a request.
    void Post(const std::string& path, const std::string& body, const std::string& headers = {}) const;
    Answer Receive();
    /// Returns true once the service has closed the connection.
    bool WaitForEnd();
    void Close();

private:
    int socket_ = -1;
    std::string come_;
};

/// Runs a service for the test, at a socket in its folder.
class ServeTest : public ToolTest {
protected:
    ~ServeTest() override;

    /// Starts the service and waits until it listens.
    void Serve(std::vector<std::string> arguments = {});
    /// Ends it. @return its exit code and log
    ToolRun Stop(int signal = 15);

    std::string Path() const { return (Folder() / "s.sock").string(); }
    std::unique_ptr<Client> Connect() const { return std::make_unique<Client>(Path()); }
    Answer Get(const std::string& path) const;
    Answer Post(const std::string& path, const std::string& body, const std::string& headers = {}) const;

    /// Returns the values of /metrics by name and labels.
    std::map<std::string, double> Metrics() const;
    /// Waits until a metric has this value.
    void WaitFor(const std::string& metric, double value) const;

    pid_t ServicePid() const { return running_.pid; }
    /// Returns the processes that print.
    std::vector<pid_t> Workers() const;
    /// Suspends all workers, so that jobs last until the workers continue.
    std::vector<pid_t> StopWorkers() const;
    std::string Log() const;
    void WaitForLog(const std::string& text) const;
    static bool IsAlive(pid_t pid);

private:
    RunningTool running_;
    bool isRunning_ = false;
};

/// Returns a drawing that takes seconds to print.
std::string LongDrawing();
