#include "apps/orvprint/check/document_check.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <unordered_set>

#include "apps/orvprint/check/attribute_places.h"
#include "apps/orvprint/check/namespaces.h"
#include "apps/orvprint/check/resource_checks.h"
#include "apps/orvprint/check/svg_names.h"
#include "apps/orvprint/check/value_checks.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/model/ORVPrtPatternElt.h"
#include "platform/print/ORVPrintModelBoundingBoxComputer.h"
#include "platform/system/ORVRef.h"
#include "platform/system/number_conversion.h"
#include "plugin/geometry/markers.h"
#include "plugin/interpreter/element_access.h"
#include "plugin/structure/ORVPrtDefsElt.h"
#include "plugin/structure/SvgDrawState.h"
#include "plugin/structure/definitions.h"
#include "plugin/structure/element_attributes.h"
#include "plugin/structure/root_svg.h"
#include "plugin/structure/statuses.h"
#include "plugin/structure/walker.h"
#include "plugin/style/presentation.h"
#include "plugin/style/property_table.h"
#include "plugin/values/colour.h"
#include "plugin/values/length.h"
#include "plugin/values/point_list.h"

namespace {

using enum FindingCode;

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

bool IsContainer(ElementName name) {
    switch (name) {
        case ElementName::kA:
        case ElementName::kDefs:
        case ElementName::kG:
        case ElementName::kMarker:
        case ElementName::kPattern:
        case ElementName::kSvg:
        case ElementName::kSymbol: return true;
        default: return false;
    }
}

// What gets a holder of its own where it stands outside "defs".
bool IsDefinition(ElementName name) {
    return name == ElementName::kMarker || name == ElementName::kPattern || name == ElementName::kSymbol;
}

bool IsDescription(ElementName name) { return name == ElementName::kDesc || name == ElementName::kTitle; }

bool HasVertices(ElementName name) {
    return name == ElementName::kLine || name == ElementName::kPath || name == ElementName::kPolygon ||
           name == ElementName::kPolyline;
}

bool Fills(int drawStyle) { return drawStyle == kDrawFill || drawStyle == kDrawFillAndStroke; }
bool Strokes(int drawStyle) { return drawStyle == kDrawStroke || drawStyle == kDrawFillAndStroke; }

// The next element in document order below `top`; null behind the last one.
const ORVXmlNode* NextElement(const ORVXmlNode* node, std::vector<const ORVXmlNode*>& ancestors) {
    if (node->firstChild) {
        ancestors.push_back(node);
        return node->firstChild;
    }
    while (!ancestors.empty()) {
        if (node->nextSibling) return node->nextSibling;
        node = ancestors.back();
        ancestors.pop_back();
    }
    return nullptr;
}

// The sets that something is drawn with; those that it does not use are the default ones.
struct DrawnSets {
    ORVPrtStrokeAttributes stroke;
    ORVPrtFillAttributes fill;
    ORVPrtTextAttributes text;
    bool operator==(const DrawnSets&) const = default;
};

// Whether something was said of a property, and a reference replaces it by something else.
template <class Attributes, class... Getters>
bool AnyReplaced(const Attributes& own, const Attributes& by, Getters... getters) {
    const Attributes unset;
    return ((((own.*getters)() != (unset.*getters)()) && ((own.*getters)() != (by.*getters)())) || ...);
}

bool IsReplaced(const DrawnSets& own, const SvgDrawState& by) {
    using Stroke = ORVPrtStrokeAttributes;
    using Fill = ORVPrtFillAttributes;
    using Text = ORVPrtTextAttributes;
    return AnyReplaced(own.stroke, by.stroke, &Stroke::GetStrokeColourIndex,
                       &Stroke::GetStrokeColourTransparency, &Stroke::GetStrokeType, &Stroke::GetStrokeWidth,
                       &Stroke::GetStrokeCap, &Stroke::GetStrokeJoin) ||
           AnyReplaced(own.fill, by.fill, &Fill::GetFillColourIndex, &Fill::GetFillColourTransparency,
                       &Fill::GetFillRule, &Fill::GetFillStyle) ||
           AnyReplaced(own.text, by.text, &Text::GetFont, &Text::GetWeight, &Text::GetHeight,
                       &Text::GetAnchor, &Text::GetExtraSpacing, &Text::GetWritingMode);
}

// A definition: what a reference makes of it depends on the paint and fonts that its content has of its own.
struct DefinitionFacts {
    ElementName element = ElementName::kUnknown;
    bool hasPicture = false;  // among its own children
    bool hasViewBox = false;
    std::vector<DrawnSets> sets;
    bool isManifold = false;  // more sets than are kept: a reference cannot have them all

    void Add(DrawnSets one) {
        constexpr std::size_t kMost = 8;
        if (isManifold || std::find(sets.begin(), sets.end(), one) != sets.end()) return;
        if (sets.size() < kMost)
            sets.push_back(std::move(one));
        else
            isManifold = true;
    }
    bool IsReplacedBy(const SvgDrawState& state) const {
        return isManifold || std::any_of(sets.begin(), sets.end(),
                                         [&](const DrawnSets& one) { return IsReplaced(one, state); });
    }
};

// A font family list in force, and where it was said.
struct FamilyInForce {
    std::string_view families;
    PropertySource source = PropertySource::kAttribute;
    const ORVXmlNode* node = nullptr;
    std::size_t index = 0;  // of the element, in document order
};

class DocumentCheck {
public:
    DocumentCheck(const CheckedDocument& document, Findings& findings)
        : document_(document), findings_(findings), path_(document.path) {}

    void Run() {
        if (document_.fragments.empty())
            CheckDrawing(*document_.root, false);
        else
            FindFragments(*document_.root);
    }

private:
    // ---- the document ----------------------------------------------------------------------------------

    // Elements around the drawings of a larger document are not looked at.
    void FindFragments(const ORVXmlNode& node) {
        if (document_.fragments.contains(&node)) return CheckDrawing(node, true);
        ++next_;
        namespaces_.Enter(node);
        for (const ORVXmlNode* child = node.firstChild; child; child = child->nextSibling)
            FindFragments(*child);
        namespaces_.Leave();
    }

