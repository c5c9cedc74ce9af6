// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>

/// A process that forks others on request. It is forked early, while this process is small and has seen no
/// client data, so that no child inherits any; it has a single thread, so that it can fork at any time. It
/// and all its children end with this process, for whatever reason.
class ForkServer {
public:
    /// The child's code: it gets its socket; its standard error is already a pipe.
    /// @return an exit code
    using Child = std::function<int(int socket)>;
    /// Runs once in the forking process.
    /// @return an exit code; any code but 0 ends it
    using Preparation = std::function<int()>;

    ForkServer() = default;
    ~ForkServer();
    ForkServer(const ForkServer&) = delete;
    ForkServer& operator=(const ForkServer&) = delete;

    /// Starts the process.
    /// @return false with errno
    bool Start(const Preparation& prepare, const Child& child);
    /// Starts a child.
    /// @param id      unique number of the child
    /// @param socket  passed to the child
    /// @param errors  pipe that becomes its standard error
    bool Spawn(std::uint64_t id, int socket, int errors);
    /// Kills a child unless it has ended.
    bool Kill(std::uint64_t id);

    /// A descriptor that becomes readable when a child or the process has ended.
    int GetDescriptor() const { return control_; }
    struct End {
        std::uint64_t id = 0;
        int status = 0;  ///< as from waitpid
    };
    enum class News { kEnd, kNone, kLost };
    /// The next event. kLost: the process is gone, and no more children can be started.
    News Take(End& end) const;
    /// Waits until the process is ready to fork.
    /// @return 0, or its exit code if it ended instead
    int WaitUntilReady();

private:
    pid_t pid_ = -1;
    int control_ = -1;
};
