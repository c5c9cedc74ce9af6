// SPDX-License-Identifier: Apache-2.0
#include "library/check/document_check.h"

#include "interpreters/svg/definitions/ORVPrtDefsElt.h"
#include "interpreters/svg/definitions/definitions.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_access.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/structure/root_svg.h"
#include "interpreters/svg/structure/walker.h"
#include "interpreters/svg/style/presentation.h"
#include "interpreters/svg/values/colour.h"
#include "interpreters/svg/values/view_box.h"
#include "library/check/attribute_checks.h"
#include "library/check/check_context.h"
#include "library/check/clip_checks.h"
#include "library/check/document_order.h"
#include "library/check/element_kinds.h"
#include "library/check/image_checks.h"
#include "library/check/page_size.h"
#include "library/check/painting_checks.h"
#include "library/check/reference_checks.h"
#include "library/check/text_checks.h"
#include "library/check/unprinted_elements.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/model/ORVPrtPatternElt.h"
#include "platform/model/ORVPrtViewBox.h"
#include "platform/print/ORVPrintModelBoundingBoxComputer.h"
#include "platform/system/ORVRef.h"

namespace {

using enum FindingCode;

// A holder of definitions, which indexes the children added to it.
struct OpenHolder {
    ORVPrtDefsElt& primitive;
    std::size_t place;  // index among the definitions
};

DefinitionFacts FactsOf(const ORVXmlNode& definition) {
    DefinitionFacts facts;
    facts.element = definition.id;
    facts.node = &definition;
    facts.hasViewBox =
        definition.id == ElementName::kSymbol && !definition.Value(AttributeName::kViewBox).empty();
    for (const ORVXmlNode* child = definition.firstChild; child; child = child->nextSibling)
        facts.hasImage |= child->id == ElementName::kImage;
    return facts;
}

// Other programs clip symbols to their viewBox.
DrawnRegion RegionOf(const ORVXmlNode& definition) {
    DrawnRegion region;
    MeantStyle own;
    own.TakeIn(definition);
    ORVPrtViewBox box;
    if (definition.id != ElementName::kSymbol || !own.isClipped ||
        ReadViewBox(definition.Value(AttributeName::kViewBox), box) != kRead)
        return region;
    region.region.Add({box.minX, box.minY});
    region.region.Add({box.minX + box.width, box.minY + box.height});
    region.cuts = true;
    return region;
}

// A stand-in for the primitive that the interpreter would create. Its class matters only for patterns.
ORVRef<ORVPrtGraphicPrimitiveElt> MakeStandIn(const ORVXmlNode& definition) {
    ORVRef<ORVPrtGraphicPrimitiveElt> primitive;
    if (definition.id == ElementName::kPattern)
        primitive = ORVRef<ORVPrtGraphicPrimitiveElt>(new ORVPrtPatternElt);
    else
        primitive = ORVRef<ORVPrtGraphicPrimitiveElt>(new ORVPrtGroupElt);
    primitive->SetID(ORVUnicodeString(definition.Value(AttributeName::kId)));
    return primitive;
}

// Whether a page has a physical size but no viewBox, so that its content is not scaled to it.
bool HasPhysicalSize(const ORVXmlNode& svg) {
    return svg.Value(AttributeName::kViewBox).empty() && (HasPhysicalUnit(svg.Value(AttributeName::kWidth)) ||
                                                          HasPhysicalUnit(svg.Value(AttributeName::kHeight)));
}

// Scope of the walk through a definition: results are recorded in its facts, and it inherits nothing.
class DefinitionWalk {
public:
    DefinitionWalk(CheckContext& check, DefinitionFacts& facts, DrawnRegion& region)
        : check_(check), region_(check.region), definition_(check.openDefinition) {
        check.around.push_back(check.inForce);
        check.openDefinition = &facts;
        check.region = &region;
        check.inForce.toRegion = {};
        check.inForce.meant.BeginDefinition();
    }
    ~DefinitionWalk() {
        check_.inForce = check_.around.back();
        check_.around.pop_back();
        check_.region = region_;
        check_.openDefinition = definition_;
    }
    DefinitionWalk(const DefinitionWalk&) = delete;
    DefinitionWalk& operator=(const DefinitionWalk&) = delete;

private:
    CheckContext& check_;
    DrawnRegion* const region_;
    DefinitionFacts* const definition_;
};

// Prevents inlining: the walk recurses to the depth of the document, so variables that only leaves or
// definitions need must not enlarge every stack frame.
#define ORV_OWN_FRAME __attribute__((noinline))

// Walks a document like the interpreter, maintaining the same state, and numbers the elements in document
// order.
class DocumentCheck {
public:
    DocumentCheck(const CheckedDocument& document, Findings& findings)
        : document_(document), path_(document.path), check_(document, findings) {}

