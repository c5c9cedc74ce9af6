// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "platform/system/ORVSmallObjects.h"

/// Copy-on-write value. Copies share one payload until one of them is changed. Copying increments a reference
/// count; comparing tests for the same payload first. A default-constructed value allocates nothing and reads
/// as T{}. The count is not atomic: values that share a payload must be used by one thread at a time.
template <class T>
class ORVSharedValue {
public:
    ORVSharedValue() = default;
    /// Shares the value.
    ORVSharedValue(const ORVSharedValue& other) : payload_(other.payload_) {
        if (payload_) ++payload_->references;
    }
    /// Takes over the payload; `other` is left as if default-constructed.
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
    /// Exchanges the payloads.
    ORVSharedValue& operator=(ORVSharedValue&& other) noexcept {
        std::swap(payload_, other.payload_);
        return *this;
    }

    /// The value. Valid until this object is changed.
    const T& Get() const { return payload_ ? payload_->value : Default(); }

    /// The value for modification. Copies it first if it is shared.
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

    /// Sets one member, unless it already has that value.
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
        [[no_unique_address]] T value{};  // lets the count use the padding at the end of T
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
