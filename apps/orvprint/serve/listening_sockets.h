// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/serve/serve_settings.h"

/// The sockets that a service listens on. A Unix socket's name goes away with the object.
class ListeningSockets {
public:
    ListeningSockets() = default;
    ~ListeningSockets();
    ListeningSockets(const ListeningSockets&) = delete;
    ListeningSockets& operator=(const ListeningSockets&) = delete;

    /// Opens what the settings name, or takes what the system handed over.
    /// @return an exit code; a failure was reported
    int Open(const ServeSettings& settings);

    const std::vector<int>& GetDescriptors() const { return descriptors_; }
    /// What messages call them, with the port that the system chose.
    const std::string& GetPlaces() const { return places_; }

private:
    int TakeGiven();
    int OpenPath(const std::string& path);
    int OpenAddress(const std::string& address, bool allowsRemote);
    int Listen(int socket, const std::string& place);

    std::vector<int> descriptors_;
    std::string places_;
    std::string path_;  // of our own socket
    int lock_ = -1;     // held while it is ours
};
