// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/failing_threads.h"

#include <dlfcn.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>

namespace {
std::atomic<bool> isRefusing = false;
std::atomic<int> refused = 0;
}  // namespace

NoThreads::NoThreads() {
    refused = 0;
    isRefusing = true;
}
NoThreads::~NoThreads() { isRefusing = false; }

int NoThreads::GetRefused() { return refused; }

// Replaces the system's function for this program and all its libraries.
extern "C" __attribute__((visibility("default"))) int pthread_create(pthread_t* thread,
                                                                     const pthread_attr_t* attributes,
                                                                     void* (*routine)(void*),
                                                                     void* argument) noexcept {
    if (isRefusing) {
        ++refused;
        return EAGAIN;
    }
    static const auto create =
        reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return create(thread, attributes, routine, argument);
}
