// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstddef>
#include <thread>

/// Asks the system to allocate all pages of a block that is about to be written. That takes a fifth of the
/// time of one page fault per page. Does nothing for small blocks.
void PrefaultMemory(void* start, std::size_t size);

/// During its lifetime, a thread makes the system allocate pages of the growing heap before they are used:
/// the tree and model of a large document take tens of thousands of pages while the second core is idle. At
/// most a few megabytes are allocated needlessly. Does nothing on a single core, or if no thread can be
/// started.
class MemoryPrefault {
public:
    /// @param inputBytes  size of the document; nothing happens for small ones, where the thread would cost
    ///         more than it saves
    explicit MemoryPrefault(std::size_t inputBytes);
    ~MemoryPrefault();
    MemoryPrefault(const MemoryPrefault&) = delete;
    MemoryPrefault& operator=(const MemoryPrefault&) = delete;

private:
    void Run(char* heapEnd);

    std::atomic<bool> isAtEnd_{false};
    std::thread thread_;
};
