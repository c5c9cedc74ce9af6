// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/svg_page.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "generators/common/map_measures.h"
#include "generators/common/number_text.h"
#include "generators/svg/svg_style.h"
#include "generators/svg/xml_text.h"
#include "platform/print/link_addresses.h"

namespace {

constexpr double kMillimetresPerUserUnit = 25.4 / 90.0;
// Minimum clipping limit in user units; content is clipped to this or the size of the page, whichever is
// greater.
constexpr double kLeastLimit = 40'000.0;
constexpr int kFactorDigits = 9;

/// Decimal places of coordinates if a unit is `scale` page units.
int PlacesFor(double scale) {
    return std::clamp(SvgSpace().places + static_cast<int>(std::ceil(std::log10(scale))), 1, kSvgMostPlaces);
}

/// Marks a layer as SVG editors do.
void AppendLayer(std::string& attributes, const ORVPrintContentLayer& layer) {
    attributes +=
        " xmlns:inkscape=\"http://www.inkscape.org/namespaces/inkscape\" inkscape:groupmode=\"layer\"";
    AppendXmlAttribute(attributes, "inkscape:label", layer.label);
    if (layer.isLocked)
        attributes +=
            " xmlns:sodipodi=\"http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd\" "
            "sodipodi:insensitive=\"true\"";
    if (!layer.isShown) attributes += " style=\"display:none\"";
}

/// URL of a link; empty if there is none or if it is a script.
std::string AddressOf(const ORVPrintGroup& group) {
    if (!group.linkURL.empty() && !ORVIsScriptAddress(group.linkURL)) return std::string(group.linkURL);
    return group.linkElementId.empty() ? std::string() : "#" + SvgIdentifier(group.linkElementId);
}

void AppendLink(std::string& attributes, const std::string& address, int show) {
    constexpr int kShowNew = 1, kShowReplace = 2;
    AppendXmlAttribute(attributes, "xlink:href", address);
    if (show == kShowNew) attributes += " xlink:show=\"new\" target=\"_blank\"";
    if (show == kShowReplace) attributes += " xlink:show=\"replace\"";
}

bool Holds(const ORVMathBox2D& outer, const ORVMathBox2D& inner) {
    return outer.xMin <= inner.xMin && outer.xMax >= inner.xMax && outer.yMin <= inner.yMin &&
           outer.yMax >= inner.yMax;
}

}  // namespace

SvgPage::SvgPage(ORVOutput& output, const ORVPrintPageInfo& info, std::string_view documentTitle)
    : writer_(output) {
    SvgSpace space;
    space.limit = std::max(kLeastLimit, 2.0 * std::max(info.width, info.height));
    spaces_.push_back({space, {}, nullptr, false});
    whole_.Add({0.0, 0.0});
    whole_.Add({info.width, info.height});

    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
        "version=\"1.1\"";
    definitions_.AppendId(text, info.id);
    for (const auto& [side, length] : {std::pair{" width=\"", info.width}, {" height=\"", info.height}}) {
        text += side;
        AppendSignificant(text, length * kMillimetresPerUserUnit, kFactorDigits);
        text += "mm\"";
    }
    text += " viewBox=\"0 0 ";
    AppendSignificant(text, info.width, kFactorDigits);
    text += ' ';
    AppendSignificant(text, info.height, kFactorDigits);
    text += "\">\n";
    AppendXmlElement(text, "title", info.title.empty() ? documentTitle : std::string_view(info.title));
    AppendXmlElement(text, "desc", info.description);
    writer_.Put(text);
}

