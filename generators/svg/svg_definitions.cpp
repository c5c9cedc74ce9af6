// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/svg_definitions.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

#include "generators/common/map_measures.h"
#include "generators/svg/svg_filter.h"
#include "generators/svg/svg_gradient.h"
#include "generators/svg/svg_images.h"
#include "generators/svg/svg_path.h"
#include "generators/svg/xml_text.h"

namespace {

std::string SizeAttributes(const ORVPixelImage& image) {
    return " width=\"" + std::to_string(image.GetWidth()) + "\" height=\"" +
           std::to_string(image.GetHeight()) + "\"";
}

}  // namespace

std::string SvgIdentifier(std::string_view id) {
    std::string result(id);
    for (char& c : result)
        if (static_cast<unsigned char>(c) <= 0x20) c = '_';
    return result;
}

std::string SvgSharedDefinitions::NewId(Kind kind) {
    const char letter = static_cast<char>(kind);
    std::string id;
    do {
        id = std::string("orv-") + letter + std::to_string(++counts_[letter]);
    } while (!TakeId(id));
    return id;
}

void SvgSharedDefinitions::AppendId(std::string& attributes, std::string_view given) {
    if (given.empty()) return;
    const std::string id = SvgIdentifier(given);
    if (TakeId(id)) AppendXmlAttribute(attributes, "id", id);
}

std::string SvgSharedDefinitions::DefineClip(const ORVPrintPath& outline, int places) {
    std::string id = NewId(Kind::kClip);
    std::string text = "<clipPath id=\"" + id + "\"><path d=\"";
    AppendSvgPath(text, outline, {}, places);
    writer_.Put(text + "\"/></clipPath>\n");
    return id;
}

const std::string* SvgSharedDefinitions::FindText(const std::string& text) const {
    const auto found = texts_.find(text);
    return found != texts_.end() ? &found->second : nullptr;
}

/// Records a definition by its text for reuse, unless the text is too long to keep.
void SvgSharedDefinitions::NoteText(std::string text, const std::string& id) {
    constexpr std::size_t kLongest = 4096;
    if (text.size() <= kLongest) texts_.emplace(std::move(text), id);
}

std::string SvgSharedDefinitions::FindClipPath(const ORVPrintPath& outline, const ORVMathAffine2D& map,
                                               bool evenOdd, int places) {
    std::string content = evenOdd ? "<path clip-rule=\"evenodd\" d=\"" : "<path d=\"";
    AppendSvgPath(content, outline, map, places);
    content += "\"/>";
    if (const std::string* known = FindText(content)) return *known;
    std::string id = NewId(Kind::kClip);
    writer_.Put("<clipPath id=\"" + id + "\">" + content + "</clipPath>\n");
    NoteText(std::move(content), id);
    return id;
}

std::string SvgSharedDefinitions::FindGradient(const ORVPrintGradient& gradient,
                                               const ORVMathAffine2D& elementToPage) {
    const std::optional<ORVMathAffine2D> fromPage = elementToPage.Inverse();
    if (!IsDrawable(gradient.toPage) || !fromPage) return {};
    SvgGradientText text = WriteSvgGradient(gradient, *fromPage * gradient.toPage);
    std::string whole = text.attributes + text.stops;
    if (const std::string* known = FindText(whole)) return *known;
    std::string id = NewId(Kind::kGradient);
    const std::string* stops = FindText(text.stops);
    std::string written = "<defs><" + std::string(text.element) + " id=\"" + id + "\"" + text.attributes;
    if (stops)
        written += " xlink:href=\"#" + *stops + "\"/>";
    else
        written += ">" + text.stops + "</" + std::string(text.element) + ">";
    writer_.Put(written + "</defs>\n");
    NoteText(std::move(whole), id);
    if (!stops) NoteText(std::move(text.stops), id);
    return id;
}

std::string SvgSharedDefinitions::FindFilter(const ORVPrintFilter& filter, const ORVMathBox2D& everywhere) {
    std::string text = WriteSvgFilter(filter, everywhere);
    if (const std::string* known = FindText(text)) return *known;
    std::string id = NewId(Kind::kFilter);
    writer_.Put("<defs><filter id=\"" + id + "\"" + text + "</defs>\n");
    NoteText(std::move(text), id);
    return id;
}

