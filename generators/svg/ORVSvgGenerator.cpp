#include "generators/svg/ORVSvgGenerator.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"
#include "generators/common/map_measures.h"
#include "generators/common/number_text.h"
#include "generators/common/path_range.h"
#include "generators/svg/svg_images.h"
#include "generators/svg/svg_path.h"
#include "generators/svg/svg_style.h"
#include "generators/svg/svg_text.h"
#include "generators/svg/svg_writer.h"
#include "generators/svg/xml_text.h"
#include "platform/print/link_addresses.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/fonts/ORVTextLayout.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

constexpr double kMillimetresPerUserUnit = 25.4 / 90.0;
// Sides of a page (user units), some 280 metres: readers count in few digits.
constexpr double kLargestSide = 1e6;
// What lies farther out than this, and than the page is large, is cut off (user units).
constexpr double kLeastLimit = 40'000.0;
// Glyphs of other sizes (user units an em, on the page) cannot be seen, or are larger than any page.
constexpr double kSmallestGlyph = 1e-3;
constexpr double kLargestGlyph = 1e6;
// Digits after the period of coordinates on the page: a third of a micrometre.
constexpr int kPagePlaces = 3;
constexpr int kMostPlaces = 9;
constexpr int kFactorDigits = 9;

bool IsUpright(const ORVMathAffine2D& map) {
    constexpr double kTolerance = 1e-9;
    return std::fabs(map.m11 - 1.0) < kTolerance && std::fabs(map.m22 - 1.0) < kTolerance &&
           std::fabs(map.m12) < kTolerance && std::fabs(map.m21) < kTolerance;
}

bool IsSameMap(const ORVMathAffine2D& a, const ORVMathAffine2D& b) {
    return a.m11 == b.m11 && a.m12 == b.m12 && a.m21 == b.m21 && a.m22 == b.m22 && a.dx == b.dx &&
           a.dy == b.dy;
}

/// Digits after the period that coordinates need where a unit is `scale` units of the page.
int PlacesFor(double scale) {
    return std::clamp(kPagePlaces + static_cast<int>(std::ceil(std::log10(scale))), 1, kMostPlaces);
}

/// An identifier as SVG takes it: any characters but blanks.
std::string IdentifierOf(std::string_view id) {
    std::string result(id);
    for (char& c : result)
        if (static_cast<unsigned char>(c) <= 0x20) c = '_';
    return result;
}

void AppendAttribute(std::string& text, std::string_view name, std::string_view value) {
    text += ' ';
    text += name;
    text += "=\"";
    AppendXmlText(text, value);
    text += '"';
}

void AppendNumberAttribute(std::string& text, std::string_view name, double value, int places) {
    text += ' ';
    text += name;
    text += "=\"";
    AppendDecimal(text, value, places);
    text += '"';
}

void AppendElement(std::string& text, std::string_view name, std::string_view content) {
    if (content.empty()) return;
    text += '<';
    text += name;
    text += '>';
    AppendXmlText(text, content);
    text += "</";
    text += name;
    text += ">\n";
}

/// Blanks at the ends, and doubled ones, are kept only where the element says so.
bool HasBlanksToKeep(std::string_view text) {
    return text.starts_with(' ') || text.ends_with(' ') || text.find("  ") != text.npos;
}

}  // namespace

struct ORVSvgGenerator::State {
    explicit State(ORVOutput& sink) : output(sink) {}

    int Check() const { return writer && writer->IsGood() ? kGeneratorDone : kOutputFailed; }
    /// Marks an identifier as given. @return false when it was
    bool TakeId(const std::string& id) { return ids.insert(std::hash<std::string>()(id)).second; }
    std::string NewId(char kind, unsigned int& count) {
        std::string id;
        do {
            id = std::string("orv-") + kind + std::to_string(++count);
        } while (!TakeId(id));
        return id;
    }