void SvgPage::BeginGroup(const ORVPrintGroup& group) {
    std::string attributes;
    definitions_.AppendId(attributes, spaces_.back().space.IdOf(group.id));
    // A link inside a link is ignored: the outer one applies.
    const std::string address = isInsideLink_ ? std::string() : AddressOf(group);
    if (!address.empty()) {
        AppendLink(attributes, address, group.linkShow);
        isInsideLink_ = true;
    }
    if (group.layer) AppendLayer(attributes, *group.layer);
    if (attributes.empty() && group.description.empty()) {
        open_.push_back(Open::kNothing);
        return;
    }
    definitions_.EnterElement();
    std::string text = (address.empty() ? "<g" : "<a") + attributes + ">\n";
    AppendXmlElement(text, "desc", group.description);
    writer_.Put(text);
    open_.push_back(address.empty() ? Open::kGroup : Open::kLink);
}

bool SvgPage::EndGroup() {
    if (open_.empty() || open_.back() > Open::kLink) return false;
    if (open_.back() != Open::kNothing) definitions_.LeaveElement();
    switch (open_.back()) {
        case Open::kGroup: writer_.Put("</g>\n"); break;
        case Open::kLink:
            writer_.Put("</a>\n");
            isInsideLink_ = false;
            break;
        default: break;
    }
    open_.pop_back();
    return true;
}

void SvgPage::Enter(Open what) {
    open_.push_back(what);
    definitions_.EnterElement();
}

std::string_view SvgPage::EndOf(Open what) {
    switch (what) {
        case Open::kMask: return "</mask>\n";
        case Open::kTiles: return "</pattern>\n";
        case Open::kFilter: return "</g></g>\n";
        default: return "</g>\n";
    }
}

bool SvgPage::Leave(Open what) {
    if (open_.empty() || open_.back() != what) return false;
    open_.pop_back();
    definitions_.LeaveElement();
    writer_.Put(EndOf(what));
    return true;
}

ORVPrintPath SvgPage::BoxPath(const ORVMathBox2D& box) const {
    ORVPrintPath path;
    if (box.IsEmpty()) return path;
    const double limit = spaces_.back().space.limit;
    const auto cut = [&](double coordinate) { return std::clamp(coordinate, -limit, limit); };
    path.MoveTo({cut(box.xMin), cut(box.yMin)});
    path.LineTo({cut(box.xMax), cut(box.yMin)});
    path.LineTo({cut(box.xMax), cut(box.yMax)});
    path.LineTo({cut(box.xMin), cut(box.yMax)});
    path.Close();
    return path;
}

void SvgPage::BeginClip(const ORVMathBox2D& box) {
    painter_.OpenClip(BoxPath(box), spaces_.back().space);
    Enter(Open::kClip);
}

bool SvgPage::EndClip() { return Leave(Open::kClip); }

void SvgPage::BeginClipPath(const ORVPrintClipPath& clip) {
    painter_.OpenClip(clip, spaces_.back().space);
    Enter(Open::kClip);
}

void SvgPage::BeginLayer(const ORVPrintLayer& layer) {
    std::string attributes;
    // Readers isolate groups with any of these properties.
    const bool isSeparate =
        layer.isIsolated || layer.hasMask || layer.opacity < 1.0 || layer.blend != ORVPrintBlendMode::kNormal;
    if (isSeparate && !Holds(layer.box, whole_))
        attributes += " clip-path=\"url(#" +
                      definitions_.FindClipPath(BoxPath(layer.box), {}, false, spaces_.back().space.places) +
                      ")\"";
    if (layer.hasMask) {
        mask_ = definitions_.NewMask();
        attributes += " mask=\"url(#" + mask_ + ")\"";
    }
    if (layer.opacity < 1.0) {
        attributes += " opacity=\"";
        AppendDecimal(attributes, std::max(layer.opacity, 0.0), 4);
        attributes += '"';
    }
    if (layer.blend != ORVPrintBlendMode::kNormal)
        attributes += " style=\"mix-blend-mode:" + std::string(NameOfSvgBlendMode(layer.blend)) + "\"";
    else if (attributes.empty() && layer.isIsolated)
        attributes += " style=\"isolation:isolate\"";
    writer_.Put("<g" + attributes + ">\n");
    Enter(Open::kLayer);
}

bool SvgPage::EndLayer() { return Leave(Open::kLayer); }

