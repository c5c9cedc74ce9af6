// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <pthread.h>

#include <memory>
#include <new>

/// A value for each thread, made at its first use there and destroyed when the thread ends. Unlike variables
/// of threads, which end the process where there is no memory to note their destructor in, it throws
/// std::bad_alloc then. To be a static object: what threads that still run have of it is lost with it, but
/// for the calling one's.
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

    /// The calling thread's value; null where it has none yet.
    T* Find() const { return static_cast<T*>(pthread_getspecific(key_)); }
    /// The calling thread's value; throws std::bad_alloc.
    T& Get() {
        if (T* const value = Find()) return *value;
        auto made = std::make_unique<T>();
        if (pthread_setspecific(key_, made.get()) != 0) throw std::bad_alloc();
        return *made.release();
    }

private:
    pthread_key_t key_{};
};