    // The rule by which documents become pages: see BuildModel.
    void CheckDrawing(const ORVXmlNode& root, bool isEmbedded) {
        std::size_t pages = 0;
        for (const ORVXmlNode* child = root.firstChild; child; child = child->nextSibling)
            pages += child->id == ElementName::kSvg ? 1 : 0;
        if (root.id == ElementName::kSvg && pages < 2) return CheckPage(root, isEmbedded);

        const std::size_t index = next_++;
        namespaces_.Enter(root);
        if (root.id != ElementName::kSvg && namespaces_.Find(PrefixOf(root.GetName())) == Namespaces::kSvg)
            Note(kPrefixedElement, root, index, {}, {}, "only names without a prefix are read");
        for (const ORVXmlNode* child = root.firstChild; child; child = child->nextSibling) {
            if (child->id == ElementName::kSvg) {
                CheckPage(*child, isEmbedded);
                continue;
            }
            if (root.id == ElementName::kSvg && HasHandler(child->id))
                Note(kNotOnAPage, *child, next_, {}, {}, "only the svg elements beside it are printed");
            Skip(*child);
        }
        namespaces_.Leave();
    }

    void Skip(const ORVXmlNode& node) {
        std::vector<const ORVXmlNode*> ancestors;
        for (const ORVXmlNode* one = &node; one; one = NextElement(one, ancestors)) ++next_;
    }

    void CheckPage(const ORVXmlNode& svg, bool isEmbedded) {
        CollectIdentifiers(svg);
        facts_ = decltype(facts_)();

        const ORVRef<ORVPrtModel> model(new ORVPrtModel);
        const ORVRef<ORVPrtImageElt> page(new ORVPrtImageElt);
        model->AddImage(page.get());
        EnsureColourTable(*page);
        SvgDefinitions definitions;
        ORVPrintModelBoundingBoxComputer boxes;
        SvgDrawState state;
        state.model = model.get();
        state.page = page.get();
        state.definitions = &definitions;
        state.boxes = &boxes;
        state.currentPath = &path_;
        state.embeddedFragment = isEmbedded ? 1 : 0;

        const LightElementAccess element(&svg);
        const std::size_t index = next_++;
        namespaces_.Enter(svg);
        const FamilyInForce families = family_;
        CheckAttributes(svg, index, state, SvgPlace::kPage);
        const Seen seen = seen_;
        NoteVisibility(svg, index, state);
        ApplyContainerPresentation(state, element);
        CheckPageSize(svg, index, state);
        SizePage(state, element);
        NoteFamily(svg, index);
        VisitChildren(svg, state, nullptr);
        family_ = families;
        seen_ = seen;
        namespaces_.Leave();
    }

    void CheckPageSize(const ORVXmlNode& svg, std::size_t index, const SvgDrawState& inForce) {
        SvgDrawState state = inForce;
        const LightElementAccess element(&svg);
        ReadLengthAttribute(state, element, AttributeName::kWidth, state.pageWidth);
        ReadLengthAttribute(state, element, AttributeName::kHeight, state.pageHeight);
        const std::string_view viewBox = svg.Value(AttributeName::kViewBox);
        const double width = state.pageWidth, height = state.pageHeight;
        SizePage(state, element);
        if (viewBox.empty()) {
            for (const AttributeName name : {AttributeName::kWidth, AttributeName::kHeight})
                if (svg.Value(name).find('%') != std::string_view::npos)
                    Note(kPercentageOfNothing, svg, index, GetNameText(name), svg.Value(name),
                         "a page has nothing to be a part of: give its size as a length, or a viewBox");
            return;
        }
        double boxWidth = 0.0, boxHeight = 0.0;
        state.page->GetSize(boxWidth, boxHeight);
        const auto differs = [](double a, double b) { return a > 0.0 && std::abs(a - b) > 0.01 * a; };
        // Of a percentage, the size is the viewer's business.
        const bool isOfViewer = (svg.Value(AttributeName::kWidth).find('%') != std::string_view::npos) ||
                                (svg.Value(AttributeName::kHeight).find('%') != std::string_view::npos);
        if (!isOfViewer && (differs(width, boxWidth) || differs(height, boxHeight)))
            Note(kViewBoxNotScaled, svg, index, "viewBox", viewBox,
                 "the page is " + Size(boxWidth, boxHeight) + ", not " + Size(width, height) +
                     " of width and height");
    }

    static std::string Size(double width, double height) {
        const auto millimetres = [](double units) {
            const double tenths = std::round(units * 254.0 / 90.0);
            char text[48];
            std::snprintf(text, sizeof text, "%.1f", tenths / 10.0);
            return std::string(text);
        };
        return millimetres(width) + " x " + millimetres(height) + " mm";
    }

    // ---- identifiers -----------------------------------------------------------------------------------

    struct Identified {
        const ORVXmlNode* node;
        std::size_t index;
    };

    void CollectIdentifiers(const ORVXmlNode& top) {
        // A new table: emptying takes time by the size that an earlier page has blown it up to.
        identifiers_ = decltype(identifiers_)();
        std::vector<const ORVXmlNode*> ancestors;
        std::size_t index = next_;
        for (const ORVXmlNode* node = &top; node; node = NextElement(node, ancestors), ++index) {
            const std::string_view id = node->Value(AttributeName::kId);
            if (id.empty()) continue;
            const auto [found, isNew] = identifiers_.try_emplace(LowerCase(id), Identified{node, index});
            if (!isNew && HasHandler(node->id) && HasHandler(found->second.node->id))
                Note(kDuplicateId, *node, index, "id", id,
                     "also the identifier of the element in line " +
                         std::to_string(PlaceOf(found->second.index).line) +
                         (found->second.node->Value(AttributeName::kId) == id
                              ? ""
                              : ", since the case of letters does not count"));
        }
    }

    const ORVXmlNode* FindIdentified(std::string_view id) const {
        const auto found = identifiers_.find(LowerCase(id));
        return found == identifiers_.end() ? nullptr : found->second.node;
    }

