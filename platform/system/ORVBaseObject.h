// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#if defined(ORV_PLATFORM_BUILD)
#define ORV_PLATFORM_EXPORT __attribute__((visibility("default")))
#else
#define ORV_PLATFORM_EXPORT
#endif

/// Run-time description of a class: its name, its base and the literals under which it is registered.
/// Objects of this type are static; they are compared by address.
class ORVMetaClass {
public:
    /// @param name     class name, as IsA() reports it; must be a literal
    /// @param base     description of the base class, null for a root
    /// @param provider provider literal of the registration ("ORVnull" where there is none)
    /// @param library  library literal of the registration
    constexpr ORVMetaClass(const char* name, const ORVMetaClass* base, const char* provider = "ORVnull",
                           const char* library = "ORVPlatform")
        : name_(name), base_(base), provider_(provider), library_(library) {}

    /// Class name.
    constexpr const char* GetName() const { return name_; }
    /// The base class; null for a root.
    constexpr const ORVMetaClass* GetBase() const { return base_; }
    /// Provider literal.
    constexpr const char* GetProvider() const { return provider_; }
    /// Library literal.
    constexpr const char* GetLibrary() const { return library_; }

    /// True when this class or one of its bases bears `name`.
    constexpr bool IsAKindOf(std::string_view name) const {
        for (const ORVMetaClass* one = this; one; one = one->base_)
            if (name == one->name_) return true;
        return false;
    }

private:
    const char* name_;
    const ORVMetaClass* base_;
    const char* provider_;
    const char* library_;
};

/// Base of the platform's reference-counted objects. A new object has one reference, which its creator
/// releases; the object dies with its last reference. Counts are not atomic: an object belongs to one
/// thread at a time.
class ORV_PLATFORM_EXPORT ORVBaseObject {
public:
    static const ORVMetaClass& MetaClass();

    ORVBaseObject& operator=(const ORVBaseObject&) = delete;

    /// The description of the object's own class.
    virtual const ORVMetaClass& GetMetaClass() const = 0;

    /// Name of the object's own class.
    const char* IsA() const { return GetMetaClass().GetName(); }
    /// 1 when the object's class or one of its bases is called `className`, else 0.
    int IsAKindOf(std::string_view className) const { return GetMetaClass().IsAKindOf(className) ? 1 : 0; }

    /// Adds a reference, which somebody releases.
    void AddRef() const { ++references_; }
    /// Gives one reference back. The destruction of a tree of objects does not recurse: an object whose
    /// last reference goes while another one is being destroyed waits in a queue.
    void Release() const {
        if (--references_ == 0) Destroy(this);
    }
    /// References at this moment.
    std::uint32_t GetReferenceCount() const { return references_; }

protected:
    ORVBaseObject() = default;
    /// A copy has a reference of its own.
    ORVBaseObject(const ORVBaseObject& /*other*/) {}
    virtual ~ORVBaseObject() = default;

private:
    static void Destroy(const ORVBaseObject* object);

    mutable std::uint32_t references_ = 1;
};
