// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/document/Document.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/system/ORVPrintLimits.h"

namespace svg2 {
namespace {

constexpr std::string_view kSvgNamespace = "http://www.w3.org/2000/svg";
constexpr std::string_view kXlinkNamespace = "http://www.w3.org/1999/xlink";
// Namespaces of pages, layers and their labels.
constexpr std::string_view kEditorNamespaces[] = {"http://www.inkscape.org/namespaces/inkscape",
                                                  "http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd"};
constexpr std::size_t kKnownCount = static_cast<std::size_t>(AttributeName::kCount);

struct QualifiedName {
    std::string_view prefix, local;
};

QualifiedName Split(std::string_view name) {
    const std::size_t colon = name.find(':');
    if (colon == std::string_view::npos) return {{}, name};
    return {name.substr(0, colon), name.substr(colon + 1)};
}

bool IsEditorNamespace(std::string_view uri) {
    return std::find(std::begin(kEditorNamespaces), std::end(kEditorNamespaces), uri) !=
           std::end(kEditorNamespaces);
}

std::array<std::optional<AttributeName>, static_cast<std::size_t>(Name::kCount)> MakeKnownOfNames() {
    std::array<std::optional<AttributeName>, static_cast<std::size_t>(Name::kCount)> known;
    for (std::size_t i = 0; i < kKnownCount; ++i) {
        const auto attribute = static_cast<AttributeName>(i);
        if (const auto name = FindName(GetNameText(attribute)))
            known[static_cast<std::size_t>(*name)] = attribute;
    }
    return known;
}

/// Amount of data that an element requires reading each time it is drawn. References are followed, not read,
/// so they do not count.
std::uint16_t PayloadOf(const ORVXmlNode& node) {
    std::size_t bytes = node.GetText().size();
    const std::uint32_t knownCount = ORVCountBits(node.known);
    for (std::uint32_t i = 0; i < knownCount; ++i) bytes += node.texts->Get(node.attributeTexts[i]).size();
    for (std::uint32_t i = knownCount; i < node.attributeCount; ++i) {
        const ORVXmlAttribute attribute = node.GetAttribute(i);
        bytes += attribute.name.size() + (attribute.name.ends_with("href") ? 0 : attribute.value.size());
    }
    bytes -= node.Value(AttributeName::kXlinkHref).size();
    constexpr std::size_t kMost = std::numeric_limits<std::uint16_t>::max();
    return static_cast<std::uint16_t>(std::min<std::size_t>(bytes / kPayloadUnit, kMost));
}

}  // namespace

/// Walks the tree once, tracking namespace declarations.
class Document::Builder {
public:
    explicit Builder(Document& document) : document_(document) {}

    void Build(const ORVXmlNode& root);

private:
    /// An element whose children are being read.
    struct Level {
        const ORVXmlNode* nextChild;
        ElementIndex element;
        ElementIndex lastChild = kNoElement;
        std::size_t bindings;  // number of bindings outside the element
    };

    void Declare(const ORVXmlNode& node);
    std::string_view NamespaceOf(std::string_view prefix) const;
    std::optional<Tag> TagOf(const ORVXmlNode& node) const;
    void Open(const ORVXmlNode& node, Tag tag, std::size_t bindings);

    Document& document_;
    void EndBindings(std::size_t count);