    void AppendId(std::string& attributes, std::string_view given);
    void BeginElement(const ORVPrintGroup& group);
    void AddShape(std::string_view id, const ORVPrintPath& path, const ORVMathAffine2D& map,
                  const ORVPrintFill* fill, const ORVPrintStroke* stroke, double scale,
                  const ORVMathAffine2D& transform);
    void AddGeometry(const ORVPrintPath& path, const ORVMathAffine2D& map, bool mayBeNamed);
    void DrawShape(const ORVPrintShape& shape);
    void AddTextPiece(const ORVPrintText& text, std::string_view id, const SvgTextPiece& piece,
                      double spacing);
    void DrawText(const ORVPrintText& text);
    void BeginClip(std::string_view outline);
    void PutUse(std::string_view id, std::string_view attributes, const ORVMathAffine2D& map);
    void BeginInline(const ORVMathAffine2D& map);
    void LetRecordGo();
    void NoteDefinition(const void* key, const std::string& id);
    void NoteImage(const ORVPixelImage& image, const std::string& id);
    void LeaveElement();
    const std::string& FindImage(const ORVPixelImage& image);
    std::string FindPattern(const ORVPrintFill& fill, const ORVMathAffine2D& elementToPage);
    void EndPage();

    ORVOutput& output;
    std::string documentTitle;
    std::string error;

    // Of the open page.
    std::optional<SvgWriter> writer;
    enum class Open : std::uint8_t { kNothing, kGroup, kLink, kClip };
    std::vector<Open> open;
    bool insideLink = false;
    std::unordered_set<std::size_t> ids;  // hashes of those given so far

    /// The coordinates that are being drawn in: the page's, or those of a symbol.
    struct Space {
        int places = kPagePlaces;
        double limit = kLeastLimit;  // of coordinates
        double scale = 1.0;          // page units in one of its own
        ORVMathAffine2D toOuter;
        const void* key = nullptr;  // of the symbol
        bool isRecorded = false;
    };
    std::vector<Space> spaces;
    struct Symbol {
        std::string id;     // empty when it is not written once
        std::string style;  // of what is in it
        double scale = 0.0;
    };
    std::unordered_map<const void*, Symbol> symbols;
    struct Image {
        ORVRef<const ORVPixelImage> image;  // keeps the address from being used again
        std::string id;
    };
    std::unordered_map<const ORVPixelImage*, Image> images;
    struct Pattern {
        ORVRef<const ORVPixelImage> image;
        ORVMathAffine2D map;
        std::string id;
    };
    std::unordered_map<const ORVPixelImage*, std::vector<Pattern>> patterns;
    /// What was defined within the open groups, the innermost last.
    struct Definition {
        std::size_t depth;  // groups around it
        const void* key;    // image or symbol
        std::string id;
    };
    std::vector<Definition> definitions;
    std::size_t depth = 0;  // open groups that are elements
    unsigned int clipCount = 0, symbolCount = 0, imageCount = 0, patternCount = 0;

    ORVPrintPath fitted, fittedStroke;
    std::string name, style, rest;  // of the element at hand
};

ORVSvgGenerator::ORVSvgGenerator(ORVOutput& output) : state_(std::make_unique<State>(output)) {}

ORVSvgGenerator::~ORVSvgGenerator() = default;

const std::string& ORVSvgGenerator::GetError() const { return state_->error; }

int ORVSvgGenerator::BeginDocument(const ORVPrintDocumentInfo& info) {
    state_->documentTitle = info.title;
    return kGeneratorDone;
}

int ORVSvgGenerator::BeginPage(const ORVPrintPageInfo& info) {
    State& state = *state_;
    if (state.writer) return kDrawingFailed;
    if (!(info.width <= kLargestSide) || !(info.height <= kLargestSide)) {
        state.error = "page " + std::to_string(info.number) +
                      " is larger than SVG output may be (282 m); fit it to a sheet with --paper";
        return kPageTooLarge;
    }
    if (state.output.BeginPart() != 1) return kOutputFailed;
    state.writer.emplace(state.output);
    State::Space space;
    space.limit = std::max(kLeastLimit, 2.0 * std::max(info.width, info.height));
    state.spaces.push_back(space);

    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
        "version=\"1.1\"";
    if (!info.id.empty()) {
        const std::string id = IdentifierOf(info.id);
        state.TakeId(id);
        AppendAttribute(text, "id", id);
    }
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
    AppendElement(text, "title", info.title.empty() ? std::string_view(state.documentTitle) : info.title);
    AppendElement(text, "desc", info.description);
    state.writer->Put(text);
    return state.Check();
}

