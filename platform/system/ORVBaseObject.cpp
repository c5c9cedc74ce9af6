// SPDX-License-Identifier: Apache-2.0
#include "platform/system/ORVBaseObject.h"

#include <array>
#include <cstddef>
#include <new>
#include <utility>
#include <vector>

namespace {

/// Objects that lost their last reference while another one was being destroyed.
class DestructionQueue {
public:
    /// @return false when out of memory
    bool Add(const ORVBaseObject* object) {
        if (firstCount_ < first_.size()) {
            first_[firstCount_++] = object;
            return true;
        }
        // Once refused, it is not tried again for each of millions of children.
        if (isMemorySpent_ && others_.size() == others_.capacity()) return false;
        try {
            others_.push_back(object);
            return true;
        } catch (const std::bad_alloc&) {
            isMemorySpent_ = true;
            return false;
        }
    }
    /// The object that was added last; null when there is none.
    const ORVBaseObject* Take() {
        if (others_.empty()) return firstCount_ > 0 ? first_[--firstCount_] : nullptr;
        const ORVBaseObject* object = others_.back();
        others_.pop_back();
        return object;
    }

private:
    std::array<const ORVBaseObject*, 64> first_;  // need no memory of their own
    std::size_t firstCount_ = 0;
    std::vector<const ORVBaseObject*> others_;
    bool isMemorySpent_ = false;
};
thread_local DestructionQueue* currentQueue = nullptr;

}  // namespace

const ORVMetaClass& ORVBaseObject::MetaClass() {
    static constexpr ORVMetaClass metaClass("ORVBaseObject", nullptr);
    return metaClass;
}

void ORVBaseObject::Destroy(const ORVBaseObject* object) {
    if (currentQueue && currentQueue->Add(object)) return;
    // Nothing is being destroyed, or there is no memory to wait in: then what is below it goes now, by a
    // queue of its own. That recurses once for each level of the tree that the queues before could not take.
    DestructionQueue queue;
    DestructionQueue* const outer = std::exchange(currentQueue, &queue);
    while (object) {
        delete object;
        object = queue.Take();
    }
    currentQueue = outer;
}