    void Run() {
        CheckProlog();
        if (document_.fragments.empty())
            CheckDrawing(*document_.root, false);
        else
            FindFragments(*document_.root);
    }

private:
    NumberedElement Take(const ORVXmlNode& node) { return {&node, next_++}; }

    // Skips an element and its descendants.
    void Skip(const ORVXmlNode& node) {
        for (DocumentOrder order(node); order.Next();) ++next_;
    }

    // Style sheets may also be linked before the root, where the parsed document has no nodes.
    void CheckProlog() {
        if (!document_.places || document_.places->empty()) return;
        const std::string_view prolog = document_.text.substr(0, document_.places->front().offset);
        if (prolog.find("<?xml-stylesheet") != prolog.npos)
            check_.findings.Note(kStyleSheet, {document_.root, 0}, {}, "<?xml-stylesheet?>",
                                 "none of its rules is applied");
    }

    // ---- drawings and their pages ----------------------------------------------------------------------

    // Elements around embedded drawings are not checked.
    void FindFragments(const ORVXmlNode& node) {
        if (document_.fragments.contains(&node)) return CheckDrawing(node, true);
        const ElementScope scope(check_, *Take(node).node);
        for (const ORVXmlNode* child = node.firstChild; child; child = child->nextSibling)
            FindFragments(*child);
    }

    // How documents are divided into pages: see BuildModel.
    void CheckDrawing(const ORVXmlNode& root, bool isEmbedded) {
        std::size_t pages = 0;
        for (const ORVXmlNode* child = root.firstChild; child; child = child->nextSibling)
            pages += child->id == ElementName::kSvg ? 1 : 0;
        const bool isSvg = root.id == ElementName::kSvg;
        if (isSvg && pages < 2) return CheckPage(root, isEmbedded);

        const NumberedElement element = Take(root);
        const ElementScope scope(check_, root);
        if (!isSvg && check_.namespaces.Find(PrefixOf(root.GetName())) == Namespaces::kSvg)
            check_.findings.Note(kPrefixedElement, element, {}, {}, "only names without a prefix are read");
        bool hasOthers = false;
        for (const ORVXmlNode* child = root.firstChild; child; child = child->nextSibling) {
            if (child->id == ElementName::kSvg) {
                CheckPage(*child, isEmbedded);
                continue;
            }
            hasOthers |= isSvg && HasHandler(child->id);
            if (isSvg && HasHandler(child->id))
                check_.findings.Note(kNotOnAPage, {child, next_}, {}, {},
                                     "only its sibling svg elements are printed");
            Skip(*child);
        }
        if (isSvg && !hasOthers)
            check_.findings.Note(
                kPageSet, element, {}, {},
                "holds " + std::to_string(pages) + " svg elements, each of which becomes a page");
    }

    void CheckPage(const ORVXmlNode& node, bool isEmbedded) {
        const NumberedElement svg = Take(node);
        check_.identifiers.ReadPage(svg, check_.findings);
        check_.definitions = {};

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

        const ElementScope scope(check_, node);
        const LightElementAccess access(&node);
        check_.page = svg;
        check_.isPageInUnits = HasPhysicalSize(node);
        check_.isUnitScaleTold = false;
        CheckNamespace(svg);
        CheckAttributes(check_, svg, SvgPlace::kPage, state);
        HandDown(svg, state);
        ApplyContainerPresentation(state, access);
        CheckPageSize(check_.findings, svg, state);
        SizePage(state, access);
        check_.inForce.isMoved = !(state.page->GetOrigin() == ORVMathPoint2D{});
        VisitChildren(node, state, nullptr);
    }