    // Links lead anywhere in the document.
    bool IsInDocument(std::string_view id) {
        if (FindIdentified(id)) return true;
        if (!hasAllIdentifiers_) {
            hasAllIdentifiers_ = true;
            std::vector<const ORVXmlNode*> ancestors;
            for (const ORVXmlNode* node = document_.root; node; node = NextElement(node, ancestors))
                if (node->Has(AttributeName::kId)) allIdentifiers_.insert(node->Value(AttributeName::kId));
        }
        return allIdentifiers_.contains(id);
    }

    // ---- elements --------------------------------------------------------------------------------------

    // `holder` collects the definitions among the children; null where they are drawn.
    void VisitChildren(const ORVXmlNode& node, SvgDrawState& state, ORVPrtDefsElt* holder) {
        const std::size_t place = state.definitions->GetHolderCount() - 1;
        for (const ORVXmlNode* child = node.firstChild; child; child = child->nextSibling)
            VisitChild(*child, state, holder, place);
    }

    void VisitChild(const ORVXmlNode& node, SvgDrawState& state, ORVPrtDefsElt* holder, std::size_t place) {
        if (IsDescription(node.id)) return Skip(node);
        if (!HasHandler(node.id)) return CheckUnprinted(node, false);
        if (node.id == ElementName::kDefs) return VisitDefs(node, state);
        if (holder) return VisitDefinition(node, state, *holder, place);
        if (!IsDefinition(node.id)) return VisitDrawn(node, state);

        // As if a "defs" without attributes stood around it.
        const ORVRef<ORVPrtDefsElt> own(new ORVPrtDefsElt);
        const std::size_t ownPlace = state.definitions->Register(*own);
        const SvgInheritedStateGuard guard(state);
        ResetSets(*own, state);
        VisitDefinition(node, state, *own, ownPlace);
    }

    static void ResetSets(ORVPrtDefsElt& holder, SvgDrawState& state) {
        holder.SetType(state.drawStyle);
        holder.SetStroke(state.stroke);
        holder.SetFill(state.fill);
        state.stroke = {};
        state.fill = {};
        state.text = {};
    }

    void VisitDefs(const ORVXmlNode& node, SvgDrawState& state) {
        const SvgInheritedStateGuard guard(state);
        const ORVRef<ORVPrtDefsElt> holder(new ORVPrtDefsElt);
        state.definitions->Register(*holder);
        const std::size_t index = next_++;
        namespaces_.Enter(node);
        CheckAttributes(node, index, state, SvgPlace::kNested);
        ApplyContainerPresentation(state, LightElementAccess(&node));
        ResetSets(*holder, state);
        VisitChildren(node, state, holder.get());
        namespaces_.Leave();
    }

    // Keeps a stand-in for the primitive that the interpreter would keep, under the same rules.
    void VisitDefinition(const ORVXmlNode& node, SvgDrawState& state, ORVPrtDefsElt& holder,
                         std::size_t place) {
        DefinitionFacts facts;
        facts.element = node.id;
        facts.hasViewBox = node.id == ElementName::kSymbol && !node.Value(AttributeName::kViewBox).empty();
        for (const ORVXmlNode* child = node.firstChild; child; child = child->nextSibling)
            facts.hasPicture |= child->id == ElementName::kImage;
        DefinitionFacts* const outer = definition_;
        definition_ = &facts;
        VisitDrawn(node, state);
        definition_ = outer;

        const std::string_view id = node.Value(AttributeName::kId);
        if (id.empty()) return;
        ORVRef<ORVPrtGraphicPrimitiveElt> primitive;
        if (node.id == ElementName::kPattern)
            primitive = ORVRef<ORVPrtGraphicPrimitiveElt>(new ORVPrtPatternElt);
        else
            primitive = ORVRef<ORVPrtGraphicPrimitiveElt>(new ORVPrtGroupElt);
        primitive->SetID(ORVUnicodeString(id));
        holder.AddChild(primitive.get());
        state.definitions->IndexNewChildren(place);
        facts_[primitive.get()] = std::move(facts);
    }

    void VisitDrawn(const ORVXmlNode& node, SvgDrawState& state) {
        const std::size_t index = next_++;
        namespaces_.Enter(node);
        const FamilyInForce families = family_;
        CheckAttributes(node, index, state, SvgPlace::kNested);
        NoteFamily(node, index);
        if (IsContainer(node.id) || node.id == ElementName::kUse)
            VisitContainer(node, index, state);
        else
            VisitLeaf(node, index, state);
        family_ = families;
        namespaces_.Leave();
    }

    void VisitContainer(const ORVXmlNode& node, std::size_t index, SvgDrawState& state) {
        const SvgInheritedStateGuard guard(state);
        const Seen seen = seen_;
        NoteVisibility(node, index, state);
        ApplyContainerPresentation(state, LightElementAccess(&node));
        if (node.id == ElementName::kUse) {
            CheckUse(node, index, state);
            VisitLeafChildren(node);
        } else {
            const SvgDefinitionScope scope(*state.definitions);
            const bool scalesOwn = node.id == ElementName::kSvg || node.id == ElementName::kSymbol;
            if (scalesOwn) ++nested_;
            VisitChildren(node, state, nullptr);
            if (scalesOwn) --nested_;
        }
        seen_ = seen;
    }

    // Takes in what an element says of being seen. The draw style that "visible" overrides is kept beside it.
    void NoteVisibility(const ORVXmlNode& node, std::size_t index, const SvgDrawState& inherited) {
        if (node.Value(AttributeName::kDisplay) == "none") seen_.isRemoved = true;
        const std::string_view visibility = node.Value(AttributeName::kVisibility);
        if (visibility == "hidden" || visibility == "collapse") {
            seen_ = {seen_.isRemoved, true, nullptr, 0, 0};
        } else if (visibility == "visible") {
            seen_ = {seen_.isRemoved, false, &node, index, seen_.node ? seen_.paint : inherited.drawStyle};
        }
        if (!seen_.node) return;
        SvgDrawState state = inherited;
        state.drawStyle = seen_.paint;
        ApplyPaint(state, LightElementAccess(&node));
        ApplyStyleAttribute(state, LightElementAccess(&node));
        seen_.paint = state.drawStyle;
    }

