#include "generators/common/ORVGeneratorSequence.h"

#include <string>
#include <utility>

int ORVGeneratorSequence::BeginDocument(const ORVPrintDocumentInfo& info) {
    ++drawings_;
    if (begun_) return 1;
    const int result = target_.BeginDocument({info.title, pageCount_});
    begun_ = result == 1;
    return result;
}

int ORVGeneratorSequence::BeginPage(const ORVPrintPageInfo& info) {
    ORVPrintPageInfo numbered = info;
    numbered.number = ++pages_;
    return target_.BeginPage(numbered);
}

int ORVGeneratorSequence::BeginGroup(const ORVPrintGroup& group) {
    if (drawings_ == 1) return target_.BeginGroup(group);
    // The first drawing's identifiers stay what they are, for links from outside.
    const std::string prefix = std::to_string(drawings_) + ":";
    const std::string id = group.id.empty() ? std::string() : prefix + std::string(group.id);
    const std::string linked =
        group.linkElementId.empty() ? std::string() : prefix + std::string(group.linkElementId);
    ORVPrintGroup renamed = group;
    renamed.id = id;
    renamed.linkElementId = linked;
    return target_.BeginGroup(renamed);
}

int ORVGeneratorSequence::Finish() { return std::exchange(begun_, false) ? target_.EndDocument() : 1; }