/// Appends an id attribute, nothing for an empty identifier. What is drawn twice bears its identifier once.
void ORVSvgGenerator::State::AppendId(std::string& attributes, std::string_view given) {
    if (given.empty() || spaces.size() > 1) return;  // places of a symbol would share it
    const std::string id = IdentifierOf(given);
    if (TakeId(id)) AppendAttribute(attributes, "id", id);
}

void ORVSvgGenerator::State::BeginElement(const ORVPrintGroup& group) {
    std::string attributes;
    AppendId(attributes, group.id);
    std::string address;
    // A link inside a link is part of the outer one.
    if (!insideLink && !group.linkURL.empty() && !ORVIsScriptAddress(group.linkURL))
        address = group.linkURL;
    else if (!insideLink && !group.linkElementId.empty())
        address = "#" + IdentifierOf(group.linkElementId);
    if (!address.empty()) {
        constexpr int kShowNew = 1, kShowReplace = 2;
        AppendAttribute(attributes, "xlink:href", address);
        if (group.linkShow == kShowNew) attributes += " xlink:show=\"new\" target=\"_blank\"";
        if (group.linkShow == kShowReplace) attributes += " xlink:show=\"replace\"";
        insideLink = true;
    }
    if (attributes.empty() && group.description.empty()) {
        open.push_back(Open::kNothing);
        return;
    }
    ++depth;
    std::string text = (address.empty() ? "<g" : "<a") + attributes + ">\n";
    AppendElement(text, "desc", group.description);
    writer->Put(text);
    open.push_back(address.empty() ? Open::kGroup : Open::kLink);
}

int ORVSvgGenerator::BeginGroup(const ORVPrintGroup& group) {
    if (!state_->writer) return kDrawingFailed;
    state_->BeginElement(group);
    return state_->Check();
}

/// Some readers, orvprint among them, know what is defined in a group only until it ends. Afterwards small
/// images and symbols are defined again; large images stay single.
void ORVSvgGenerator::State::NoteDefinition(const void* key, const std::string& id) {
    if (depth > 0) definitions.push_back({depth, key, id});
}

void ORVSvgGenerator::State::NoteImage(const ORVPixelImage& image, const std::string& id) {
    constexpr std::int64_t kSmall = std::int64_t{64} * 64;  // pixels
    if (std::int64_t{image.GetWidth()} * image.GetHeight() <= kSmall) NoteDefinition(&image, id);
}

void ORVSvgGenerator::State::LeaveElement() {
    --depth;
    for (; !definitions.empty() && definitions.back().depth > depth; definitions.pop_back()) {
        const auto& definition = definitions.back();
        const auto* image = static_cast<const ORVPixelImage*>(definition.key);
        if (const auto found = symbols.find(definition.key);
            found != symbols.end() && found->second.id == definition.id)
            symbols.erase(found);
        else if (const auto one = images.find(image); one != images.end() && one->second.id == definition.id)
            images.erase(one);
        else if (const auto list = patterns.find(image); list != patterns.end())
            std::erase_if(list->second, [&](const Pattern& pattern) { return pattern.id == definition.id; });
    }
}

int ORVSvgGenerator::EndGroup() {
    State& state = *state_;
    if (!state.writer || state.open.empty() || state.open.back() == State::Open::kClip) return kDrawingFailed;
    if (state.open.back() != State::Open::kNothing) state.LeaveElement();
    switch (state.open.back()) {
        case State::Open::kGroup: state.writer->Put("</g>\n"); break;
        case State::Open::kLink:
            state.writer->Put("</a>\n");
            state.insideLink = false;
            break;
        default: break;
    }
    state.open.pop_back();
    return state.Check();
}

void ORVSvgGenerator::State::BeginClip(std::string_view outline) {
    const std::string id = NewId('c', clipCount);
    writer->Put("<clipPath id=\"" + id + "\"><path d=\"");
    writer->Put(outline);
    writer->Put("\"/></clipPath>\n<g clip-path=\"url(#" + id + ")\">\n");
}

int ORVSvgGenerator::BeginClip(const ORVMathBox2D& box) {
    State& state = *state_;
    if (!state.writer) return kDrawingFailed;
    const State::Space& space = state.spaces.back();
    ORVPrintPath path;
    if (!box.IsEmpty()) {
        const auto cut = [&](double coordinate) { return std::clamp(coordinate, -space.limit, space.limit); };
        path.MoveTo({cut(box.xMin), cut(box.yMin)});
        path.LineTo({cut(box.xMax), cut(box.yMin)});
        path.LineTo({cut(box.xMax), cut(box.yMax)});
        path.LineTo({cut(box.xMin), cut(box.yMax)});
        path.Close();
    }
    std::string outline;
    AppendSvgPath(outline, path, {}, space.places);
    state.BeginClip(outline);
    state.open.push_back(State::Open::kClip);
    ++state.depth;
    return state.Check();
}