    void VisitLeaf(const ORVXmlNode& node, std::size_t index, const SvgDrawState& inherited) {
        SvgDrawState state = inherited;
        const LightElementAccess element(&node);
        const Seen seen = seen_;
        NoteVisibility(node, index, inherited);
        if (node.id == ElementName::kText) {
            ApplyTextPresentation(state, element);
            ApplyTextLayout(state, element);
            ApplyFont(state, element);
            CheckText(node, index, state);
        } else if (node.id == ElementName::kImage) {
            ApplyImagePresentation(state, element);
            CheckImage(node, index, state);
        } else {
            ApplyShapePresentation(state, element,
                                   HasVertices(node.id) ? Vertices::kWithMarkers : Vertices::kWithoutMarkers);
        }
        if (node.id != ElementName::kImage) {
            CheckPainting(node, index, state);
            if (HasVertices(node.id)) CheckMarkers(node, index, state);
        }
        VisitLeafChildren(node);
        seen_ = seen;
    }

    // What a shape, text, picture or reference holds is not drawn.
    void VisitLeafChildren(const ORVXmlNode& node) {
        for (const ORVXmlNode* child = node.firstChild; child; child = child->nextSibling) {
            if (IsDescription(child->id)) {
                Skip(*child);
            } else if (HasHandler(child->id)) {
                Note(kMisplacedElement, *child, next_, {}, {},
                     "is not printed inside " + std::string(node.GetName()));
                Skip(*child);
            } else {
                CheckUnprinted(*child, true);
            }
        }
    }

    void CheckUnprinted(const ORVXmlNode& node, bool isInLeaf) {
        namespaces_.Enter(node);
        const std::string_view prefix = PrefixOf(node.GetName()), space = namespaces_.Find(prefix);
        const bool isSvg = space == Namespaces::kSvg;
        if (!prefix.empty() && isSvg) {
            Note(kPrefixedElement, node, next_, {}, {}, "only names without a prefix are read");
        } else if (!prefix.empty() || (!space.empty() && !isSvg)) {
            findings_.CountForeign();
        } else if (const UnprintedElement* known = FindUnprintedElement(node.GetName())) {
            // A style sheet that is empty says nothing.
            const bool saysNothing = known->name == "style" &&
                                     node.GetText().find_first_not_of(" \t\r\n") == std::string_view::npos;
            if (known->code && !saysNothing)
                Note(*known->code, node, next_, {}, node.GetText(), ExplainUnprinted(*known->code));
        } else {
            Note(kUnknownElement, node, next_, {}, {},
                 isInLeaf ? "is not known" : "is not known, and not printed with all it holds");
        }
        namespaces_.Leave();
        Skip(node);
    }

    static std::string ExplainUnprinted(FindingCode code) {
        switch (code) {
            case kTextSpan: return "its text is not printed";
            case kStyleSheet: return "none of its rules is applied";
            case kScript:
            case kAnimation: return "is not run";
            case kSwitch: return "none of its alternatives is printed";
            case kForeignObject: return "its content is not printed";
            case kSvgFont: return "texts are set in installed fonts";
            default: return "is not printed";
        }
    }

    // ---- what a leaf looks like --------------------------------------------------------------------------

    void CheckPainting(const ORVXmlNode& node, std::size_t index, const SvgDrawState& state) {
        const bool isOpenLine = node.id == ElementName::kLine || node.id == ElementName::kPolyline;
        const int said = seen_.node ? seen_.paint : state.drawStyle;
        PathFacts path;
        if (node.id == ElementName::kPath) {
            MaybeProblem problem = CheckPathData(node.Value(AttributeName::kD), path);
            if (problem) Note(node, index, "d", node.Value(AttributeName::kD), *problem);
        }
        // A path of two points has lost its inside by the time it is painted. Without one, its lines and
        // Beziers stand for themselves; arcs know of fills.
        const bool isBarePath = path.hasRuns && (path.vertices <= 2 || !Fills(state.drawStyle));
        const bool isLine = isOpenLine || isBarePath;
        const bool strokes = isLine || Strokes(state.drawStyle), fills = !isLine && Fills(state.drawStyle);
        if (definition_) {
            DrawnSets sets;
            if (strokes) sets.stroke = state.stroke;
            if (fills) sets.fill = state.fill;
            if (node.id == ElementName::kText) sets.text = state.text;
            definition_->Add(std::move(sets));
        }

        if ((seen_.isRemoved || seen_.isHidden) && (strokes || fills))
            return Note(kHiddenButPrinted, node, index, {}, {},
                        isLine ? "lines are stroked, hidden or not" : "paint of its own turns it on again");
        if (seen_.node && !isLine && ((strokes && !Strokes(said)) || (fills && !Fills(said))))
            NotePaintedVisible();
        if (isLine && !Strokes(said) && (isOpenLine || !Fills(said)))
            Note(kAlwaysStroked, node, index, {}, {}, "has no stroke, and is stroked all the same");
        if (node.id == ElementName::kPolyline && Fills(said) && HasInside(node, state))
            Note(kPolylineNotFilled, node, index, {}, {},
                 "its fill is not printed: say fill='none', or make it a polygon");
        if (isBarePath && Fills(said) && (path.hasCurves || !Strokes(said)))
            Note(kPathNotFilled, node, index, "d", node.Value(AttributeName::kD),
                 Strokes(said) ? "its fill is not printed: divide its curve"
                               : "its fill is not printed, its outline is");
    }

    // Once for each element that says "visible".
    void NotePaintedVisible() {
        if (checkedVisible_.insert(seen_.node).second)
            Note(kPaintedVisible, *seen_.node, seen_.index, "visibility", "visible",
                 "gives what it shows a fill and a stroke that nothing else gives it");
    }

    // Whether the points of a polyline do not all lie on one straight line.
    bool HasInside(const ORVXmlNode& node, const SvgDrawState& state) {
        ReadCoordinateNumbers(state, node.Value(AttributeName::kPoints), numbers_);
        if (numbers_.size() < 6) return false;
        double dx = 0.0, dy = 0.0;
        for (std::size_t i = 2; i + 1 < numbers_.size(); i += 2) {
            const double x = numbers_[i] - numbers_[0], y = numbers_[i + 1] - numbers_[1];
            if (dx == 0.0 && dy == 0.0) {
                dx = x;
                dy = y;
            } else if (std::abs(dx * y - dy * x) > 1e-9 * (std::abs(dx * x) + std::abs(dy * y))) {
                return true;
            }
        }
        return false;
    }

