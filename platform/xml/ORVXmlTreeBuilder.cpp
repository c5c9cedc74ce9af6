// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/ORVXmlTreeBuilder.h"

#include <algorithm>
#include <bit>
#include <new>
#include <type_traits>
#include <utility>

#include "platform/xml/ORVXmlNodeStore.h"
#include "platform/xml/plain_document.h"
#include "platform/xml/unread_elements.h"

namespace {

// A buffer that has grown beyond this size for one long text is freed.
constexpr std::size_t kLargestKeptBuffer = std::size_t{64} << 10U;

void Clear(std::string& buffer) {
    if (buffer.capacity() > kLargestKeptBuffer)
        std::string().swap(buffer);
    else
        buffer.clear();
}

// Trees free their memory without destroying the objects in it.
static_assert(std::is_trivially_destructible_v<ORVXmlNode> &&
              std::is_trivially_destructible_v<ORVXmlTextPlace>);

}  // namespace

ORVXmlTreeBuilder::ORVXmlTreeBuilder(XmlTreeShape shape, ORVXmlReading reading,
                                     std::vector<ORVXmlPlace>* places)
    : shape_(shape), places_(places), tree_(new ORVXmlTree), levels_(1) {
    tree_->texts_.reading = reading;
    if (reading != ORVXmlReading::kAny) tree_->texts_.readOnce = tree_->nodes_.get();
}

ORVXmlTreeBuilder::ORVXmlTreeBuilder(XmlTreeShape shape, const XmlSource& source)
    : ORVXmlTreeBuilder(shape, source.reading) {
    tree_->stable_ = source.staysInPlace ? source.bytes : std::string_view();
    tree_->texts_.document = tree_->stable_.data();
    if (source.reading == ORVXmlReading::kOnce) tree_->nodes_->SetSource(tree_->stable_.data());
    tree_->sourceOwner_ = source.owner;
    if (source.owner) tree_->memoryInUse_ += source.bytes.size();
}

ORVXmlNode& ORVXmlTreeBuilder::AppendNode(std::size_t places) {
    static_assert(sizeof(ORVXmlNode) % alignof(ORVXmlNode) == 0 &&
                  sizeof(ORVXmlTextPlace) % alignof(ORVXmlNode) == 0);
    const std::size_t size = sizeof(ORVXmlNode) + places * sizeof(ORVXmlTextPlace);
    const bool isTogether = size <= ORVXmlNodeStore::kLargest;
    auto* const bytes =
        static_cast<char*>(tree_->nodes_->Allocate(isTogether ? size : sizeof(ORVXmlNode), tree_->keptTo_));
    auto* const node = new (bytes) ORVXmlNode;
    if (places > 0)
        node->attributeTexts = reinterpret_cast<ORVXmlTextPlace*>(
            isTogether ? bytes + sizeof(ORVXmlNode)
                       : tree_->Allocate(places * sizeof(ORVXmlTextPlace), alignof(ORVXmlTextPlace)));
    node->texts = &tree_->texts_;
    Level& level = levels_[depth_];
    if (level.lastChild)
        level.lastChild->nextSibling = node;
    else if (level.node)
        level.node->firstChild = node;
    else
        tree_->firstNode_ = node;
    level.lastChild = node;
    return *node;
}

bool ORVXmlTreeBuilder::IsInDrawing() const {
    constexpr std::size_t kLevels = 3;
    for (std::size_t level = 1; level <= std::min(kLevels, depth_); ++level)
        if (levels_[level].node->id == ElementName::kSvg) return true;
    return false;
}

void ORVXmlTreeBuilder::StartElement(const XmlStartTag& tag) {
    FlushText();
    if (places_ && tag.locator) places_->push_back(tag.locator->Locate());
    std::uint64_t known = 0;
    for (const std::int8_t number : tag.numbers)
        if (number >= 0) known |= std::uint64_t{1} << static_cast<unsigned>(number);
    const std::size_t count = tag.attributes.size();
    const std::size_t knownCount = ORVCountBits(known);

    ORVXmlNode& node = AppendNode(knownCount + 2 * (count - knownCount));
    if (depth_ == 0 && !tree_->root_) tree_->root_ = &node;
    node.id = FindElementName(tag.name);
    if (node.id == ElementName::kUnknown) {
        node.namePlace = tree_->KeepPlace(tag.name);
        if (IsInDrawing()) tree_->unreadElements_ |= orvprint::BitOfUnreadElement(tag.name);
    }

    if (!tag.attributes.empty()) {
        node.known = known;
        node.attributeCount = static_cast<std::uint32_t>(count);
        // Every one of them is set below.
        auto* const kept = const_cast<ORVXmlTextPlace*>(node.attributeTexts);
        ORVXmlTextPlace* nextUnknown = kept + knownCount;
        for (std::size_t i = 0; i < count; ++i) {
            const std::int8_t number = tag.numbers[i];
            const KeptAttribute own = Keep(tag.attributes[i], number >= 0, i < tag.written);
            if (number >= 0) {
                const std::uint64_t bit = std::uint64_t{1} << static_cast<unsigned>(number);
                new (kept + ORVCountBits(known & (bit - 1))) ORVXmlTextPlace(own.value);
            } else {
                new (nextUnknown++) ORVXmlTextPlace(own.name);
                new (nextUnknown++) ORVXmlTextPlace(own.value);
            }
        }
    }

    ++depth_;
    if (depth_ == levels_.size()) levels_.emplace_back();
    levels_[depth_].node = &node;
}