    // ---- elements of a page ----------------------------------------------------------------------------

    // Applies what an element specifies for itself and its content.
    void HandDown(const NumberedElement& element, const SvgDrawState& inherited) {
        check_.inForce.visibility.TakeIn(element, inherited);
        check_.inForce.family.TakeIn(element);
        check_.inForce.meant.TakeIn(*element.node);
    }

    // The interpreter ignores namespaces. Documents without any are not checked.
    void CheckNamespace(const NumberedElement& element) {
        const std::string_view space = check_.namespaces.Find({});
        if (check_.inForce.isForeign || space == Namespaces::kSvg) return;
        if (space.empty() && !element.node->Find("xmlns")) return;
        check_.inForce.isForeign = true;
        check_.findings.Note(kForeignNamespace, element, "xmlns", space,
                             "is not an SVG element, but is printed");
    }

    // @param holder  collects the definitions among the children; null if these are drawn
    void VisitChildren(const ORVXmlNode& node, SvgDrawState& state, const OpenHolder* holder) {
        for (const ORVXmlNode* child = node.firstChild; child; child = child->nextSibling)
            VisitChild(*child, state, holder);
    }

    void VisitChild(const ORVXmlNode& node, SvgDrawState& state, const OpenHolder* holder) {
        if (IsDescription(node.id))
            Skip(node);
        else if (!HasHandler(node.id))
            VisitUnprinted(node, false);
        else if (node.id == ElementName::kDefs)
            VisitDefs(node, state);
        else if (holder)
            VisitDefinition(node, state, *holder);
        else if (IsDefinition(node.id))
            VisitLooseDefinition(node, state);
        else
            VisitDrawn(node, state);
    }

    ORV_OWN_FRAME void VisitUnprinted(const ORVXmlNode& node, bool isInLeaf) {
        CheckUnprinted(check_, {&node, next_}, isInLeaf);
        Skip(node);
    }

    ORV_OWN_FRAME void VisitDefs(const ORVXmlNode& node, SvgDrawState& state) {
        const SvgInheritedStateGuard guard(state);
        const ORVRef<ORVPrtDefsElt> defs(new ORVPrtDefsElt);
        const OpenHolder holder{*defs, state.definitions->Register(*defs)};
        const ElementScope scope(check_, node);
        CheckAttributes(check_, Take(node), SvgPlace::kNested, state);
        ApplyContainerPresentation(state, LightElementAccess(&node));
        MoveSetsTo(*defs, state);
        VisitChildren(node, state, &holder);
    }

    // Treated as if it were enclosed in a "defs" without attributes.
    ORV_OWN_FRAME void VisitLooseDefinition(const ORVXmlNode& node, SvgDrawState& state) {
        const ORVRef<ORVPrtDefsElt> own(new ORVPrtDefsElt);
        const OpenHolder holder{*own, state.definitions->Register(*own)};
        const SvgInheritedStateGuard guard(state);
        MoveSetsTo(*own, state);
        VisitDefinition(node, state, holder);
    }

    // As in the interpreter, a definition can be found only after its end.
    ORV_OWN_FRAME void VisitDefinition(const ORVXmlNode& node, SvgDrawState& state,
                                       const OpenHolder& holder) {
        DefinitionFacts facts = FactsOf(node);
        DrawnRegion region = RegionOf(node);
        {
            const DefinitionWalk walk(check_, facts, region);
            VisitDrawn(node, state);
        }
        facts.content = region.content;
        facts.isCutElsewhere = region.isOutside;

        if (node.Value(AttributeName::kId).empty()) return;
        const ORVRef<ORVPrtGraphicPrimitiveElt> standIn = MakeStandIn(node);
        holder.primitive.AddChild(standIn.get());
        state.definitions->IndexNewChildren(holder.place);
        check_.definitions.Add(*standIn, std::move(facts));
    }

