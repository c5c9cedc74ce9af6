// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/structure/groups.h"

#include <utility>

#include "interpreters/svg/definitions/definitions.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_texts.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/structure/walker.h"
#include "interpreters/svg/style/presentation.h"
#include "interpreters/svg/values/transform_list.h"
#include "platform/model/ORVPrtGroupElt.h"

namespace {

template <SvgElementAccess Element>
void ReadLink(const Element& element, ORVPrtGroupElt& group) {
    ORVPrtGroupAttributes attributes = group.GetGroupAttributes();
    ORVPrintLinkURI link = attributes.GetLinkURI();
    const AttributeValue target = element.Attribute(AttributeName::kXlinkHref);
    if (target.WasRead() && !target.text.empty()) {
        if (target.text.starts_with('#')) {
            link.SetElementId(ORVUnicodeString(target.text.substr(1)));
        } else {
            link.SetBaseURL(ORVUnicodeString(target.text));
        }
    }
    const std::string_view show = element.Attribute(AttributeName::kXlinkShow).text;
    if (show == "new") link.SetLinkShow(kLinkShowNew);
    if (show == "replace") link.SetLinkShow(kLinkShowReplace);

    attributes.SetLinkURI(std::move(link));
    group.SetGroupAttributes(std::move(attributes));
}

enum class GroupKind { kPlain, kLink };

template <SvgElementAccess Element>
int FillGroup(SvgDrawState& state, const Element& element, ORVPrtGroupElt* group, GroupKind kind) {
    if (!group) return kUnusable;
    const SvgInheritedStateGuard guard(state);
    const SvgDefinitionScope scope(*state.definitions);

    ApplyContainerPresentation(state, element);
    ReadIdentifier(element, *group);
    if (kind == GroupKind::kLink) ReadLink(element, *group);
    ApplyGroupTransforms(state, element, *group);
    WalkChildren(state, element, *group);
    return kDone;
}

}  // namespace

template <SvgElementAccess Element>
void ApplyGroupTransforms(const SvgDrawState& state, const Element& element,
                          ORVPrtGraphicPrimitiveElt& group) {
    for (const AttributeName name : {AttributeName::kPatternTransform, AttributeName::kTransform}) {
        const std::string_view transform = element.Attribute(name).text;
        if (!transform.empty()) ApplyTransformList(state, transform, &group);
    }
}

template <SvgElementAccess Element>
int HandleGroup(SvgDrawState& state, const Element& element, ORVPrtGroupElt* group,
                ORVPrtGraphicPrimitiveElt& /*container*/) {
    return FillGroup(state, element, group, GroupKind::kPlain);
}

template <SvgElementAccess Element>
int HandleLink(SvgDrawState& state, const Element& element, ORVPrtGroupElt* group,
               ORVPrtGraphicPrimitiveElt& /*container*/) {
    return FillGroup(state, element, group, GroupKind::kLink);
}

#define ORV_INSTANTIATE_GROUPS(Element)                                                                   \
    template void ApplyGroupTransforms(const SvgDrawState&, const Element&, ORVPrtGraphicPrimitiveElt&);  \
    template int HandleGroup(SvgDrawState&, const Element&, ORVPrtGroupElt*, ORVPrtGraphicPrimitiveElt&); \
    template int HandleLink(SvgDrawState&, const Element&, ORVPrtGroupElt*, ORVPrtGraphicPrimitiveElt&)
ORV_INSTANTIATE_GROUPS(DomElementAccess);
ORV_INSTANTIATE_GROUPS(LightElementAccess);
#undef ORV_INSTANTIATE_GROUPS
