// SPDX-License-Identifier: Apache-2.0
#include "platform/system/ORVBaseObject.h"

#include <array>
#include <cstddef>
#include <new>
#include <utility>
#include <vector>

namespace {

/// Objects that lost their last reference while another object was being destroyed.
class DestructionQueue {
public:
    /// @return false when out of memory
    bool Add(const ORVBaseObject* object) {
        if (firstCount_ < first_.size()) {
            first_[firstCount_++] = object;
            return true;
        }
        // After one failed allocation, no further ones are attempted for the millions of children that may
        // follow.
        if (isOutOfMemory_ && others_.size() == others_.capacity()) return false;
        try {
            others_.push_back(object);
            return true;
        } catch (const std::bad_alloc&) {
            isOutOfMemory_ = true;
            return false;
        }
    }
    /// The object added last; null when the queue is empty.
    const ORVBaseObject* Take() {
        if (others_.empty()) return firstCount_ > 0 ? first_[--firstCount_] : nullptr;
        const ORVBaseObject* object = others_.back();
        others_.pop_back();
        return object;
    }

private:
    std::array<const ORVBaseObject*, 64> first_;  // usable without allocating
    std::size_t firstCount_ = 0;
    std::vector<const ORVBaseObject*> others_;
    bool isOutOfMemory_ = false;
};
thread_local DestructionQueue* currentQueue = nullptr;

}  // namespace

const ORVMetaClass& ORVBaseObject::MetaClass() {
    static constexpr ORVMetaClass metaClass("ORVBaseObject", nullptr);
    return metaClass;
}

void ORVBaseObject::Destroy(const ORVBaseObject* object) {
    if (currentQueue && currentQueue->Add(object)) return;
    // Either no object is being destroyed, or there is no memory to queue this one: destroy it now, with a
    // new queue for its children. This recurses once for each level of the tree that the queues before could
    // not hold.
    DestructionQueue queue;
    DestructionQueue* const outer = std::exchange(currentQueue, &queue);
    while (object) {
        delete object;
        object = queue.Take();
    }
    currentQueue = outer;
}
