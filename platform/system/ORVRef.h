// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <utility>

/// Owning handle of a reference-counted object: holds one reference, releases it on destruction.
template <class T>
class ORVRef {
public:
    ORVRef() = default;
    /// Holds nothing.
    ORVRef(std::nullptr_t) {}
    /// Takes over the reference that the caller holds (a fresh object's first one).
    explicit ORVRef(T* object) : object_(object) {}
    /// Adds a reference of its own.
    ORVRef(const ORVRef& other) : object_(other.object_) {
        if (object_) object_->AddRef();
    }
    /// Takes the reference over; `other` holds nothing then.
    ORVRef(ORVRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    /// The same for a pointer that converts.
    template <class U>
    ORVRef(const ORVRef<U>& other) : object_(other.get()) {
        if (object_) object_->AddRef();
    }
    /// The same for a pointer that converts.
    template <class U>
    ORVRef(ORVRef<U>&& other) noexcept : object_(other.Detach()) {}
    ~ORVRef() {
        if (object_) object_->Release();
    }
    /// Releases what is held and takes the other's reference.
    ORVRef& operator=(ORVRef other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    /// Adds a reference of its own to an object that somebody else holds.
    static ORVRef Share(T* object) {
        if (object) object->AddRef();
        return ORVRef(object);
    }

    /// The object; null for none. The handle keeps its reference.
    T* get() const { return object_; }
    /// The object, of a handle that holds one.
    T& operator*() const { return *object_; }
    /// The object, of a handle that holds one.
    T* operator->() const { return object_; }
    /// Whether an object is held.
    explicit operator bool() const { return object_ != nullptr; }

    /// Hands the reference over to the caller, who must release it.
    [[nodiscard]] T* Detach() { return std::exchange(object_, nullptr); }

private:
    T* object_ = nullptr;
};