    std::unordered_map<std::string_view, std::vector<std::string_view>> uris_;  // by prefix, outermost first
    std::vector<std::string_view> bindings_;  // prefixes in order of declaration
    std::vector<Level> levels_;
    bool takesNamesWithoutNamespace_ = false;
};

void Document::Builder::Declare(const ORVXmlNode& node) {
    for (std::uint32_t i = ORVCountBits(node.known); i < node.attributeCount; ++i) {
        const ORVXmlAttribute attribute = node.GetAttribute(i);
        const QualifiedName name = Split(attribute.name);
        if (name.prefix != "xmlns" && attribute.name != "xmlns") continue;
        const std::string_view prefix = name.prefix == "xmlns" ? name.local : std::string_view();
        bindings_.push_back(prefix);
        uris_[prefix].push_back(attribute.value);
        if (attribute.value == kXlinkNamespace) document_.xlinkPrefixes_.insert(prefix);
        if (IsEditorNamespace(attribute.value)) document_.editorPrefixes_.insert(prefix);
    }
}

/// Removes all bindings after the first `count`.
void Document::Builder::EndBindings(std::size_t count) {
    for (; bindings_.size() > count; bindings_.pop_back()) uris_.find(bindings_.back())->second.pop_back();
}

std::string_view Document::Builder::NamespaceOf(std::string_view prefix) const {
    const auto found = uris_.find(prefix);
    return found == uris_.end() || found->second.empty() ? std::string_view() : found->second.back();
}

// Empty for elements of other namespaces.
std::optional<Tag> Document::Builder::TagOf(const ORVXmlNode& node) const {
    const QualifiedName name = Split(node.GetName());
    const std::string_view uri = NamespaceOf(name.prefix);
    if (uri == kSvgNamespace || (uri.empty() && name.prefix.empty() && takesNamesWithoutNamespace_))
        return FindTag(name.local);
    if (!IsEditorNamespace(uri)) return std::nullopt;
    if (name.local == TextOf(Tag::kNamedView)) return Tag::kNamedView;
    if (name.local == TextOf(Tag::kPage)) return Tag::kPage;
    return std::nullopt;
}

void Document::Builder::Open(const ORVXmlNode& node, Tag tag, std::size_t bindings) {
    std::vector<Element>& elements = document_.elements_;
    const auto index = static_cast<ElementIndex>(elements.size());
    Element element;
    element.node = &node;
    element.tag = tag;
    element.payload = PayloadOf(node);
    document_.payload_ += element.payload;
    if (!levels_.empty()) {
        Level& parent = levels_.back();
        element.parent = parent.element;
        element.previousSibling = parent.lastChild;
        element.position = ++elements[parent.element].childCount;
        (parent.lastChild == kNoElement ? elements[parent.element].firstChild
                                        : elements[parent.lastChild].nextSibling) = index;
        parent.lastChild = index;
    }
    elements.push_back(element);
    if (const std::string_view id = node.Value(AttributeName::kId); !id.empty())
        document_.ids_.try_emplace(id, index);
    levels_.push_back({node.firstChild, index, kNoElement, bindings});
}

void Document::Builder::Build(const ORVXmlNode& root) {
    Declare(root);
    takesNamesWithoutNamespace_ = NamespaceOf({}).empty() && Split(root.GetName()).prefix.empty();
    const std::optional<Tag> tag = TagOf(root);
    if (tag != Tag::kSvg) return;
    Open(root, *tag, 0);
    while (!levels_.empty()) {
        Level& level = levels_.back();
        const ORVXmlNode* node = level.nextChild;
        if (!node) {
            EndBindings(level.bindings);
            levels_.pop_back();
            continue;
        }
        level.nextChild = node->nextSibling;
        if (!node->IsElement()) continue;
        const std::size_t bindings = bindings_.size();
        Declare(*node);
        if (const std::optional<Tag> childTag = TagOf(*node))
            Open(*node, *childTag, bindings);
        else
            EndBindings(bindings);
    }
}

Document::Document(ORVRef<const ORVXmlTree> tree, const ORVXmlNode& root) : tree_(std::move(tree)) {
    Builder(*this).Build(root);
    // Documents without a declaration use the usual prefix.
    if (xlinkPrefixes_.empty()) xlinkPrefixes_.emplace("xlink");
}

const std::optional<Name>* Document::NamesOfKnown() {
    static const auto kNames = [] {
        std::array<std::optional<Name>, kKnownCount> names;
        for (std::size_t i = 0; i < kKnownCount; ++i)
            names[i] = FindName(GetNameText(static_cast<AttributeName>(i)));
        return names;
    }();
    return kNames.data();
}

std::optional<std::string_view> Document::Find(ElementIndex element, Name name) const {
    static const auto kKnown = MakeKnownOfNames();
    const ORVXmlNode& node = *elements_[element].node;
    if (const std::optional<AttributeName> known = kKnown[static_cast<std::size_t>(name)]) {
        if (!node.Has(*known)) return std::nullopt;
        return node.Value(*known);
    }
    const std::uint32_t knownCount = ORVCountBits(node.known);
    if (node.attributeCount == knownCount && name != Name::kHref) return std::nullopt;
    const std::string_view text = TextOf(name);
    std::optional<std::string_view> plain, prefixed;
    for (std::uint32_t i = 0; i < node.attributeCount; ++i) {
        const ORVXmlAttribute attribute = node.GetAttribute(i);
        if (attribute.name == text) {
            if (name == Name::kLang)
                plain = attribute.value;  // xml:lang beats it
            else if (name != Name::kSpace)
                return attribute.value;
            continue;
        }
        if (!attribute.name.ends_with(text)) continue;
        const QualifiedName parts = Split(attribute.name);
        if (parts.local != text) continue;
        const bool counts = name == Name::kHref ? xlinkPrefixes_.contains(parts.prefix)
                            : name == Name::kSpace || name == Name::kLang
                                ? parts.prefix == "xml"
                                : editorPrefixes_.contains(parts.prefix);
        if (counts) prefixed = attribute.value;
    }
    return prefixed ? prefixed : plain;
}

std::string_view Document::LanguageOf(ElementIndex element) const {
    for (; element != kNoElement; element = elements_[element].parent)
        if (const std::optional<std::string_view> language = Find(element, Name::kLang)) return *language;
    return {};
}

ElementIndex Document::FindById(std::string_view id) const {
    const auto found = ids_.find(id);
    return found == ids_.end() ? kNoElement : found->second;
}

ElementIndex Document::FindByReference(std::string_view reference) const {
    if (reference.size() < 2 || reference.front() != '#') return kNoElement;
    return FindById(reference.substr(1));
}

bool Document::IsWithin(ElementIndex element, ElementIndex ancestor) const {
    for (; element != kNoElement; element = elements_[element].parent)
        if (element == ancestor) return true;
    return false;
}

std::vector<ElementIndex> Document::FindAll(Tag tag) const {
    std::vector<ElementIndex> found;
    for (ElementIndex i = 0; i < elements_.size(); ++i)
        if (elements_[i].tag == tag) found.push_back(i);
    return found;
}

}  // namespace svg2