/// Attributes for position and size of a box; zero size at the origin if it is empty.
std::string SvgPage::BoxAttributes(const ORVMathBox2D& box, int places) const {
    const double limit = spaces_.back().space.limit;
    std::string text;
    const auto add = [&](std::string_view name, double value) {
        text.append(" ").append(name).append("=\"");
        AppendDecimal(text, std::clamp(value, -limit, limit), places);
        text += '"';
    };
    const bool isEmpty = box.IsEmpty();
    add("x", isEmpty ? 0.0 : box.xMin);
    add("y", isEmpty ? 0.0 : box.yMin);
    add("width", isEmpty ? 0.0 : box.xMax - box.xMin);
    add("height", isEmpty ? 0.0 : box.yMax - box.yMin);
    return text;
}

void SvgPage::BeginMask(const ORVPrintMask& mask) {
    std::string text = "<mask id=\"" + mask_ + "\" maskUnits=\"userSpaceOnUse\"" +
                       BoxAttributes(mask.box, spaces_.back().space.places);
    if (mask.kind == ORVPrintMask::Kind::kOpacity) text += " mask-type=\"alpha\"";
    if (mask.kind == ORVPrintMask::Kind::kLinearLuminance) text += " color-interpolation=\"linearRGB\"";
    writer_.Put(text + ">\n");
    Enter(Open::kMask);
}

bool SvgPage::EndMask() { return Leave(Open::kMask); }

void SvgPage::BeginFilter(const ORVPrintFilter& filter) {
    // Filters use their own user space; the content inside returns to that of the page.
    const auto fromPage = filter.toPage.Inverse();
    std::string text = "<g";
    if (fromPage && IsDrawable(filter.toPage)) {
        constexpr double kBeyond = 1.0;  // multiple of the page size, on every side
        const double width = whole_.xMax - whole_.xMin, height = whole_.yMax - whole_.yMin;
        ORVMathBox2D everywhere = whole_;
        everywhere.Add({whole_.xMin - kBeyond * width, whole_.yMin - kBeyond * height});
        everywhere.Add({whole_.xMax + kBeyond * width, whole_.yMax + kBeyond * height});
        const std::string id = definitions_.FindFilter(filter, everywhere.MappedBy(*fromPage));
        AppendSvgTransform(text, filter.toPage, kSvgMostPlaces);
        text += " filter=\"url(#" + id + ")\"><g";
        AppendSvgTransform(text, *fromPage, kSvgMostPlaces);
    } else {
        text += "><g";
    }
    writer_.Put(text + ">\n");
    Enter(Open::kFilter);
}

bool SvgPage::EndFilter() { return Leave(Open::kFilter); }

int SvgPage::BeginTiles(const ORVPrintTiles& tiles) {
    const double width = tiles.tile.xMax - tiles.tile.xMin, height = tiles.tile.yMax - tiles.tile.yMin;
    // A period equal to the tile: there are no gaps and no overlaps.
    const auto isNear = [](double a, double b) { return std::fabs(a - b) <= 1e-9 * b; };
    const bool isSaid = IsDrawable(tiles.toPage) && !IsFlat(tiles.toPage) && isNear(tiles.xStep, width) &&
                        isNear(tiles.yStep, height) && width > 0.0 && height > 0.0;
    if (!tiles.isPlain || !isSaid || writer_.IsRecording()) return ORVPrintGenerator::kNoTiles;
    const std::string id = definitions_.NewPattern();
    std::string text = "<pattern id=\"" + id + "\" patternUnits=\"userSpaceOnUse\"";
    // More digits, because errors accumulate over many tiles.
    text += BoxAttributes(tiles.tile, kSvgMostPlaces);
    AppendSvgTransform(text, tiles.toPage, kSvgMostPlaces, "patternTransform");
    writer_.Put(text + ">\n");
    covers_.push_back("<rect" + BoxAttributes(tiles.shown, spaces_.back().space.places) + " fill=\"url(#" +
                      id + ")\"/>\n");
    Enter(Open::kTiles);
    return ORVPrintGenerator::kDrawTile;
}

