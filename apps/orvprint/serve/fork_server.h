// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>

/// A process that starts others for this one. It is forked while this one is small and knows nothing of any
/// client, so that what it starts knows nothing of them either, and has one thread, so that it may fork at
/// any time. It and all that it started end with this process, however that ends.
class ForkServer {
public:
    /// What a child does: it gets its socket, and its standard error is a pipe already. @return an exit code
    using Child = std::function<int(int socket)>;
    /// Done once in the process that forks. @return an exit code; anything but 0 ends it
    using Preparation = std::function<int()>;

    ForkServer() = default;
    ~ForkServer();
    ForkServer(const ForkServer&) = delete;
    ForkServer& operator=(const ForkServer&) = delete;

    /// Starts the process. @return false with errno
    bool Start(const Preparation& prepare, const Child& child);
    /// Starts a child.
    /// @param id      of no other child
    /// @param socket  becomes the child's
    /// @param errors  pipe that becomes its standard error
    bool Spawn(std::uint64_t id, int socket, int errors);
    /// Ends a child at once, if it has not ended.
    bool Kill(std::uint64_t id);

    /// Can be read when a child has ended, or the process has.
    int GetDescriptor() const { return control_; }
    struct End {
        std::uint64_t id = 0;
        int status = 0;  ///< as waitpid has it
    };
    enum class News { kEnd, kNone, kLost };
    /// What has happened. kLost: there will be no more children.
    News Take(End& end) const;
    /// Waits until the process is ready to fork. @return its exit code when it ended instead, else 0
    int WaitUntilReady();

private:
    pid_t pid_ = -1;
    int control_ = -1;
};
