#include "platform/system/ORVBaseObject.h"

#include <vector>

namespace {

// Objects that lost their last reference while another one was being destroyed.
struct DestructionQueue {
    std::vector<const ORVBaseObject*> waiting;
    bool running = false;
};
thread_local DestructionQueue destructionQueue;

}  // namespace

const ORVMetaClass& ORVBaseObject::MetaClass() {
    static constexpr ORVMetaClass metaClass("ORVBaseObject", nullptr);
    return metaClass;
}

void ORVBaseObject::Destroy(const ORVBaseObject* object) {
    if (destructionQueue.running) {
        destructionQueue.waiting.push_back(object);
        return;
    }
    destructionQueue.running = true;
    delete object;
    while (!destructionQueue.waiting.empty()) {
        const ORVBaseObject* next = destructionQueue.waiting.back();
        destructionQueue.waiting.pop_back();
        delete next;
    }
    destructionQueue.running = false;
    if (destructionQueue.waiting.capacity() > 4096) destructionQueue.waiting.shrink_to_fit();
}