bool SvgPage::EndTiles() {
    if (!Leave(Open::kTiles)) return false;
    writer_.Put(covers_.back());
    covers_.pop_back();
    return true;
}

void SvgPage::BeginInline(const ORVMathAffine2D& map) {
    std::string text = "<g";
    AppendSvgTransform(text, map, kSvgMostPlaces);
    writer_.Put(text + ">\n");
}

/// A recorded symbol has become too large: it is written inline.
void SvgPage::LetRecordGo() {
    const SvgWriter::Record record = writer_.EndRecording();
    spaces_.back().isRecorded = false;
    BeginInline(spaces_.back().toOuter);
    writer_.Put(record.styled);
}

int SvgPage::BeginSymbol(const ORVPrintSymbol& symbol) {
    if (!IsDrawable(symbol.toPage) || IsFlat(symbol.toPage)) return ORVPrintGenerator::kNoSymbols;
    const SvgSpace& outer = spaces_.back().space;
    const double enlargement = symbol.toPage.Enlargement();
    const double scale = outer.scale * enlargement;
    // A symbol written for a much smaller place has too few digits.
    constexpr double kLargestGrowth = 8.0;
    const SvgSharedDefinitions::Symbol* known = definitions_.FindSymbol(symbol.key);
    const bool isShared = known && !known->id.empty();
    if (isShared && scale <= kLargestGrowth * known->scale) {
        painter_.PutUse(known->id, known->style, symbol.toPage, outer);
        return ORVPrintGenerator::kSymbolKnown;
    }
    constexpr double kGreatestLimit = 1e9;
    const double reach = outer.limit + std::max(std::fabs(symbol.toPage.dx), std::fabs(symbol.toPage.dy));
    const double reduction = std::fabs(symbol.toPage.Determinant()) / enlargement;
    const SvgSpace space{PlacesFor(scale), std::min(reach / reduction, kGreatestLimit), scale, true};
    // Nested symbols, and symbols known to have several styles, are written inline.
    const bool isRecorded = !writer_.IsRecording() && (!known || isShared);
    if (isRecorded)
        writer_.BeginRecording();
    else
        BeginInline(symbol.toPage);
    spaces_.push_back({space, symbol.toPage, symbol.key, isRecorded});
    return ORVPrintGenerator::kDrawSymbol;
}

bool SvgPage::EndSymbol() {
    if (spaces_.size() < 2) return false;
    if (spaces_.back().isRecorded && writer_.IsRecordFull()) LetRecordGo();
    const OpenSpace inner = spaces_.back();
    spaces_.pop_back();
    if (!inner.isRecorded) {
        definitions_.NoteSymbol(inner.key);
        writer_.Put("</g>\n");
        return true;
    }
    const SvgWriter::Record record = writer_.EndRecording();
    if (record.isUniform && !record.bare.empty()) {
        const SvgSharedDefinitions::Symbol& symbol =
            definitions_.DefineSymbol(inner.key, record, inner.space.scale);
        painter_.PutUse(symbol.id, symbol.style, inner.toOuter, spaces_.back().space);
    } else {
        definitions_.NoteStyledSymbol(inner.key);
        BeginInline(inner.toOuter);
        writer_.Put(record.styled);
        writer_.Put("</g>\n");
    }
    return true;
}

void SvgPage::DrawShape(const ORVPrintShape& shape) {
    painter_.DrawShape(shape, spaces_.back().space);
    if (spaces_.back().isRecorded && writer_.IsRecordFull()) LetRecordGo();
}

bool SvgPage::Finish() {
    // An aborted drawing leaves groups open.
    for (; !open_.empty(); open_.pop_back()) {
        switch (open_.back()) {
            case Open::kNothing: break;
            case Open::kLink: writer_.Put("</a>\n"); break;
            default: writer_.Put(EndOf(open_.back())); break;
        }
    }
    writer_.Put("</svg>\n");
    return writer_.Flush();
}
