// SPDX-License-Identifier: Apache-2.0
#include "generators/common/ORVTemporaryFile.h"

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <utility>

/// Node of a list that a signal handler may traverse at any time: nodes are reused but never freed.
struct ORVTemporaryFile::Entry {
    static std::atomic<Entry*> first;

    static Entry* Take() {
        for (Entry* entry = first; entry; entry = entry->next)
            if (!entry->isTaken.exchange(true)) return entry;
        Entry* entry = new Entry;
        entry->next = first;
        while (!first.compare_exchange_weak(entry->next, entry)) {
        }
        return entry;
    }
    void Return() {
        isThere = false;
        isTaken = false;
    }

    Entry* next = nullptr;
    std::atomic<bool> isTaken = true;
    std::atomic<bool> isThere = false;
    std::string path;  // does not change while isThere
};

std::atomic<ORVTemporaryFile::Entry*> ORVTemporaryFile::Entry::first = nullptr;

namespace {

/// Blocks all signals in this thread, so that none ends the process between a file's creation and its
/// registration.
class SignalsHeldBack {
public:
    SignalsHeldBack() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~SignalsHeldBack() {
        const int error = errno;
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
        errno = error;
    }
    SignalsHeldBack(const SignalsHeldBack&) = delete;
    SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

private:
    sigset_t before_{};
};

}  // namespace

int ORVTemporaryFile::Create(const std::string& finalPath) {
    Remove();
    const std::size_t nameStart = finalPath.rfind('/') == finalPath.npos ? 0 : finalPath.rfind('/') + 1;
    // Truncates the name, so that the additions fit the maximum length of file names.
    std::string path = finalPath.substr(0, nameStart) + "." + finalPath.substr(nameStart, 200) + ".XXXXXX";
    const SignalsHeldBack heldBack;
    entry_ = Entry::Take();
    const int descriptor = mkstemp(path.data());
    if (descriptor < 0) {
        std::exchange(entry_, nullptr)->Return();
        return -1;
    }
    entry_->path = std::move(path);
    entry_->isThere = true;
    return descriptor;
}

bool ORVTemporaryFile::MoveTo(const std::string& finalPath) {
    if (!entry_ || std::rename(entry_->path.c_str(), finalPath.c_str()) != 0) return false;
    std::exchange(entry_, nullptr)->Return();
    return true;
}

void ORVTemporaryFile::RemoveAll() {
    for (const Entry* entry = Entry::first; entry; entry = entry->next)
        if (entry->isThere) unlink(entry->path.c_str());
}

void ORVTemporaryFile::Remove() {
    if (!entry_) return;
    unlink(entry_->path.c_str());
    std::exchange(entry_, nullptr)->Return();
}