int ORVSvgGenerator::EndClip() {
    State& state = *state_;
    if (!state.writer || state.open.empty() || state.open.back() != State::Open::kClip) return kDrawingFailed;
    state.open.pop_back();
    state.LeaveElement();
    state.writer->Put("</g>\n");
    return state.Check();
}

void ORVSvgGenerator::State::PutUse(std::string_view id, std::string_view attributes,
                                    const ORVMathAffine2D& map) {
    rest = "<use xlink:href=\"#";
    rest += id;
    rest += '"';
    rest += attributes;
    AppendSvgTransform(rest, map, spaces.back().places);
    rest += "/>\n";
    writer->Put(rest);
}

void ORVSvgGenerator::State::BeginInline(const ORVMathAffine2D& map) {
    std::string text = "<g";
    AppendSvgTransform(text, map, kMostPlaces);
    writer->Put(text + ">\n");
}

/// What is held back of a symbol has become too much: it is written where it stands.
void ORVSvgGenerator::State::LetRecordGo() {
    const SvgWriter::Record record = writer->EndRecording();
    spaces.back().isRecorded = false;
    BeginInline(spaces.back().toOuter);
    writer->Put(record.styled);
}

// Some readers, orvprint among them, paint all that a use element places with the paint of that element. So
// only what has one style is written once, and each use states the style; of other symbols every place has
// its own.
int ORVSvgGenerator::BeginSymbol(const ORVPrintSymbol& symbol) {
    State& state = *state_;
    if (!state.writer || !IsDrawable(symbol.toPage) || IsFlat(symbol.toPage)) return kNoSymbols;
    const State::Space& outer = state.spaces.back();
    const double enlargement = Enlargement(symbol.toPage);
    const double scale = outer.scale * enlargement;
    // The digits of a symbol that was written for a much smaller place do not suffice.
    constexpr double kLargestGrowth = 8.0;
    const auto known = state.symbols.find(symbol.key);
    const bool isKnown = known != state.symbols.end(), isShared = isKnown && !known->second.id.empty();
    if (isShared && scale <= kLargestGrowth * known->second.scale) {
        state.PutUse(known->second.id, known->second.style, symbol.toPage);
        return kSymbolKnown;
    }
    constexpr double kGreatestLimit = 1e9;
    const double reach = outer.limit + std::max(std::fabs(symbol.toPage.dx), std::fabs(symbol.toPage.dy));
    const double reduction = std::fabs(symbol.toPage.Determinant()) / enlargement;
    State::Space space;
    space.places = PlacesFor(scale);
    space.limit = std::min(reach / reduction, kGreatestLimit);
    space.scale = scale;
    space.toOuter = symbol.toPage;
    space.key = symbol.key;
    // Within another symbol, and where it has turned out to have several styles, it is written as it stands.
    space.isRecorded = !state.writer->IsRecording() && (!isKnown || isShared);
    if (space.isRecorded)
        state.writer->BeginRecording();
    else
        state.BeginInline(symbol.toPage);
    state.spaces.push_back(space);
    return kDrawSymbol;
}

int ORVSvgGenerator::EndSymbol() {
    State& state = *state_;
    if (!state.writer || state.spaces.size() < 2) return kDrawingFailed;
    if (state.spaces.back().isRecorded && state.writer->IsRecordFull()) state.LetRecordGo();
    const State::Space space = state.spaces.back();
    state.spaces.pop_back();
    if (!space.isRecorded) {
        state.symbols.try_emplace(space.key);
        state.writer->Put("</g>\n");
        return state.Check();
    }
    const SvgWriter::Record record = state.writer->EndRecording();
    State::Symbol& symbol = state.symbols[space.key];
    if (record.isUniform && !record.bare.empty()) {
        symbol = {state.NewId('s', state.symbolCount), record.style, space.scale};
        state.NoteDefinition(space.key, symbol.id);
        state.writer->Put("<defs><g id=\"" + symbol.id + "\">\n" + record.bare + "</g></defs>\n");
        state.PutUse(symbol.id, symbol.style, space.toOuter);
    } else {
        symbol = {};
        state.BeginInline(space.toOuter);
        state.writer->Put(record.styled);
        state.writer->Put("</g>\n");
    }
    return state.Check();
}