ORVXmlTreeBuilder::KeptAttribute ORVXmlTreeBuilder::Keep(const ORVXmlAttribute& attribute, bool isKnown,
                                                         bool isWritten) {
    const auto copy = [&] {
        // The names of known attributes are not stored.
        return KeptAttribute{isKnown ? ORVXmlTextPlace() : tree_->KeepPlace(attribute.name),
                             tree_->KeepPlace(attribute.value)};
    };
    if (isWritten) return copy();
    // A long default value must be stored only once, and no element may free it.
    const auto [found, isNew] = supplied_.try_emplace(attribute.value.data());
    if (isNew) {
        found->second = copy();
        ORVXmlTextPlace& value = found->second.value;
        if (!value.IsInDocument()) value.length = ORVXmlTextPlace::kShared;
    }
    return found->second;
}

void ORVXmlTreeBuilder::EndElement() {
    FlushText();
    CloseLevel();
}

void ORVXmlTreeBuilder::CloseLevel() {
    Level& level = levels_[depth_];
    level.node->textPlace = level.text.empty() ? level.firstText : tree_->KeepPlace(level.text);
    level.node = nullptr;
    level.lastChild = nullptr;
    level.firstText = {};
    Clear(level.text);
    --depth_;
}

void ORVXmlTreeBuilder::Text(std::string_view piece) {
    if (shape_ == XmlTreeShape::kAllNodes)
        run_.append(piece);
    else if (depth_ > 0)
        levels_[depth_].text.append(piece);
}

void ORVXmlTreeBuilder::Comment(std::string_view data) {
    if (shape_ != XmlTreeShape::kAllNodes) return;
    FlushText();
    AppendDataNode(ORVXmlNode::Kind::kComment, tree_->KeepPlace(data));
}

void ORVXmlTreeBuilder::AppendDataNode(ORVXmlNode::Kind kind, ORVXmlTextPlace data) {
    ORVXmlNode& node = AppendNode();
    node.kind = kind;
    node.textPlace = data;
}

void ORVXmlTreeBuilder::FlushText() {
    if (run_.empty()) return;
    const ORVXmlTextPlace data = tree_->KeepPlace(run_);
    Clear(run_);
    AppendDataNode(ORVXmlNode::Kind::kText, data);

    // An element with a single text node shares its text; only several have to be joined.
    Level& level = levels_[depth_];
    if (!level.node) return;
    if (level.text.empty() && level.firstText.length == 0) {
        level.firstText = data;
        return;
    }
    if (level.text.empty()) level.text = tree_->texts_.Get(level.firstText);
    level.text.append(tree_->texts_.Get(data));
}

ORVRef<const ORVXmlTree> ORVXmlTreeBuilder::Finish() {
    FlushText();
    while (depth_ > 0) CloseLevel();
    tree_->recent_.reset();
    tree_->texts_.others.shrink_to_fit();
    tree_->memoryInUse_ += tree_->texts_.others.capacity() * sizeof(std::string_view);
    return std::exchange(tree_, nullptr);
}

void ORVXmlTreeBuilder::CopyElement(const ORVXmlNode& source) {
    std::vector<std::int8_t> numbers;
    std::vector<ORVXmlAttribute> attributes;
    const auto open = [&](const ORVXmlNode& node) {
        // Known attributes come first, in order of their numbers.
        numbers.assign(node.attributeCount, -1);
        std::size_t next = 0;
        for (std::uint64_t known = node.known; known != 0; known &= known - 1)
            numbers[next++] = static_cast<std::int8_t>(std::countr_zero(known));
        attributes.clear();
        for (std::uint32_t i = 0; i < node.attributeCount; ++i) attributes.push_back(node.GetAttribute(i));
        StartElement({node.GetName(), attributes, numbers, node.attributeCount});
        levels_[depth_].text = node.GetText();
    };

    std::vector<const ORVXmlNode*> ancestors;  // where to continue after each level
    const ORVXmlNode* node = &source;
    open(*node);
    const ORVXmlNode* next = node->firstChild;
    while (true) {
        while (next && !next->IsElement()) next = next->nextSibling;
        if (next) {
            open(*next);
            ancestors.push_back(next);
            next = next->firstChild;
            continue;
        }
        CloseLevel();
        if (ancestors.empty()) return;
        next = ancestors.back()->nextSibling;
        ancestors.pop_back();
    }
}

bool BuildXmlTree(const XmlSource& source, XmlEncoding encoding, XmlTreeShape shape,
                  ORVRef<const ORVXmlTree>& tree, ORVXmlError& error, std::vector<ORVXmlPlace>* places) {
    tree = nullptr;
    error = ORVXmlError();
    try {
        // Only the general parser counts lines.
        if (!places) {
            ORVXmlTreeBuilder plain(shape, source);
            if (ReadPlainDocument(source.bytes, encoding, plain)) {
                tree = plain.Finish();
                return true;
            }
        }
        ORVXmlTreeBuilder builder(shape, source.reading, places);
        const bool wellFormed = ReadXml(source.bytes, encoding, builder, error);
        tree = builder.Finish();
        return wellFormed;
    } catch (const std::bad_alloc&) {
        error = ORVXmlError::OutOfMemory();
        return false;
    }
}
