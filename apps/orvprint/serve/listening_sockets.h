// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/serve/serve_settings.h"

/// The listening sockets of a service. The file of a Unix socket is removed with the object.
class ListeningSockets {
public:
    ListeningSockets() = default;
    ~ListeningSockets();
    ListeningSockets(const ListeningSockets&) = delete;
    ListeningSockets& operator=(const ListeningSockets&) = delete;

    /// Opens the sockets in the settings, or takes those passed by systemd.
    /// @return an exit code; a failure has been reported
    int Open(const ServeSettings& settings);

    const std::vector<int>& GetDescriptors() const { return descriptors_; }
    /// Their names in messages, with the port number that the system chose.
    const std::string& GetPlaces() const { return places_; }

private:
    int TakeGiven();
    int OpenPath(const std::string& path);
    int OpenAddress(const std::string& address, bool allowsRemote);
    int Listen(int socket, const std::string& place);

    std::vector<int> descriptors_;
    std::string places_;
    std::string path_;  // file of our own socket
    int lock_ = -1;     // lock held while the socket is ours
};