std::string SvgSharedDefinitions::FindFont(const ORVFontFace& face) {
    const std::string_view bytes = face.GetDocumentBytes();
    if (bytes.empty()) return {};
    const auto [entry, isNew] = fonts_.try_emplace(bytes.data());
    if (!isNew) return entry->second;
    keptFaces_.Keep(face);
    entry->second = "orv-font" + std::to_string(fonts_.size());
    writer_.Put("<style>@font-face{font-family:" + entry->second + ";src:url(data:font/ttf;base64,");
    writer_.PutBase64({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    writer_.PutEndOfBase64();
    writer_.Put(")}</style>\n");
    return entry->second;
}

const std::string& SvgSharedDefinitions::FindImage(const ORVPixelImage& image) {
    const auto [entry, isNew] = images_.try_emplace(&image);
    if (!isNew) return entry->second.id;
    entry->second = {ORVRef<const ORVPixelImage>::Share(&image), NewId(Kind::kImage)};
    NoteImage(image, entry->second.id);
    writer_.Put("<defs><image id=\"" + entry->second.id + "\"" + SizeAttributes(image) +
                " preserveAspectRatio=\"none\"");
    PutAddress(image);
    writer_.Put("/></defs>\n");
    return entry->second.id;
}

std::string SvgSharedDefinitions::FindPattern(const ORVPrintFill& fill,
                                              const ORVMathAffine2D& elementToPage) {
    const std::optional<ORVMathAffine2D> fromPage = elementToPage.Inverse();
    if (!IsDrawable(fill.patternToPage) || !fromPage) return {};
    const ORVMathAffine2D map = *fromPage * fill.patternToPage;
    std::vector<Pattern>& list = patterns_[fill.pattern];
    for (const Pattern& pattern : list)
        if (pattern.map == map) return pattern.id;

    std::string id = NewId(Kind::kPattern);
    list.push_back({ORVRef<const ORVPixelImage>::Share(fill.pattern), map, id});
    NoteImage(*fill.pattern, id);
    const std::string size = SizeAttributes(*fill.pattern);
    std::string text = "<defs><pattern id=\"" + id + "\" patternUnits=\"userSpaceOnUse\"" + size;
    std::string transform;
    AppendSvgTransform(transform, map, kSvgMostPlaces);
    if (!transform.empty()) text += " patternT" + transform.substr(2);
    writer_.Put(text + "><image" + size);
    PutAddress(*fill.pattern);
    writer_.Put("/></pattern></defs>\n");
    return id;
}

void SvgSharedDefinitions::PutAddress(const ORVPixelImage& image) {
    writer_.Put(" xlink:href=\"");
    if (!PutImageAddress(writer_, image)) isOutOfMemory_ = true;
    writer_.Put("\"");
}

const SvgSharedDefinitions::Symbol* SvgSharedDefinitions::FindSymbol(const void* key) const {
    const auto found = symbols_.find(key);
    return found != symbols_.end() ? &found->second : nullptr;
}

const SvgSharedDefinitions::Symbol& SvgSharedDefinitions::DefineSymbol(const void* key,
                                                                       const SvgWriter::Record& record,
                                                                       double scale) {
    Symbol& symbol = symbols_[key];
    symbol = {NewId(Kind::kSymbol), record.style, scale};
    NoteDefinition(key, symbol.id);
    writer_.Put("<defs><g id=\"" + symbol.id + "\">\n" + record.bare + "</g></defs>\n");
    return symbol;
}

void SvgSharedDefinitions::NoteDefinition(const void* key, const std::string& id) {
    if (depth_ > 0) scoped_.push_back({depth_, key, id});
}

void SvgSharedDefinitions::NoteImage(const ORVPixelImage& image, const std::string& id) {
    constexpr std::int64_t kSmall = std::int64_t{64} * 64;  // pixels
    if (std::int64_t{image.GetWidth()} * image.GetHeight() <= kSmall) NoteDefinition(&image, id);
}

void SvgSharedDefinitions::LeaveElement() {
    --depth_;
    for (; !scoped_.empty() && scoped_.back().depth > depth_; scoped_.pop_back()) {
        const Scoped& definition = scoped_.back();
        const auto* image = static_cast<const ORVPixelImage*>(definition.key);
        if (const auto found = symbols_.find(definition.key);
            found != symbols_.end() && found->second.id == definition.id)
            symbols_.erase(found);
        else if (const auto one = images_.find(image);
                 one != images_.end() && one->second.id == definition.id)
            images_.erase(one);
        else if (const auto list = patterns_.find(image); list != patterns_.end())
            std::erase_if(list->second, [&](const Pattern& pattern) { return pattern.id == definition.id; });
    }
}