    void CheckMarkers(const ORVXmlNode& node, std::size_t index, const SvgDrawState& state) {
        const SvgMarkerReferences& references = state.markers.Get();
        for (const ORVUnicodeString* id : {&references.start, &references.mid, &references.end}) {
            if (id->IsEmpty()) continue;
            const SvgDefinitions::Definition* found = state.definitions->Find(*id);
            if (!found) {
                // What the attributes name and the document does not have was found there.
                if (FindIdentified(*id))
                    Note(kUnreachableReference, node, index, "marker", *id,
                         "is no definition here: only what stood in defs before, in a group still open, is "
                         "found");
                continue;
            }
            const auto facts = facts_.find(found->primitive);
            if (facts != facts_.end() && facts->second.IsReplacedBy(state))
                Note(kRepaintedDefinition, node, index, "marker", *id,
                     "the marker takes the paint of the line it stands on");
        }
    }

    void CheckText(const ORVXmlNode& node, std::size_t index, const SvgDrawState& state) {
        const std::string_view text = node.GetText();
        if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) return;
        const auto isDeleted = [](char c) { return c == '\n' || c == '\r' || c == '\t'; };
        for (std::size_t i = 1; i + 1 < text.size(); ++i) {
            if (!isDeleted(text[i])) continue;
            std::size_t end = i;
            while (end < text.size() && isDeleted(text[end])) ++end;
            if (end < text.size() && text[i - 1] != ' ' && !isDeleted(text[i - 1]) && text[end] != ' ') {
                Note(kJoinedWords, node, index, {}, text, "put a blank where the line breaks");
                break;
            }
            i = end;
        }
        if (const MaybeProblem problem = resources_.CheckGlyphs(text, state))
            Note(node, index, {}, text, *problem);
        CheckFamily();
    }

    // Only families that some text is set in are looked for, and each place that names them once.
    void CheckFamily() {
        if (!family_.node || !checkedFamilies_.insert(family_.node).second) return;
        if (const MaybeProblem problem = resources_.CheckFamilies(family_.families, family_.source))
            Note(*family_.node, family_.index,
                 family_.source == PropertySource::kStyle ? "style" : "font-family", family_.families,
                 *problem);
    }

    void NoteFamily(const ORVXmlNode& node, std::size_t index) {
        const std::string_view attribute = node.Value(AttributeName::kFontFamily);
        std::string_view families = attribute;
        PropertySource source = PropertySource::kAttribute;
        // On a text the attribute comes last, elsewhere the style.
        if (attribute.empty() || node.id != ElementName::kText) {
            StyleScanner scanner(node.Value(AttributeName::kStyle));
            for (StyleDeclaration declaration; scanner.Next(declaration);)
                if (declaration.name == "font-family" && !declaration.value.empty()) {
                    families = declaration.value;
                    source = PropertySource::kStyle;
                }
        }
        if (!families.empty()) family_ = {families, source, &node, index};
    }

    void CheckImage(const ORVXmlNode& node, std::size_t index, const SvgDrawState& state) {
        const std::string_view reference = node.Value(AttributeName::kXlinkHref);
        if (reference.empty()) {
            if (!node.Find("href"))
                Note(kImageMissing, node, index, {}, {}, "names no picture: give it xlink:href");
            return;
        }
        const PictureFacts& facts = resources_.CheckPicture(state, reference);
        if (facts.problem) return Note(node, index, "xlink:href", reference, *facts.problem);
        double width = 0.0, height = 0.0;
        const LightElementAccess element(&node);
        ReadHorizontalAttribute(state, element, AttributeName::kWidth, width);
        ParseVerticalLength(state, node.Value(AttributeName::kHeight), height);
        const auto ratio = node.Find("preserveAspectRatio");
        if (!(width > 0.0) || !(height > 0.0)) {
            Note(kBadLength, node, index, {}, {}, "has no width and height, and shows nothing");
        } else if (!ratio || !ratio->starts_with("none")) {
            const double stretch = width / height * facts.height / facts.width;
            if (stretch < 0.98 || stretch > 1.02)
                Note(kImageStretched, node, index, "xlink:href", reference,
                     "its " + std::to_string(facts.width) + " x " + std::to_string(facts.height) +
                         " pixels do not have the shape of its width and height");
        }
    }

    void CheckUse(const ORVXmlNode& node, std::size_t index, const SvgDrawState& state) {
        const std::string_view reference = node.Value(AttributeName::kXlinkHref);
        if (reference.empty()) {
            if (!node.Find("href"))
                Note(kBadReference, node, index, {}, {}, "names nothing: give it xlink:href");
            return;
        }
        if (!reference.starts_with('#'))
            return Note(kBadReference, node, index, "xlink:href", reference,
                        "only #id of the same document is read");
        const std::string_view id = reference.substr(1);
        const SvgDefinitions::Definition* found = state.definitions->Find(id);
        if (!found) return NoteNotFound(node, index, "xlink:href", reference, id);
        const auto facts = facts_.find(found->primitive);
        if (facts == facts_.end()) return;
        if (definition_) definition_->Add({state.stroke, state.fill, state.text});
        if (!facts->second.hasViewBox) CheckFitting(node, index, state);
        if (facts->second.IsReplacedBy(state))
            Note(kRepaintedDefinition, node, index, "xlink:href", reference,
                 "all of it takes the stroke, fill and font of this use");
    }

    void CheckFitting(const ORVXmlNode& node, std::size_t index, const SvgDrawState& state) {
        double width = 0.0, height = 0.0;
        ParseHorizontalLength(state, node.Value(AttributeName::kWidth), width);
        ParseVerticalLength(state, node.Value(AttributeName::kHeight), height);
        if (width > 0.0 && height > 0.0)
            Note(kFittedUse, node, index, "width", node.Value(AttributeName::kWidth),
                 "what it places is no symbol with a viewBox, and is scaled all the same");
    }

