#include "platform/model/ORVPrtColourTable.h"

namespace {

std::uint32_t Key(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    return std::uint32_t{red} << 16U | std::uint32_t{green} << 8U | std::uint32_t{blue};
}

}  // namespace

const ORVMetaClass& ORVPrtColourTable::MetaClass() {
    static const ORVMetaClass metaClass("ORVPrtColourTable", &ORVBaseObject::MetaClass(), "ORVnull",
                                        "ORVPrt2DModel");
    return metaClass;
}

int ORVPrtColourTable::GetColourIndex(unsigned int& index, std::uint8_t red, std::uint8_t green,
                                      std::uint8_t blue) const {
    const auto found = indices_.find(Key(red, green, blue));
    if (found == indices_.end()) return 0;
    index = found->second;
    return 1;
}

int ORVPrtColourTable::AddColour(std::uint8_t red, std::uint8_t green, std::uint8_t blue,
                                 unsigned int& index) {
    index = static_cast<unsigned int>(colours_.size());
    colours_.push_back({red, green, blue});
    indices_.try_emplace(Key(red, green, blue), index);
    return 1;
}
