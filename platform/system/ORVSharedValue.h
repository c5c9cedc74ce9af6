// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "platform/system/ORVSmallObjects.h"

/// A value that copies share until one of them changes it. Copying costs a reference count; comparing is
/// an identity test first. A default-constructed handle owns nothing and reads as T{}. Counts are not
/// atomic: handles that share a payload belong to one thread.
template <class T>
class ORVSharedValue {
public:
    ORVSharedValue() = default;
    /// Shares the value.
    ORVSharedValue(const ORVSharedValue& other) : payload_(other.payload_) {
        if (payload_) ++payload_->references;
    }
    /// Takes the value over; `other` owns nothing then.
    ORVSharedValue(ORVSharedValue&& other) noexcept : payload_(std::exchange(other.payload_, nullptr)) {}
    ~ORVSharedValue() { Drop(); }
    /// Shares the other's value.
    ORVSharedValue& operator=(const ORVSharedValue& other) {
        if (this == &other) return *this;
        Payload* shared = other.payload_;
        if (shared) ++shared->references;
        Drop();
        payload_ = shared;
        return *this;
    }
    /// Takes the other's value over.
    ORVSharedValue& operator=(ORVSharedValue&& other) noexcept {
        std::swap(payload_, other.payload_);
        return *this;
    }

    /// The value; valid until this handle changes.
    const T& Get() const { return payload_ ? payload_->value : Default(); }

    /// The value for writing, private to this handle from now on.
    T& Edit() {
        if (!payload_) {
            payload_ = new Payload;
        } else if (payload_->references > 1) {
            Payload* copy = new Payload{payload_->value};
            --payload_->references;
            payload_ = copy;
        }
        return payload_->value;
    }

    /// Writes one member, unless it already has that value.
    template <class M, class V>
    void Set(M T::*member, const V& value) {
        if (!(Get().*member == value)) Edit().*member = value;
    }

    /// Compares the values.
    bool operator==(const ORVSharedValue& other) const {
        return payload_ == other.payload_ || Get() == other.Get();
    }

private:
    struct Payload {
        [[no_unique_address]] T value{};  // so that the count stands in what is left of its last word
        std::uint32_t references = 1;

        static void* operator new(std::size_t size) { return ORVSmallObjects::Take(size); }
        static void operator delete(void* payload, std::size_t size) { ORVSmallObjects::Give(payload, size); }
    };
    static_assert(alignof(T) <= ORVSmallObjects::kAlignment);

    static const T& Default() {
        static const T value{};
        return value;
    }
    void Drop() {
        Payload* dropped = std::exchange(payload_, nullptr);
        if (dropped && --dropped->references == 0) delete dropped;
    }

    Payload* payload_ = nullptr;
};