std::string ORVSvgGenerator::State::FindPattern(const ORVPrintFill& fill,
                                                const ORVMathAffine2D& elementToPage) {
    ORVMathAffine2D map;
    if (!IsDrawable(fill.patternToPage) || !InvertMap(elementToPage, map)) return {};
    map = map * fill.patternToPage;
    std::vector<Pattern>& list = patterns[fill.pattern];
    for (const Pattern& pattern : list)
        if (IsSameMap(pattern.map, map)) return pattern.id;

    std::string id = NewId('p', patternCount);
    list.push_back({ORVRef<const ORVPixelImage>::Share(fill.pattern), map, id});
    NoteImage(*fill.pattern, id);
    const std::string size = " width=\"" + std::to_string(fill.pattern->GetWidth()) + "\" height=\"" +
                             std::to_string(fill.pattern->GetHeight()) + "\"";
    std::string text = "<defs><pattern id=\"" + id + "\" patternUnits=\"userSpaceOnUse\"" + size;
    std::string transform;
    AppendSvgTransform(transform, map, kMostPlaces);
    if (!transform.empty()) text += " patternT" + transform.substr(2);
    writer->Put(text + "><image" + size + " xlink:href=\"");
    if (!PutImageAddress(*writer, *fill.pattern)) error = "out of memory";
    writer->Put("\"/></pattern></defs>\n");
    return id;
}

void ORVSvgGenerator::State::AddGeometry(const ORVPrintPath& path, const ORVMathAffine2D& map,
                                         bool mayBeNamed) {
    const int places = spaces.back().places;
    const SvgOutline outline = mayBeNamed ? RecogniseOutline(path, map, places) : SvgOutline();
    const auto number = [&](std::string_view attribute, double value) {
        AppendNumberAttribute(rest, attribute, value, places);
    };
    const auto position = [&](std::string_view attribute, double value) {
        if (ToFixed(value, places) != 0) number(attribute, value);
    };
    switch (outline.kind) {
        case SvgOutline::Kind::kRectangle:
            name = "rect";
            position("x", outline.x);
            position("y", outline.y);
            number("width", outline.width);
            number("height", outline.height);
            break;
        case SvgOutline::Kind::kCircle:
        case SvgOutline::Kind::kEllipse: {
            const bool isCircle = outline.kind == SvgOutline::Kind::kCircle;
            name = isCircle ? "circle" : "ellipse";
            position("cx", outline.x);
            position("cy", outline.y);
            number(isCircle ? "r" : "rx", outline.width);
            if (!isCircle) number("ry", outline.height);
            break;
        }
        case SvgOutline::Kind::kPath:
            name = "path";
            rest += " d=\"";
            AppendSvgPath(rest, path, map, places);
            rest += '"';
            break;
    }
}

void ORVSvgGenerator::State::AddShape(std::string_view id, const ORVPrintPath& path,
                                      const ORVMathAffine2D& map, const ORVPrintFill* fill,
                                      const ORVPrintStroke* stroke, double scale,
                                      const ORVMathAffine2D& transform) {
    if (path.IsEmpty()) return;
    rest.clear();
    AppendId(rest, id);
    AppendSvgTransform(rest, transform, spaces.back().places);
    // Dashes begin where the path does.
    AddGeometry(path, map, !stroke || stroke->dashes.empty());
    rest += "/>\n";
    std::optional<ORVPrintFill> paint;
    if (fill) paint = *fill;
    if (paint && name != "path") paint->evenOdd = false;
    const std::string pattern = paint && paint->pattern ? FindPattern(*paint, {}) : std::string();
    style.clear();
    AppendSvgFill(style, paint ? &*paint : nullptr, pattern, stroke != nullptr);
    if (stroke) AppendSvgStroke(style, *stroke, scale);
    writer->AddElement(name, style, rest);
}