    void NoteNotFound(const ORVXmlNode& node, std::size_t index, std::string_view attribute,
                      std::string_view value, std::string_view id) {
        if (!FindIdentified(id))
            return Note(kMissingReference, node, index, attribute, value, "the document has no such element");
        Note(kUnreachableReference, node, index, attribute, value,
             "is no definition here: only direct children of defs, symbols, markers and patterns that come "
             "before, in a group still open, are found");
    }

    // ---- attributes ------------------------------------------------------------------------------------

    void CheckAttributes(const ORVXmlNode& node, std::size_t index, const SvgDrawState& state,
                         SvgPlace place) {
        const std::uint64_t effective = GetEffectiveAttributes(node.id, place);
        for (std::uint32_t i = 0; i < node.attributeCount; ++i) {
            const ORVXmlAttribute attribute = node.GetAttribute(i);
            if (const auto name = FindAttributeName(attribute.name))
                CheckKnownAttribute(node, index, *name, attribute, HasEffect(effective, *name), state);
            else
                CheckOtherAttribute(node, index, attribute);
        }
    }

    void CheckKnownAttribute(const ORVXmlNode& node, std::size_t index, AttributeName name,
                             const ORVXmlAttribute& attribute, bool hasEffect, const SvgDrawState& state) {
        if (name == AttributeName::kId || attribute.value.empty()) return;
        if (name == AttributeName::kStyle) return CheckStyle(node, index, attribute, state);
        if (!hasEffect) return CheckWithoutEffect(node, index, name, attribute);

        MaybeProblem problem;
        const std::string_view value = attribute.value;
        switch (name) {
            case AttributeName::kX:
            case AttributeName::kY:
            case AttributeName::kDx:
            case AttributeName::kDy:
                problem = node.id == ElementName::kText ? CheckTextPosition(value) : CheckLength(value);
                if (!problem && name == AttributeName::kDy) CheckShiftUp(node, index, value);
                break;
            case AttributeName::kWidth:
            case AttributeName::kHeight:
            case AttributeName::kCx:
            case AttributeName::kCy:
            case AttributeName::kR:
            case AttributeName::kRx:
            case AttributeName::kRy:
            case AttributeName::kX1:
            case AttributeName::kX2:
            case AttributeName::kY1:
            case AttributeName::kY2:
            case AttributeName::kRefX:
            case AttributeName::kRefY:
            case AttributeName::kMarkerWidth:
            case AttributeName::kMarkerHeight: problem = CheckLength(value); break;
            case AttributeName::kTransform:
            case AttributeName::kPatternTransform: problem = values_.CheckTransform(value); break;
            case AttributeName::kViewBox: problem = CheckViewBox(value); break;
            case AttributeName::kPoints: problem = CheckPoints(value); break;
            case AttributeName::kD: return;  // with the paint, which decides what comes of it
            case AttributeName::kXlinkHref:
                if (node.id == ElementName::kA) CheckLink(node, index, value);
                return;
            case AttributeName::kMarker:
            case AttributeName::kMarkerStart:
            case AttributeName::kMarkerMid:
            case AttributeName::kMarkerEnd: return CheckMarkerReference(node, index, attribute);
            case AttributeName::kTextVersion: {
                int version = 0;
                if (ORVConvertToInt(value, version) != kRead || version < 0)
                    problem = ValueProblem{kBadValue, "is no version: it changes nothing"};
                break;
            }
            default: return CheckPresentation(node, index, attribute.name, value, state, false);
        }
        if (problem) Note(node, index, attribute.name, value, *problem);
        CheckPercentage(node, index, name, attribute, state);
    }

    void CheckShiftUp(const ORVXmlNode& node, std::size_t index, std::string_view value) {
        double shift = 0.0;
        if (ORVConvertToDouble(value, shift) == kRead && shift != 0.0)
            Note(kTextShiftUp, node, index, "dy", value,
                 shift > 0.0 ? "moves the text up" : "moves the text down");
    }

    void CheckPercentage(const ORVXmlNode& node, std::size_t index, AttributeName name,
                         const ORVXmlAttribute& attribute, const SvgDrawState& state) {
        if (attribute.value.find('%') == std::string_view::npos) return;
        // Inside a larger document a page's height is taken off as soon as it is known.
        const bool isOnPage = state.pageWidth > 0.0 || state.pageHeight > 0.0;
        if (state.embeddedFragment == 1 && isOnPage && IsVertical(name))
            return Note(kPercentageOfNothing, node, index, attribute.name, attribute.value,
                        "in a drawing inside a document, the height has no percentages");
        if (nested_ > 0)
            Note(kPercentageInNestedSvg, node, index, attribute.name, attribute.value,
                 "is a part of the page");
    }

    static bool IsVertical(AttributeName name) {
        switch (name) {
            case AttributeName::kY:
            case AttributeName::kDy:
            case AttributeName::kHeight:
            case AttributeName::kCy:
            case AttributeName::kRy:
            case AttributeName::kY1:
            case AttributeName::kY2:
            case AttributeName::kRefY:
            case AttributeName::kMarkerHeight: return true;
            default: return false;
        }
    }

    void CheckWithoutEffect(const ORVXmlNode& node, std::size_t index, AttributeName name,
                            const ORVXmlAttribute& attribute) {
        if (node.id == ElementName::kRect && (name == AttributeName::kRx || name == AttributeName::kRy)) {
            double radius = 0.0;
            if (ORVConvertToDouble(attribute.value, radius) == kRead && radius != 0.0)
                Note(kSquareCorners, node, index, attribute.name, attribute.value,
                     "its corners are not rounded");
            return;
        }
        if (node.id == ElementName::kSvg && (name == AttributeName::kX || name == AttributeName::kY))
            return;  // where a page lies on a screen
        if (node.id == ElementName::kPattern && IsSizeOfTile(node, name)) return;
        if (IsInitialValue(attribute.name, attribute.value)) return;
        // Paint on what has none changes nothing, there or here.
        const bool isOnOpenLine = node.id == ElementName::kLine || node.id == ElementName::kPolyline;
        if (isOnOpenLine && attribute.name.starts_with("fill")) return;
        if (isOnOpenLine && (name == AttributeName::kDisplay || name == AttributeName::kVisibility)) return;
        if (FindProperty(attribute.name) && IsInherited(name) && !IsContainer(node.id)) {
            // Texts' properties on shapes, and the like: SVG has no use for them there either.
            if (node.id != ElementName::kUse && node.id != ElementName::kImage) return;
        }
        Note(kAttributeWithoutEffect, node, index, attribute.name, attribute.value,
             "has no effect on " + std::string(node.GetName()));
    }

