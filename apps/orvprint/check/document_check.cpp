#include "apps/orvprint/check/document_check.h"

#include "apps/orvprint/check/attribute_checks.h"
#include "apps/orvprint/check/check_context.h"
#include "apps/orvprint/check/document_order.h"
#include "apps/orvprint/check/element_kinds.h"
#include "apps/orvprint/check/image_checks.h"
#include "apps/orvprint/check/page_size.h"
#include "apps/orvprint/check/painting_checks.h"
#include "apps/orvprint/check/reference_checks.h"
#include "apps/orvprint/check/text_checks.h"
#include "apps/orvprint/check/unprinted_elements.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/model/ORVPrtPatternElt.h"
#include "platform/print/ORVPrintModelBoundingBoxComputer.h"
#include "platform/system/ORVRef.h"
#include "plugin/interpreter/element_access.h"
#include "plugin/structure/ORVPrtDefsElt.h"
#include "plugin/structure/SvgDrawState.h"
#include "plugin/structure/definitions.h"
#include "plugin/structure/root_svg.h"
#include "plugin/structure/walker.h"
#include "plugin/style/presentation.h"
#include "plugin/values/colour.h"

namespace {

using enum FindingCode;

// A holder of definitions, which finds what is put into it.
struct OpenHolder {
    ORVPrtDefsElt& primitive;
    std::size_t place;  // among the definitions
};

DefinitionFacts FactsOf(const ORVXmlNode& definition) {
    DefinitionFacts facts;
    facts.element = definition.id;
    facts.hasViewBox =
        definition.id == ElementName::kSymbol && !definition.Value(AttributeName::kViewBox).empty();
    for (const ORVXmlNode* child = definition.firstChild; child; child = child->nextSibling)
        facts.hasPicture |= child->id == ElementName::kImage;
    return facts;
}

// Stands for the primitive that the interpreter would keep. Of what class that is matters with patterns only.
ORVRef<ORVPrtGraphicPrimitiveElt> MakeStandIn(const ORVXmlNode& definition) {
    ORVRef<ORVPrtGraphicPrimitiveElt> primitive;
    if (definition.id == ElementName::kPattern)
        primitive = ORVRef<ORVPrtGraphicPrimitiveElt>(new ORVPrtPatternElt);
    else
        primitive = ORVRef<ORVPrtGraphicPrimitiveElt>(new ORVPrtGroupElt);
    primitive->SetID(ORVUnicodeString(definition.Value(AttributeName::kId)));
    return primitive;
}

// The walk through a document, which goes where the interpreter goes and keeps the state that it would keep.
// Elements are numbered as they come.
class DocumentCheck {
public:
    DocumentCheck(const CheckedDocument& document, Findings& findings)
        : document_(document), path_(document.path), check_(document, findings) {}

    void Run() {
        if (document_.fragments.empty())
            CheckDrawing(*document_.root, false);
        else
            FindFragments(*document_.root);
    }

private:
    NumberedElement Take(const ORVXmlNode& node) { return {&node, next_++}; }

    // Passes over an element and all that it holds.
    void Skip(const ORVXmlNode& node) {
        for (DocumentOrder order(node); order.Next();) ++next_;
    }

    // ---- drawings and their pages ----------------------------------------------------------------------

    // Elements around the drawings of a larger document are not looked at.
    void FindFragments(const ORVXmlNode& node) {
        if (document_.fragments.contains(&node)) return CheckDrawing(node, true);
        const ElementScope scope(check_, *Take(node).node);
        for (const ORVXmlNode* child = node.firstChild; child; child = child->nextSibling)
            FindFragments(*child);
    }

    // The rule by which documents become pages: see BuildModel.
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
        for (const ORVXmlNode* child = root.firstChild; child; child = child->nextSibling) {
            if (child->id == ElementName::kSvg) {
                CheckPage(*child, isEmbedded);
                continue;
            }
            if (isSvg && HasHandler(child->id))
                check_.findings.Note(kNotOnAPage, {child, next_}, {}, {},
                                     "only the svg elements beside it are printed");
            Skip(*child);
        }
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
        CheckAttributes(check_, svg, SvgPlace::kPage, state);
        HandDown(svg, state);
        ApplyContainerPresentation(state, access);
        CheckPageSize(check_.findings, svg, state);
        SizePage(state, access);
        VisitChildren(node, state, nullptr);
    }

    // ---- elements of a page ----------------------------------------------------------------------------

    // Puts into force what an element says of itself and of its content.
    void HandDown(const NumberedElement& element, const SvgDrawState& inherited) {
        check_.inForce.visibility.TakeIn(element, inherited);
        check_.inForce.family.TakeIn(element);
    }

    // `holder` collects the definitions among the children; null where they are drawn.
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

    void VisitUnprinted(const ORVXmlNode& node, bool isInLeaf) {
        CheckUnprinted(check_, {&node, next_}, isInLeaf);
        Skip(node);
    }

    void VisitDefs(const ORVXmlNode& node, SvgDrawState& state) {
        const SvgInheritedStateGuard guard(state);
        const ORVRef<ORVPrtDefsElt> defs(new ORVPrtDefsElt);
        const OpenHolder holder{*defs, state.definitions->Register(*defs)};
        const ElementScope scope(check_, node);
        CheckAttributes(check_, Take(node), SvgPlace::kNested, state);
        ApplyContainerPresentation(state, LightElementAccess(&node));
        MoveSetsTo(*defs, state);
        VisitChildren(node, state, &holder);
    }

    // As if a "defs" without attributes stood around it.
    void VisitLooseDefinition(const ORVXmlNode& node, SvgDrawState& state) {
        const ORVRef<ORVPrtDefsElt> own(new ORVPrtDefsElt);
        const OpenHolder holder{*own, state.definitions->Register(*own)};
        const SvgInheritedStateGuard guard(state);
        MoveSetsTo(*own, state);
        VisitDefinition(node, state, holder);
    }

    // Findable from behind its end on, as the interpreter has it.
    void VisitDefinition(const ORVXmlNode& node, SvgDrawState& state, const OpenHolder& holder) {
        DefinitionFacts facts = FactsOf(node);
        DefinitionFacts* const outer = check_.openDefinition;
        check_.openDefinition = &facts;
        VisitDrawn(node, state);
        check_.openDefinition = outer;

        if (node.Value(AttributeName::kId).empty()) return;
        const ORVRef<ORVPrtGraphicPrimitiveElt> standIn = MakeStandIn(node);
        holder.primitive.AddChild(standIn.get());
        state.definitions->IndexNewChildren(holder.place);
        check_.definitions.Add(*standIn, std::move(facts));
    }

    void VisitDrawn(const ORVXmlNode& node, SvgDrawState& state) {
        const NumberedElement element = Take(node);
        const ElementScope scope(check_, node);
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
        VisitChildren(node, state, nullptr);
    }

    void VisitUse(const NumberedElement& use, SvgDrawState state) {
        ApplyContainerPresentation(state, LightElementAccess(use.node));
        CheckUse(check_, use, state);
        PassLeafChildren(*use.node);
    }

    void VisitLeaf(const NumberedElement& element, SvgDrawState state) {
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

    // What a shape, text, picture or reference holds is not drawn.
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
    std::size_t next_ = 0;  // number of the next element
};

}  // namespace

void CheckDocument(const CheckedDocument& document, Findings& findings) {
    if (document.root) DocumentCheck(document, findings).Run();
}