void ORVSvgGenerator::State::DrawShape(const ORVPrintShape& shape) {
    if (!IsDrawable(shape.toPage)) return;
    const double limit = spaces.back().limit, scale = Enlargement(shape.toPage);
    const ORVPrintStroke* stroke = IsFlat(shape.toPage) ? nullptr : shape.stroke;
    const ORVPrintPath* fillPath =
        shape.fill ? &FitPathToRange(shape.path, shape.toPage, limit, PathUse::kFill, fitted) : nullptr;
    const ORVPrintPath* strokePath =
        stroke ? &FitPathToRange(shape.path, shape.toPage, limit, PathUse::kStroke, fittedStroke) : nullptr;
    const bool hasRoundPen = KeepsAngles(shape.toPage);
    if (fillPath && fillPath == strokePath && hasRoundPen)
        return AddShape(shape.id, shape.path, shape.toPage, shape.fill, stroke, scale, {});
    if (fillPath) AddShape(shape.id, *fillPath, shape.toPage, shape.fill, nullptr, 1.0, {});
    if (!strokePath) return;
    if (hasRoundPen) return AddShape(shape.id, *strokePath, shape.toPage, nullptr, stroke, scale, {});
    // The pen goes through the map. The path's own lengths are brought near those on the page, so that their
    // digits suffice.
    AddShape(shape.id, *strokePath, ORVMathAffine2D::Scaling(scale, scale), nullptr, stroke, scale,
             shape.toPage * ORVMathAffine2D::Scaling(1.0 / scale, 1.0 / scale));
}

int ORVSvgGenerator::DrawShape(const ORVPrintShape& shape) {
    if (!state_->writer) return kDrawingFailed;
    state_->DrawShape(shape);
    if (state_->spaces.back().isRecorded && state_->writer->IsRecordFull()) state_->LetRecordGo();
    return state_->Check();
}

void ORVSvgGenerator::State::AddTextPiece(const ORVPrintText& text, std::string_view id,
                                          const SvgTextPiece& piece, double spacing) {
    const ORVGlyphRun& run = *piece.run;
    const int places = spaces.back().places;
    const double scale = Enlargement(text.toPage);
    const ORVMathPoint2D start = text.toPage({piece.x, piece.y});
    const double limit = spaces.back().limit, size = run.size * scale * spaces.back().scale;
    if (!(std::fabs(start.x) < limit) || !(std::fabs(start.y) < limit) || !(size > kSmallestGlyph) ||
        !(size < kLargestGlyph) || !(run.expansion > 0.0))
        return;

    // SVG's letters stand upright where y points down.
    ORVMathAffine2D map = text.toPage * ORVMathAffine2D::Scaling(run.expansion / scale, -1.0 / scale);
    map.dx = start.x;
    map.dy = start.y;
    const bool isUpright = IsUpright(map);
    const double unit = scale / run.expansion;  // of the layout's lengths along the line

    rest.clear();
    AppendId(rest, id);
    if (isUpright) {
        AppendNumberAttribute(rest, "x", start.x, places);
        AppendNumberAttribute(rest, "y", start.y, places);
    } else {
        AppendSvgTransform(rest, map, places);
    }
    // A reader with another font makes the line as long as it is here.
    if (piece.length > 0.0) AppendNumberAttribute(rest, "textLength", piece.length * unit, places);
    if (HasBlanksToKeep(piece.text)) rest += " xml:space=\"preserve\"";
    rest += '>';
    AppendXmlText(rest, piece.text);
    rest += "</text>\n";

    const bool hasPattern = text.fill && text.fill->pattern;
    const std::string pattern =
        hasPattern ? FindPattern(*text.fill, isUpright ? ORVMathAffine2D() : map) : std::string();
    style.clear();
    AppendSvgFont(style, *run.face, run.size * scale, run.syntheticBold);
    if (spacing != 0.0 && !run.vertical) {
        style += " letter-spacing=\"";
        AppendDecimal(style, spacing * unit, places);
        style += '"';
    }
    if (run.rightToLeft) style += " direction=\"rtl\" writing-mode=\"rl\"";
    std::optional<ORVPrintFill> paint;
    if (text.fill) paint = *text.fill;
    if (paint) paint->evenOdd = false;
    AppendSvgFill(style, paint ? &*paint : nullptr, pattern, text.stroke != nullptr);
    if (text.stroke) AppendSvgStroke(style, *text.stroke, scale);
    writer->AddElement("text", style, rest);
}

