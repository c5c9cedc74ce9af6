// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/drawing/Drawing.h"

#include <algorithm>

#include "interpreters/svg2/drawing/TextDrawing.h"
#include "interpreters/svg2/tree/shapes.h"
#include "interpreters/svg2/tree/structure.h"
#include "interpreters/svg2/values/scanner.h"
#include "platform/print/ORVPrintModelRender.h"

namespace svg2 {
namespace {

/// Elements that are targets of links in the document.
std::unordered_set<ElementIndex> FindLinkTargets(const Document& document) {
    std::unordered_set<ElementIndex> targets;
    for (const ElementIndex link : document.FindAll(Tag::kA)) {
        const ElementIndex target = document.FindByReference(Trim(document.ValueOf(link, Name::kHref)));
        if (target != kNoElement) targets.insert(target);
    }
    return targets;
}

}  // namespace

Drawing::Drawing(Scene& scene, ORVPrintGenerator& generator, DrawingBudget& budget, Images& images,
                 TextFonts& fonts)
    : scene_(scene),
      generator_(generator),
      budget_(budget),
      images_(images),
      bounds_(scene, budget, fonts),
      paints_(scene),
      fonts_(fonts),
      linkTargets_(images.GetDepth() == 0 ? FindLinkTargets(scene.GetDocument())
                                          : std::unordered_set<ElementIndex>()),
      keepsIdentifiers_(generator.KeepsIdentifiers()),
      // Elements of drawings inside images are not numbered.
      followsOrigins_(generator.FollowsOrigins() && images.GetDepth() == 0) {
    scene.SetBoxes(&bounds_);
    bounds_.SetImages(&images_);
}

Drawing::~Drawing() { scene_.SetBoxes(nullptr); }

// Styles are kept off the stack, to keep its frames small for deep documents.
Style& Drawing::StyleAt(int depth) {
    const auto level = static_cast<std::size_t>(depth);
    while (styles_.size() <= level) styles_.push_back(std::make_unique<Style>());
    return *styles_[level];
}

bool Drawing::TakeElement(ElementIndex element) {
    const bool isWithin =
        budget_.TakeElement(scene_.GetDocument()[element].payload) && scene_.GetCascade().IsWithinBudget();
    return isWithin || Do(ORVPrintModelRender::kTooManyRepeats);
}

bool Drawing::MayDescend(int depth) {
    return depth < DrawingBudget::kGreatestDepth || Do(ORVPrintModelRender::kTooManyRepeats);
}

bool Drawing::Enter(ElementIndex definition) {
    if (active_.size() >= DrawingBudget::kGreatestNesting) return Do(ORVPrintModelRender::kTooManyRepeats);
    active_.push_back(definition);
    return true;
}

int Drawing::Draw(const ORVMathAffine2D& toPage, const Viewport& viewport, const ORVMathBox2D& page) {
    page_ = page;
    rootToPage_ = toPage;
    status_ = 1;
    DrawState state;
    state.toPage = toPage;
    state.viewport = viewport;
    DrawElement(Document::kRoot, Cascade::InitialStyle(), state);
    if (!scene_.GetCascade().IsWithinBudget()) Do(ORVPrintModelRender::kTooManyRepeats);
    return status_;
}

int Drawing::DrawGlyph(ElementIndex glyph, const ORVMathAffine2D& toPage, const Viewport& viewport,
                       const ORVMathBox2D& page, const ContextPaints& context) {
    page_ = page;
    rootToPage_ = toPage;
    status_ = 1;
    keepsIdentifiers_ = false;  // a glyph is drawn many times
    DrawState state;
    state.toPage = toPage;
    state.viewport = viewport;
    state.context = &context;
    const Document& document = scene_.GetDocument();
    std::vector<ElementIndex> ancestors;
    for (ElementIndex i = document[glyph].parent; i != kNoElement; i = document[i].parent)
        ancestors.push_back(i);
    if (!ancestors.empty()) {
        const auto root = FindRootViewport(document, viewport);
        if (!root) return status_;
        state.toPage = toPage * root->toOuter;
        state.viewport = root->sizes;
    }
    Style parent = Cascade::InitialStyle(), style;
    parent.colour = context.style->colour;
    for (std::size_t i = ancestors.size(); i > 0; --i) {
        if (!TakeElement(ancestors[i - 1])) return status_;
        scene_.GetCascade().Compute(ancestors[i - 1], parent, style);
        parent = style;
    }
    DrawElement(glyph, parent, state);
    if (!scene_.GetCascade().IsWithinBudget()) Do(ORVPrintModelRender::kTooManyRepeats);
    return status_;
}

void Drawing::DrawElement(ElementIndex element, const Style& parent, const DrawState& state) {
    switch (scene_.GetDocument()[element].tag) {
        case Tag::kG:
        case Tag::kA:
        case Tag::kSvg:
        case Tag::kSwitch:
        case Tag::kUse:
        case Tag::kImage:
        case Tag::kText: break;
        default:
            if (!IsShape(scene_.GetDocument()[element].tag)) return;
    }
    if (IsStopped()) return;
    if (!MayDescend(state.depth) || !TakeElement(element)) return;
    Style& style = StyleAt(state.depth);
    scene_.GetCascade().Compute(element, parent, style);
    if (!style.isDisplayed && !(reportsHiddenLayers_ && IsContentLayer(element))) return;
    if (!PassesConditions(scene_.GetDocument(), element)) return;
    DrawStyled(element, style, state);
}

void Drawing::DrawStyled(ElementIndex element, const Style& style, const DrawState& outer) {
    ORVMathAffine2D transform;
    if (!scene_.TransformOf(element, style, outer.viewport, transform)) return;
    DrawState state = outer;
    state.toPage = outer.toPage * transform;
    ++state.depth;
    if (!IsInvertible(state.toPage)) return;

    const ElementIndex around = drawn_;
    NoteDrawn(element);
    const std::size_t mark = ends_.size();
    BeginGroups(element, style);
    if (BeginEffects(element, style, state)) DrawContent(element, style, state);
    EndBack(mark);
    NoteDrawn(around);
}

void Drawing::NoteDrawn(ElementIndex element) {
    if (!followsOrigins_) return;
    drawn_ = element;
    const std::uint32_t number = element == kNoElement ? 0 : element + 1;
    generator_.NoteOrigin({number, number});
}

void Drawing::ReportContentLayers() {
    reportsLayers_ = scene_.GetDocument().HasEditorNames();
    reportsHiddenLayers_ =
        reportsLayers_ && (generator_.GetPowers() & ORVPrintGenerator::kContentLayers) != 0;
}

// Reused content belongs to several layers and is not a layer itself.
bool Drawing::IsContentLayer(ElementIndex element) const {
    const Document& document = scene_.GetDocument();
    return reportsLayers_ && document[element].tag == Tag::kG && uses_.empty() && active_.empty() &&
           document.ValueOf(element, Name::kGroupmode) == "layer" &&
           !document.ValueOf(element, Name::kLabel).empty();
}

void Drawing::BeginGroups(ElementIndex element, const Style& style) {
    const Document& document = scene_.GetDocument();
    const Tag tag = document[element].tag;
    const bool isTarget = !linkTargets_.empty() && linkTargets_.erase(element) > 0;
    const bool isLayer = IsContentLayer(element);
    if (tag != Tag::kA && !isTarget && !isLayer && !(keepsIdentifiers_ && tag == Tag::kG)) return;
    ORVPrintGroup group;
    ORVPrintContentLayer layer;
    if (isLayer) {
        layer.label = document.ValueOf(element, Name::kLabel);
        layer.isShown = style.isDisplayed;
        layer.isLocked = document.ValueOf(element, Name::kInsensitive) == "true";
        group.layer = &layer;
    }
    if (isTarget || keepsIdentifiers_) group.id = document.ValueOf(element, Name::kId);
    group.isLinkTarget = isTarget;
    if (tag == Tag::kA) SetLink(element, group);
    if (!isLayer && group.id.empty() && group.linkURL.empty() && group.linkElementId.empty()) return;
    if (Do(generator_.BeginGroup(group))) ends_.push_back(End::kGroup);
}

void Drawing::SetLink(ElementIndex element, ORVPrintGroup& group) const {
    const Document& document = scene_.GetDocument();
    const std::string_view href = Trim(document.ValueOf(element, Name::kHref));
    if (!href.starts_with('#'))
        group.linkURL = href;
    else if (document.FindByReference(href) != kNoElement)
        group.linkElementId = href.substr(1);
}

void Drawing::BeginLink(ElementIndex element) {
    ORVPrintGroup group;
    SetLink(element, group);
    if (group.linkURL.empty() && group.linkElementId.empty()) return;
    if (Do(generator_.BeginGroup(group))) ends_.push_back(End::kGroup);
}

void Drawing::DrawContent(ElementIndex element, const Style& style, const DrawState& state) {
    switch (scene_.GetDocument()[element].tag) {
        case Tag::kG:
        case Tag::kA: DrawChildren(element, style, state); return;
        case Tag::kSwitch:
            if (const ElementIndex child = ChooseOfSwitch(scene_, element); child != kNoElement)
                DrawElement(child, style, state);
            return;
        case Tag::kSvg: DrawInnerViewport(element, style, state, kNoElement, nullptr); return;
        case Tag::kUse: DrawUse(element, style, state); return;
        case Tag::kImage: DrawImage(element, style, state); return;
        case Tag::kText: TextDrawing(*this).Draw(element, style, state); return;
        default: DrawShape(element, style, state); return;
    }
}

void Drawing::DrawChildren(ElementIndex element, const Style& style, const DrawState& state) {
    const Document& document = scene_.GetDocument();
    for (ElementIndex child = document[element].firstChild; child != kNoElement && !IsStopped();
         child = document[child].nextSibling)
        DrawElement(child, style, state);
}

void Drawing::DrawInnerViewport(ElementIndex element, const Style& style, const DrawState& state,
                                ElementIndex use, const Style* useStyle) {
    DrawState inner = state;
    if (element == Document::kRoot && use == kNoElement) {
        // The page is the root's viewport and clips by itself.
        const auto root = FindRootViewport(scene_.GetDocument(), state.viewport);
        if (!root) return;
        inner.toPage = state.toPage * root->toOuter;
        inner.viewport = root->sizes;
        DrawChildren(element, style, inner);
        return;
    }
    const auto viewport = FindInnerViewport(scene_, element, style, state.viewport, use, useStyle);
    if (!viewport) return;
    inner.toPage = state.toPage * viewport->toOuter;
    inner.viewport = viewport->sizes;
    if (!IsInvertible(inner.toPage)) return;
    const std::size_t mark = ends_.size();
    if (style.hidesOverflow) BeginRectangle(viewport->rectangle, state.toPage);
    DrawChildren(element, style, inner);
    EndBack(mark);
}

void Drawing::DrawUse(ElementIndex element, const Style& style, const DrawState& state) {
    const Document& document = scene_.GetDocument();
    const ElementIndex target = FindUseTarget(document, element);
    // Circular references draw nothing.
    if (target == kNoElement || std::find(uses_.begin(), uses_.end(), target) != uses_.end()) return;
    if (!MayDescend(state.depth) || !TakeElement(target)) return;
    Style& targetStyle = StyleAt(state.depth);
    scene_.GetCascade().Compute(target, style, targetStyle);
    if (!IsShownByUse(document, target, targetStyle)) return;

    ORVMathAffine2D transform;
    if (!scene_.TransformOf(target, targetStyle, state.viewport, transform)) return;
    DrawState inner = state;
    ++inner.depth;
    inner.toPage = state.toPage * transform;
    if (!IsInvertible(inner.toPage)) return;
    const auto measure = [&] { return bounds_.Of(element, style, state.viewport); };
    const ContextPaints context{&style, [&measure] { return measure(); }, state.viewport, state.toPage,
                                state.context};
    if (!state.isWithinClip) inner.context = &context;
    uses_.push_back(target);
    const ElementIndex around = drawn_;
    NoteDrawn(target);
    const std::size_t mark = ends_.size();
    const bool makesViewport = document[target].tag == Tag::kSvg || document[target].tag == Tag::kSymbol;
    const Bounds::DrawnUse before = bounds_.NoteUse({target, element, &style});
    const bool shows = BeginEffects(target, targetStyle, inner);
    bounds_.NoteUse(before);
    if (shows) {
        if (makesViewport)
            DrawInnerViewport(target, targetStyle, inner, element, &style);
        else
            DrawContent(target, targetStyle, inner);
    }
    EndBack(mark);
    NoteDrawn(around);
    uses_.pop_back();
}

}  // namespace svg2