    // A pattern repeats as its picture is large: no harm where its size says the same.
    bool IsSizeOfTile(const ORVXmlNode& pattern, AttributeName name) {
        const bool isWidth = name == AttributeName::kWidth;
        double size = 0.0;
        if (ParseLength(SvgDrawState(), pattern.Value(name), size) != kRead) return false;
        if (name == AttributeName::kX || name == AttributeName::kY) return size == 0.0;
        if (!isWidth && name != AttributeName::kHeight) return false;
        SvgDrawState state;
        state.currentPath = &path_;
        for (const ORVXmlNode* child = pattern.firstChild; child; child = child->nextSibling) {
            if (child->id != ElementName::kImage || !child->Has(AttributeName::kXlinkHref)) continue;
            const PictureFacts& facts =
                resources_.CheckPicture(state, child->Value(AttributeName::kXlinkHref));
            if (std::abs(size - (isWidth ? facts.tileWidth : facts.tileHeight)) > 0.01 * size) return false;
        }
        return true;
    }

    // Properties that SVG passes down and that mean nothing on the shapes they are often written on.
    static bool IsInherited(AttributeName name) {
        switch (name) {
            case AttributeName::kAlignmentBaseline:
            case AttributeName::kFontStyle:
            case AttributeName::kDisplay:
            case AttributeName::kVisibility:
            case AttributeName::kOpacity: return false;
            default: return true;
        }
    }

    void CheckOtherAttribute(const ORVXmlNode& node, std::size_t index, const ORVXmlAttribute& attribute) {
        const std::string_view name = attribute.name;
        if (name == "href") {
            if (!node.Has(AttributeName::kXlinkHref))
                Note(kHrefWithoutPrefix, node, index, name, attribute.value, "write xlink:href");
            return;
        }
        if (const PropertyRow* row = FindProperty(name))
            return CheckPropertyWithoutEffect(node, index, name, row->name, attribute.value);
        switch (FindAttributeRole(name)) {
            case AttributeRole::kSilent: return;
            case AttributeRole::kScript:
                return Note(kScript, node, index, name, attribute.value, "is not run");
            case AttributeRole::kSvg: return CheckUnreadAttribute(node, index, attribute);
            case AttributeRole::kUnknown: break;
        }
        const std::string_view prefix = PrefixOf(name);
        if (prefix.empty())
            return Note(kUnknownAttribute, node, index, name, attribute.value, "is not known");
        if (namespaces_.Find(prefix) == Namespaces::kXlink && prefix != "xlink")
            return Note(kPrefixedAttribute, node, index, name, attribute.value,
                        "write xlink:" + std::string(LocalNameOf(name)));
        findings_.CountForeign();
    }

    void CheckUnreadAttribute(const ORVXmlNode& node, std::size_t index, const ORVXmlAttribute& attribute) {
        if (IsInitialValue(attribute.name, attribute.value)) return;
        if (node.id == ElementName::kMarker && attribute.name == "orient")
            return Note(kMarkerNotTurned, node, index, attribute.name, attribute.value,
                        "stands as it is drawn on every vertex");
        // Its picture tells whether that matters.
        if (attribute.name == "preserveAspectRatio" && node.id == ElementName::kImage) return;
        if (attribute.name == "preserveAspectRatio" && attribute.value.starts_with("xMidYMid") &&
            attribute.value.find("slice") == std::string_view::npos)
            return;
        Note(kAttributeWithoutEffect, node, index, attribute.name, attribute.value, "is not read");
    }

    void CheckLink(const ORVXmlNode& node, std::size_t index, std::string_view value) {
        if (value.starts_with('#') && !IsInDocument(value.substr(1)))
            Note(kMissingReference, node, index, "xlink:href", value, "the document has no such element");
    }

    void CheckMarkerReference(const ORVXmlNode& node, std::size_t index, const ORVXmlAttribute& attribute) {
        SvgDrawState state;  // takes the identifier out of the value as the interpreter does
        ApplyMarkerReference(state, MarkerPlace::kStart, attribute.value);
        const std::string_view id = state.markers.Get().start;
        if (id.empty() || id == "none" || FindIdentified(id)) return;
        Note(kMissingReference, node, index, attribute.name, attribute.value,
             "the document has no such element");
    }

    // ---- properties ------------------------------------------------------------------------------------

    void CheckStyle(const ORVXmlNode& node, std::size_t index, const ORVXmlAttribute& attribute,
                    const SvgDrawState& state) {
        StyleScanner scanner(attribute.value);
        for (StyleDeclaration declaration; scanner.Next(declaration);) {
            if (declaration.name.empty()) {
                if (declaration.text.find_first_not_of(' ') != std::string_view::npos)
                    Note(kBrokenDeclaration, node, index, "style", declaration.text, "is not read");
            } else if (const PropertyRow* row = FindProperty(declaration.name); !row) {
                if (!IsSilentProperty(declaration.name) &&
                    !IsInitialValue(declaration.name, declaration.value))
                    Note(kUnknownProperty, node, index, "style", declaration.text, "is not known");
            } else if (!row->apply) {
                CheckPropertyWithoutEffect(node, index, "style", row->name, declaration.value);
            } else if (node.id != ElementName::kImage && !declaration.value.empty()) {
                CheckPresentation(node, index, "style", declaration.value, state, true, row);
            }
        }
        std::string_view rest = scanner.GetRest();
        if (rest.find_first_not_of("; ") != std::string_view::npos)
            Note(kLostDeclarations, node, index, "style", rest, "is lost behind the ;");
    }