    void VisitDrawn(const ORVXmlNode& node, SvgDrawState& state) {
        const NumberedElement element = Take(node);
        const ElementScope scope(check_, node);
        check_.inForce.isMoved |= node.Has(AttributeName::kTransform);
        CheckNamespace(element);
        CheckAttributes(check_, element, SvgPlace::kNested, state);
        HandDown(element, state);
        if (node.id == ElementName::kUse)
            VisitUse(element, state);
        else if (IsContainer(node.id))
            VisitContainer(node, state);
        else
            VisitLeaf(element, state);
    }

    void VisitContainer(const ORVXmlNode& node, SvgDrawState& state) {
        const SvgInheritedStateGuard guard(state);
        const SvgDefinitionScope definitions(*state.definitions);
        ApplyContainerPresentation(state, LightElementAccess(&node));
        if (node.id == ElementName::kSvg || node.id == ElementName::kSymbol) check_.inForce.isNested = true;
        if (node.id == ElementName::kSvg) return VisitNested(node, state);
        // Among definitions, only groups and links have a transform.
        const std::string_view transform = node.Value(AttributeName::kTransform);
        if (check_.region && (node.id == ElementName::kG || node.id == ElementName::kA))
            check_.inForce.toRegion = check_.inForce.toRegion * check_.values.ReadTransform(transform);
        VisitChildren(node, state, nullptr);
    }

    ORV_OWN_FRAME void VisitNested(const ORVXmlNode& node, SvgDrawState& state) {
        const NestedRegion nested = ReadNestedRegion(node, state);
        DrawnRegion inner{
            .region = nested.region, .cuts = check_.inForce.meant.isClipped, .isTold = true, .content = {}};
        DrawnRegion* const outer = check_.region;
        const ORVMathAffine2D map = check_.inForce.toRegion * nested.map;
        check_.region = &inner;
        check_.inForce.toRegion = {};
        check_.inForce.isMoved = true;
        VisitChildren(node, state, nullptr);
        check_.region = outer;
        if (!outer) return;
        const ORVMathBox2D drawn = MapBox(map, inner.content);
        outer->content.Add({drawn.xMin, drawn.yMin});
        outer->content.Add({drawn.xMax, drawn.yMax});
    }

    ORV_OWN_FRAME void VisitUse(const NumberedElement& use, SvgDrawState state) {
        ApplyContainerPresentation(state, LightElementAccess(use.node));
        CheckUse(check_, use, state);
        PassLeafChildren(*use.node);
    }

    ORV_OWN_FRAME void VisitLeaf(const NumberedElement& element, SvgDrawState state) {
        const ElementName name = element.node->id;
        const LightElementAccess access(element.node);
        if (name == ElementName::kText) {
            ApplyTextPresentation(state, access);
            ApplyTextLayout(state, access);
            ApplyFont(state, access);
            CheckText(check_, element, state);
            CheckPainting(check_, element, state);
        } else if (name == ElementName::kImage) {
            ApplyImagePresentation(state, access);
            CheckImage(check_, element, state);
        } else if (HasVertices(name)) {
            ApplyShapePresentation(state, access, Vertices::kWithMarkers);
            CheckPainting(check_, element, state);
            CheckMarkers(check_, element, state);
        } else {
            ApplyShapePresentation(state, access, Vertices::kWithoutMarkers);
            CheckPainting(check_, element, state);
        }
        PassLeafChildren(*element.node);
    }

    // The content of a shape, text, image or reference is not drawn.
    void PassLeafChildren(const ORVXmlNode& leaf) {
        for (const ORVXmlNode* child = leaf.firstChild; child; child = child->nextSibling) {
            if (!IsDescription(child->id) && !HasHandler(child->id)) {
                VisitUnprinted(*child, true);
                continue;
            }
            if (!IsDescription(child->id))
                check_.findings.Note(kMisplacedElement, {child, next_}, {}, {},
                                     "is not printed inside " + std::string(leaf.GetName()));
            Skip(*child);
        }
    }

    const CheckedDocument& document_;
    const ORVUnicodeString path_;
    CheckContext check_;
    std::size_t next_ = 0;  // index of the next element
};

}  // namespace

void CheckDocument(const CheckedDocument& document, Findings& findings) {
    if (document.root) DocumentCheck(document, findings).Run();
}
