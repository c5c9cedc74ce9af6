// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <utility>

/// Smart pointer to a reference-counted object. Holds one reference and releases it on destruction.
template <class T>
class ORVRef {
public:
    ORVRef() = default;
    /// Constructs an empty pointer.
    ORVRef(std::nullptr_t) {}
    /// Takes ownership of a reference that the caller holds, such as the first one of a new object.
    explicit ORVRef(T* object) : object_(object) {}
    /// Adds a reference.
    ORVRef(const ORVRef& other) : object_(other.object_) {
        if (object_) object_->AddRef();
    }
    /// Takes over the reference; `other` becomes empty.
    ORVRef(ORVRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    /// Adds a reference, converting the pointer.
    template <class U>
    ORVRef(const ORVRef<U>& other) : object_(other.get()) {
        if (object_) object_->AddRef();
    }
    /// Takes over the reference, converting the pointer; `other` becomes empty.
    template <class U>
    ORVRef(ORVRef<U>&& other) noexcept : object_(other.Detach()) {}
    ~ORVRef() {
        if (object_) object_->Release();
    }
    /// Releases the current object and takes over the reference of `other`.
    ORVRef& operator=(ORVRef other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    /// Returns a pointer that holds an additional reference to `object`, which may be null.
    static ORVRef Share(T* object) {
        if (object) object->AddRef();
        return ORVRef(object);
    }

    /// The object, or null. The reference stays with this pointer.
    T* get() const { return object_; }
    /// The object. Must not be empty.
    T& operator*() const { return *object_; }
    /// The object. Must not be empty.
    T* operator->() const { return object_; }
    /// Whether there is an object.
    explicit operator bool() const { return object_ != nullptr; }

    /// Returns the object and its reference to the caller, who must release it; this pointer becomes empty.
    [[nodiscard]] T* Detach() { return std::exchange(object_, nullptr); }

private:
    T* object_ = nullptr;
};