    void CheckPropertyWithoutEffect(const ORVXmlNode& node, std::size_t index, std::string_view attribute,
                                    std::string_view property, std::string_view value) {
        if (IsInitialValue(property, value) || IsSilentProperty(property)) return;
        const bool isInStyle = attribute == "style";
        const std::string said =
            isInStyle ? std::string(property) + ":" + Excerpt(value) : std::string(value);
        if (isInStyle &&
            (property == "display" || property == "visibility" || property.starts_with("marker")))
            return Note(kAttributeOnlyProperty, node, index, attribute, said,
                        "has no effect in style: write it as an attribute");
        // On shapes, what is about texts says nothing anyway.
        const bool isAboutTexts = property.starts_with("font") || property.starts_with("text-") ||
                                  property.find("baseline") != property.npos;
        if (isAboutTexts && !IsContainer(node.id) && node.id != ElementName::kText &&
            node.id != ElementName::kUse)
            return;
        Note(GetIgnoredPropertyCode(property), node, index, attribute, said, "has no effect");
    }

    void CheckPresentation(const ORVXmlNode& node, std::size_t index, std::string_view attribute,
                           std::string_view value, const SvgDrawState& state, bool isInStyle,
                           const PropertyRow* row = nullptr) {
        if (!row) row = FindProperty(attribute);
        if (!row || !row->apply) return;  // "display" and "visibility" take any word
        MaybeProblem problem;
        if (row->name == "fill" || row->name == "stroke")
            problem = CheckPaint(node, row->name == "fill", value, state);
        else if (row->name != "font-family")  // with the texts that are set in it
            problem = values_.CheckProperty(*row, value, isInStyle);
        const std::string said =
            isInStyle ? std::string(row->name) + ":" + Excerpt(value) : std::string(value);
        if (problem) return Note(node, index, attribute, said, *problem);
        if (row->name == "opacity" && (IsContainer(node.id) || node.id == ElementName::kUse)) {
            double opacity = 1.0;
            if (ORVConvertToDouble(value, opacity) == kRead && opacity < 1.0)
                Note(kGroupOpacity, node, index, attribute, said,
                     "each part of the group is blended by itself");
        }
    }

    MaybeProblem CheckPaint(const ORVXmlNode& node, bool isFill, std::string_view value,
                            const SvgDrawState& state) {
        if (value == "none" || value == "currentColor" || value == "inherit") return std::nullopt;
        if (value.find("url") == value.npos) return values_.CheckColour(value);

        constexpr std::string_view kPrefix = "url(#";
        const std::size_t close = value.find(')');
        if (!value.starts_with(kPrefix) || close == value.npos)
            return ValueProblem{kBadReference, "only url(#id) is read: the colour stays as it was"};
        std::string id(value.substr(kPrefix.size()));
        std::erase(id, ')');
        const ORVXmlNode* target = FindIdentified(std::string_view(id));
        if (!target && close + 1 < value.size())
            return FindIdentified(value.substr(kPrefix.size(), close - kPrefix.size()))
                       ? ValueProblem{kBadReference,
                                      "what follows url(#id) makes it unreadable: the colour "
                                      "stays as it was"}
                       : ValueProblem{kMissingReference, "the document has no such element"};
        if (!target) return ValueProblem{kMissingReference, "the document has no such element"};
        if (target->GetName().ends_with("Gradient") || target->GetName() == "meshgradient")
            return ValueProblem{kGradient, "is a gradient: the colour stays as it was"};
        if (!isFill)
            return ValueProblem{kBadReference, "strokes have no patterns: the colour stays as it was"};
        const SvgDefinitions::Definition* found = state.definitions->Find(id);
        if (!found)
            return ValueProblem{
                kUnreachableReference,
                "is no definition here: only what comes before, in a group still open, is found"};
        const auto facts = facts_.find(found->primitive);
        if (facts == facts_.end()) return std::nullopt;
        if (facts->second.element != ElementName::kPattern)
            return ValueProblem{kBadReference, "is no pattern: the colour stays as it was"};
        if (!facts->second.hasPicture && node.id != ElementName::kPattern)
            return ValueProblem{kPatternWithoutImage, "the pattern holds no picture of its own"};
        return std::nullopt;
    }

    // ---- noting ----------------------------------------------------------------------------------------

    ORVXmlPlace PlaceOf(std::size_t index) const {
        return document_.places && index < document_.places->size() ? (*document_.places)[index]
                                                                    : ORVXmlPlace{};
    }

    void Note(FindingCode code, const ORVXmlNode& node, std::size_t index, std::string_view attribute,
              std::string_view value, std::string message) {
        if (!findings_.Count(code)) return;
        ORVXmlPlace place = PlaceOf(index);
        if (!attribute.empty() && place.line > 0)
            place = FindAttributePlace(document_.text, place, attribute);
        findings_.Add({code, place.line, place.column, Excerpt(node.GetName()), Excerpt(attribute),
                       Excerpt(value), std::move(message)});
    }

    void Note(const ORVXmlNode& node, std::size_t index, std::string_view attribute, std::string_view value,
              const ValueProblem& problem) {
        Note(problem.code, node, index, attribute, value, problem.message);
    }

    const CheckedDocument& document_;
    Findings& findings_;
    const ORVUnicodeString path_;
    Namespaces namespaces_;
    ValueChecks values_;
    ResourceChecks resources_;

    std::size_t next_ = 0;    // number of the next element, in document order
    std::size_t nested_ = 0;  // drawings and symbols around, inside the page
    FamilyInForce family_;
    struct Seen {
        bool isRemoved = false;            // by "display"
        bool isHidden = false;             // by "visibility"
        const ORVXmlNode* node = nullptr;  // the element that says "visible"; null when none does
        std::size_t index = 0;             // its number
        int paint = 0;                     // the draw style that there would be without it
    } seen_;
    std::unordered_set<const ORVXmlNode*> checkedVisible_;
    std::unordered_set<const ORVXmlNode*> checkedFamilies_;

    std::unordered_map<std::string, Identified> identifiers_;  // of the page, in lower case
    std::unordered_set<std::string_view> allIdentifiers_;      // of the document
    bool hasAllIdentifiers_ = false;
    std::vector<double> numbers_;            // of the points that are looked at
    DefinitionFacts* definition_ = nullptr;  // the definition that is being read
    std::unordered_map<const ORVPrtGraphicPrimitiveElt*, DefinitionFacts> facts_;
};

}  // namespace

void CheckDocument(const CheckedDocument& document, Findings& findings) {
    if (document.root) DocumentCheck(document, findings).Run();
}
