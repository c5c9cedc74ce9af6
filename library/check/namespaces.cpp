// SPDX-License-Identifier: Apache-2.0
#include "library/check/namespaces.h"

void Namespaces::Enter(const ORVXmlNode& element) {
    std::size_t count = 0;
    for (std::uint32_t i = 0; i < element.attributeCount; ++i) {
        const ORVXmlAttribute attribute = element.GetAttribute(i);
        const bool isDefault = attribute.name == "xmlns";
        if (!isDefault && !attribute.name.starts_with("xmlns:")) continue;
        const std::string_view prefix = isDefault ? std::string_view() : LocalNameOf(attribute.name);
        byPrefix_[prefix].push_back(attribute.value);
        declared_.push_back(prefix);
        ++count;
    }
    declaredByElement_.push_back(count);
}

void Namespaces::Leave() {
    for (std::size_t count = declaredByElement_.back(); count > 0; --count) {
        byPrefix_[declared_.back()].pop_back();
        declared_.pop_back();
    }
    declaredByElement_.pop_back();
}

std::string_view Namespaces::Find(std::string_view prefix) const {
    const auto found = byPrefix_.find(prefix);
    return found == byPrefix_.end() || found->second.empty() ? std::string_view() : found->second.back();
}

std::string_view PrefixOf(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon == name.npos ? std::string_view() : name.substr(0, colon);
}

std::string_view LocalNameOf(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon == name.npos ? name : name.substr(colon + 1);
}