void ORVSvgGenerator::State::DrawText(const ORVPrintText& text) {
    if (!IsDrawable(text.toPage) || IsFlat(text.toPage) || (!text.fill && !text.stroke)) return;
    const SvgTextLine line = SplitSvgText(text);
    // What becomes several elements is a group under its identifier.
    const bool isOneElement = line.pieces.size() == 1 && !text.clip;
    std::string attributes;
    if (!isOneElement) AppendId(attributes, text.id);
    if (!attributes.empty()) writer->Put("<g" + attributes + ">\n");
    if (text.clip) {
        const ORVPrintPath& clip =
            FitPathToRange(*text.clip, {}, spaces.back().limit, PathUse::kFill, fitted);
        std::string outline;
        AppendSvgPath(outline, clip, {}, spaces.back().places);
        BeginClip(outline);
    }
    for (const SvgTextPiece& piece : line.pieces)
        AddTextPiece(text, isOneElement ? text.id : std::string_view(), piece, line.spacing);
    if (text.clip) writer->Put("</g>\n");
    if (!attributes.empty()) writer->Put("</g>\n");
}

int ORVSvgGenerator::DrawText(const ORVPrintText& text) {
    if (!state_->writer) return kDrawingFailed;
    state_->DrawText(text);
    return state_->Check();
}

const std::string& ORVSvgGenerator::State::FindImage(const ORVPixelImage& image) {
    const auto [entry, isNew] = images.try_emplace(&image);
    if (!isNew) return entry->second.id;
    entry->second = {ORVRef<const ORVPixelImage>::Share(&image), NewId('i', imageCount)};
    NoteImage(image, entry->second.id);
    writer->Put("<defs><image id=\"" + entry->second.id + "\" width=\"" + std::to_string(image.GetWidth()) +
                "\" height=\"" + std::to_string(image.GetHeight()) + "\" preserveAspectRatio=\"none\"");
    writer->Put(" xlink:href=\"");
    if (!PutImageAddress(*writer, image)) error = "out of memory";
    writer->Put("\"/></defs>\n");
    return entry->second.id;
}

int ORVSvgGenerator::DrawImage(const ORVPrintImage& image) {
    State& state = *state_;
    if (!state.writer) return kDrawingFailed;
    if (!IsDrawable(image.toPage)) return kGeneratorDone;
    const double limit = 10.0 * state.spaces.back().limit;
    for (const ORVMathPoint2D& corner : {ORVMathPoint2D{0.0, 0.0}, ORVMathPoint2D{1.0, 0.0},
                                         ORVMathPoint2D{0.0, 1.0}, ORVMathPoint2D{1.0, 1.0}}) {
        const ORVMathPoint2D p = image.toPage(corner);
        if (!(std::fabs(p.x) < limit) || !(std::fabs(p.y) < limit)) return kGeneratorDone;
    }
    const std::string id = state.FindImage(image.image);
    std::string attributes;
    state.AppendId(attributes, image.id);
    state.PutUse(
        id, attributes,
        image.toPage * ORVMathAffine2D::Scaling(1.0 / image.image.GetWidth(), 1.0 / image.image.GetHeight()));
    return state.error.empty() ? state.Check() : kDrawingFailed;
}

void ORVSvgGenerator::State::EndPage() {
    // A drawing that broke off leaves groups open.
    for (; !open.empty(); open.pop_back())
        if (open.back() != Open::kNothing) writer->Put(open.back() == Open::kLink ? "</a>\n" : "</g>\n");
    writer->Put("</svg>\n");
    insideLink = false;
    spaces.clear();
    ids.clear();
    symbols.clear();
    images.clear();
    patterns.clear();
    definitions.clear();
    depth = 0;
    clipCount = symbolCount = imageCount = patternCount = 0;
}

int ORVSvgGenerator::EndPage() {
    State& state = *state_;
    if (!state.writer) return kDrawingFailed;
    state.EndPage();
    const bool isWritten = state.writer->Flush();
    state.writer.reset();
    const bool isClosed = state.output.EndPart() == 1;
    return isWritten && isClosed ? kGeneratorDone : kOutputFailed;
}

int ORVSvgGenerator::EndDocument() { return state_->writer ? EndPage() : static_cast<int>(kGeneratorDone); }
