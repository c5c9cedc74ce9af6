// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#if defined(ORV_PLATFORM_BUILD)
#define ORV_PLATFORM_EXPORT __attribute__((visibility("default")))
#else
#define ORV_PLATFORM_EXPORT
#endif

/// Run-time description of a class: its name, its base class and the literals under which it is registered.
/// Objects of this type have static storage duration and are compared by address.
class ORVMetaClass {
public:
    /// @param name     class name as returned by IsA(); must be a literal
    /// @param base     description of the base class, null for a root class
    /// @param provider provider literal of the registration ("ORVnull" when the class has none)
    /// @param library  library literal of the registration
    constexpr ORVMetaClass(const char* name, const ORVMetaClass* base, const char* provider = "ORVnull",
                           const char* library = "ORVPlatform")
        : name_(name), base_(base), provider_(provider), library_(library) {}

    /// Class name.
    constexpr const char* GetName() const { return name_; }
    /// Description of the base class; null for a root class.
    constexpr const ORVMetaClass* GetBase() const { return base_; }
    /// Provider literal.
    constexpr const char* GetProvider() const { return provider_; }
    /// Library literal.
    constexpr const char* GetLibrary() const { return library_; }

    /// True when this class or one of its base classes is called `name`.
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

/// Base class of the platform's reference-counted objects. A new object has one reference, owned by its
/// creator; the last Release() destroys the object. The count is not atomic: an object may be used by only
/// one thread at a time.
class ORV_PLATFORM_EXPORT ORVBaseObject {
public:
    static const ORVMetaClass& MetaClass();

    ORVBaseObject& operator=(const ORVBaseObject&) = delete;

    /// Description of the object's dynamic class.
    virtual const ORVMetaClass& GetMetaClass() const = 0;

    /// Name of the object's dynamic class.
    const char* IsA() const { return GetMetaClass().GetName(); }
    /// 1 when the object's class or one of its base classes is called `className`, else 0.
    int IsAKindOf(std::string_view className) const { return GetMetaClass().IsAKindOf(className) ? 1 : 0; }

    /// Adds a reference. Each call must be matched by a Release().
    void AddRef() const { ++references_; }
    /// Releases one reference. Destroying a tree of objects does not recurse: an object that loses its last
    /// reference while another one is being destroyed is queued and destroyed afterwards.
    void Release() const {
        if (--references_ == 0) Destroy(this);
    }
    /// Current number of references.
    std::uint32_t GetReferenceCount() const { return references_; }

protected:
    ORVBaseObject() = default;
    /// A copy starts with one reference, whatever the count of the original.
    ORVBaseObject(const ORVBaseObject& /*other*/) {}
    virtual ~ORVBaseObject() = default;

private:
    static void Destroy(const ORVBaseObject* object);

    mutable std::uint32_t references_ = 1;
};
