// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <pthread.h>

#include <memory>
#include <new>

/// A value per thread, created on first use and destroyed when the thread ends. Unlike a thread_local
/// variable with a destructor, which terminates the process when there is no memory to register that
/// destructor, it throws std::bad_alloc. Must have static storage duration: its destructor frees only the
/// value of the calling thread and leaks those of threads that are still running.
template <class T>
class ORVThreadValue {
public:
    ORVThreadValue() {
        if (pthread_key_create(&key_, [](void* value) { delete static_cast<T*>(value); }) != 0)
            throw std::bad_alloc();
    }
    ~ORVThreadValue() {
        delete Find();
        pthread_key_delete(key_);
    }
    ORVThreadValue(const ORVThreadValue&) = delete;
    ORVThreadValue& operator=(const ORVThreadValue&) = delete;

    /// The value of the calling thread; null when it has none yet.
    T* Find() const { return static_cast<T*>(pthread_getspecific(key_)); }
    /// The value of the calling thread, created if necessary. Throws std::bad_alloc.
    T& Get() {
        if (T* const value = Find()) return *value;
        auto made = std::make_unique<T>();
        if (pthread_setspecific(key_, made.get()) != 0) throw std::bad_alloc();
        return *made.release();
    }

private:
    pthread_key_t key_{};
};
