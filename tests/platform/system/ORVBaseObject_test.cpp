// SPDX-License-Identifier: Apache-2.0
#include "platform/system/ORVBaseObject.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/system/ORVRef.h"

namespace {

// Counts its instances; may own others.
class Thing : public ORVBaseObject {
public:
    static const ORVMetaClass& MetaClass() {
        static constexpr ORVMetaClass metaClass("Thing", nullptr, "provider", "library");
        return metaClass;
    }
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    Thing() { ++alive; }
    Thing(const Thing& other) : ORVBaseObject(other) { ++alive; }

    std::vector<ORVRef<Thing>> children;
    inline static int alive = 0;

protected:
    ~Thing() override { --alive; }
};

class SpecialThing final : public Thing {
public:
    static const ORVMetaClass& MetaClass() {
        static constexpr ORVMetaClass metaClass("SpecialThing", nullptr);
        return metaClass;
    }
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

private:
    ~SpecialThing() override = default;
};

class ORVBaseObjectTest : public testing::Test {
protected:
    void SetUp() override { Thing::alive = 0; }
    void TearDown() override { EXPECT_EQ(Thing::alive, 0); }
};

TEST_F(ORVBaseObjectTest, HasOneReferenceWhenNewAndDiesWithTheLast) {
    const Thing* const thing = new Thing;
    EXPECT_EQ(thing->GetReferenceCount(), 1U);
    thing->AddRef();
    EXPECT_EQ(thing->GetReferenceCount(), 2U);
    thing->Release();
    EXPECT_EQ(Thing::alive, 1);
    thing->Release();
    EXPECT_EQ(Thing::alive, 0);
}

TEST_F(ORVBaseObjectTest, ACopyHasAReferenceOfItsOwn) {
    const ORVRef<Thing> first(new Thing);
    ORVRef<Thing> shared = first;
    const ORVRef<Thing> copy(new Thing(*first));
    EXPECT_EQ(first->GetReferenceCount(), 2U);
    EXPECT_EQ(copy->GetReferenceCount(), 1U);
    shared = nullptr;
    EXPECT_EQ(first->GetReferenceCount(), 1U);
}

TEST_F(ORVBaseObjectTest, AnswersByClassName) {
    static constexpr ORVMetaClass base("Base", nullptr);
    static constexpr ORVMetaClass derived("Derived", &base, "p", "l");
    EXPECT_TRUE(derived.IsAKindOf("Derived"));
    EXPECT_TRUE(derived.IsAKindOf("Base"));
    EXPECT_FALSE(derived.IsAKindOf("base"));
    EXPECT_FALSE(derived.IsAKindOf(""));
    EXPECT_FALSE(base.IsAKindOf("Derived"));
    EXPECT_EQ(derived.GetBase(), &base);
    EXPECT_STREQ(derived.GetProvider(), "p");
    EXPECT_STREQ(derived.GetLibrary(), "l");
    EXPECT_STREQ(base.GetProvider(), "ORVnull");

    const ORVRef<Thing> thing(new SpecialThing);
    EXPECT_STREQ(thing->IsA(), "SpecialThing");
    EXPECT_EQ(thing->IsAKindOf("SpecialThing"), 1);
    EXPECT_EQ(thing->IsAKindOf("ORVPrtModel"), 0);
}

TEST_F(ORVBaseObjectTest, DestroysALongChainWithoutRecursion) {
    ORVRef<Thing> head(new Thing);
    for (int i = 0; i < 1000000; ++i) {
        ORVRef<Thing> next(new Thing);
        next->children.push_back(std::move(head));
        head = std::move(next);
    }
    EXPECT_EQ(Thing::alive, 1000001);
    head = nullptr;
    EXPECT_EQ(Thing::alive, 0);
}

TEST_F(ORVBaseObjectTest, DestroysAWideAndSharedTreeOnce) {
    ORVRef<Thing> root(new Thing);
    const ORVRef<Thing> kept(new Thing);
    for (int i = 0; i < 1000; ++i) {
        ORVRef<Thing> child(new Thing);
        child->children.push_back(kept);
        child->children.push_back(root->children.empty() ? kept : root->children.back());
        root->children.push_back(child);
    }
    EXPECT_EQ(Thing::alive, 1002);
    root = nullptr;
    EXPECT_EQ(Thing::alive, 1);
    EXPECT_EQ(kept->GetReferenceCount(), 1U);
}

TEST_F(ORVBaseObjectTest, RefsShareMoveAndLetGo) {
    ORVRef<Thing> empty;
    EXPECT_FALSE(empty);
    EXPECT_EQ(empty.get(), nullptr);

    ORVRef<Thing> first(new Thing);
    Thing* const address = first.get();
    ORVRef<Thing> second = first;
    EXPECT_EQ(address->GetReferenceCount(), 2U);
    ORVRef<Thing> third = std::move(second);
    EXPECT_EQ(address->GetReferenceCount(), 2U);
    EXPECT_FALSE(second);  // NOLINT(bugprone-use-after-move): a moved-from handle is empty
    ORVRef<const ORVBaseObject> general = third;
    EXPECT_EQ(address->GetReferenceCount(), 3U);
    ORVRef<const ORVBaseObject> taken = std::move(third);
    EXPECT_EQ(address->GetReferenceCount(), 3U);
    general = nullptr;
    taken = nullptr;
    EXPECT_EQ(address->GetReferenceCount(), 1U);

    const ORVRef<Thing>& itself = first;
    first = itself;
    EXPECT_EQ(first.get(), address);
    EXPECT_EQ(address->GetReferenceCount(), 1U);

    const ORVRef<Thing> shared = ORVRef<Thing>::Share(address);
    EXPECT_EQ(address->GetReferenceCount(), 2U);
    EXPECT_FALSE(ORVRef<Thing>::Share(nullptr));

    Thing* const detached = first.Detach();
    EXPECT_FALSE(first);
    EXPECT_EQ(detached->GetReferenceCount(), 2U);
    detached->Release();
}

}  // namespace
