#pragma once

#include <atomic>
#include <cstddef>
#include <thread>

/// Has the system give the pages of memory that is about to be written as a whole, which takes a fifth of the
/// time that it takes page by page at the first touch of each. Does nothing for little memory.
void MakeMemoryReady(void* start, std::size_t size);

/// As long as it lives, a thread of its own has the system give the pages that the heap grows by before they
/// are touched: a large document's tree and model are ten thousands of pages, and the second processor
/// waits meanwhile. Takes a few megabytes at most that are not used afterwards. Where there is but one
/// processor, or no thread to be had, it does nothing.
class MemoryAhead {
public:
    /// @param inputBytes  size of the document; for small ones, the thread would cost more than it saves
    explicit MemoryAhead(std::size_t inputBytes);
    ~MemoryAhead();
    MemoryAhead(const MemoryAhead&) = delete;
    MemoryAhead& operator=(const MemoryAhead&) = delete;

private:
    void Run(char* heapEnd);

    std::atomic<bool> isAtEnd_{false};
    std::thread thread_;
};
