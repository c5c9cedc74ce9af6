// Feeds any bytes to both XML parsers, walks what they made of them and holds the two to the same elements.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "platform/system/ORVUnicodeString.h"
#include "platform/xml/ORVDOMXml.h"
#include "platform/xml/ORVLightXml.h"
#include "platform/xml/ORVXmlFragments.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

// Touches every byte that a node leads to.
std::uint64_t Sum(std::string_view text) {
    std::uint64_t sum = text.size();
    for (const char c : text) sum += static_cast<unsigned char>(c);
    return sum;
}

std::uint64_t CheckNode(const ORVXmlNode& node) {
    Require(!node.GetName().empty());
    std::uint64_t sum = Sum(node.GetName()) + Sum(node.GetText());
    std::uint32_t known = 0;
    for (unsigned i = 0; i < static_cast<unsigned>(AttributeName::kCount); ++i) {
        const auto name = static_cast<AttributeName>(i);
        const auto found = node.Find(GetNameText(name));
        Require(found.has_value() == node.Has(name));
        if (!found) continue;
        Require(found->data() == node.Value(name).data() && found->size() == node.Value(name).size());
        ++known;
    }
    Require(known <= node.attributeCount);
    for (std::uint32_t i = 0; i < node.attributeCount; ++i) {
        const ORVXmlAttribute attribute = node.GetAttribute(i);
        sum += Sum(attribute.name) + Sum(attribute.value);
    }
    return sum;
}

// Elements in document order, with their depth.
struct Place {
    const ORVXmlNode* node;
    std::size_t depth;
};

std::vector<Place> Walk(const ORVXmlNode* root) {
    std::vector<Place> elements;
    std::vector<Place> pending;
    if (root) pending.push_back({root, 1});
    while (!pending.empty()) {
        const Place place = pending.back();
        pending.pop_back();
        CheckNode(*place.node);
        if (place.node->nextSibling && place.depth > 1)
            pending.push_back({place.node->nextSibling, place.depth});
        if (place.node->firstChild) pending.push_back({place.node->firstChild, place.depth + 1});
        if (place.node->IsElement()) {
            Require(place.depth <= 1024);
            elements.push_back(place);
        }
    }
    return elements;
}

void RequireSame(const ORVXmlNode* a, const ORVXmlNode* b) {
    const std::vector<Place> left = Walk(a), right = Walk(b);
    Require(left.size() == right.size());
    for (std::size_t i = 0; i < left.size(); ++i) {
        const ORVXmlNode& one = *left[i].node;
        const ORVXmlNode& other = *right[i].node;
        Require(left[i].depth == right[i].depth && one.name == other.name && one.text == other.text);
        Require(one.attributeCount == other.attributeCount && one.known == other.known);
        for (std::uint32_t k = 0; k < one.attributeCount; ++k) {
            const ORVXmlAttribute mine = one.GetAttribute(k), theirs = other.GetAttribute(k);
            Require(mine.name == theirs.name && mine.value == theirs.value);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);

    ORVLightXmlParser parser;
    ORVLightXmlElement light;
    ORVLightXmlInputStreamBuffer stream(bytes.data(), bytes.size());
    const int lightStatus = parser.Parse(stream, light);
    Require((lightStatus == 1) == parser.GetError().message.empty());
    Require(lightStatus == 1 ? light.GetNode() != nullptr : parser.GetError().offset <= size);
    Walk(light.GetNode());

    ORVLightXmlElement copy;
    Require(copy.Assign(light) == 1);
    RequireSame(light.GetNode(), copy.GetNode());
    Require(FindOutermostSvgElements(light.GetNode()).size() <= FindSvgElements(light.GetNode()).size());

    ORVUnicodeString text;
    if (text.BuildFromUTF8(bytes.data(), bytes.size()) < 0) return 0;
    ORVIDOMElement_var dom;
    ORVXmlError error;
    const int domStatus = BuildParser(text, "SVG", dom, &error);
    Require((domStatus == 1) == static_cast<bool>(dom) && (domStatus == 1) == error.message.empty());
    if (domStatus != 1) return 0;
    for (const ORVXmlNode* node = dom.GetTree()->GetFirstNode(); node; node = node->nextSibling) Walk(node);

    // The two differ in the encoding and in how many byte order marks they skip, in nothing else.
    const bool sameEncoding =
        bytes.find("encoding") == bytes.npos && !text.GetView().starts_with("\xEF\xBB\xBF");
    if (sameEncoding) {
        Require(lightStatus == 1);
        RequireSame(light.GetNode(), dom.GetNode());
    }
    return 0;
}
