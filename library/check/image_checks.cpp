// SPDX-License-Identifier: Apache-2.0
#include "library/check/image_checks.h"

#include <cmath>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_access.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/values/length.h"
#include "library/check/clip_checks.h"

namespace {

using enum FindingCode;

// Images are stretched to their area here; SVG keeps the aspect ratio by default.
void CheckShape(CheckContext& check, const NumberedElement& element, std::string_view reference,
                const ImageFacts& facts, const SvgDrawState& state) {
    double width = 0.0, height = 0.0;
    ReadHorizontalAttribute(state, LightElementAccess(element.node), AttributeName::kWidth, width);
    ParseVerticalLength(state, element.node->Value(AttributeName::kHeight), height);
    if (!(width > 0.0) || !(height > 0.0))
        return check.findings.Note(kBadLength, element, {}, {},
                                   "has no width and height, so it shows nothing");

    const auto ratio = element.node->Find("preserveAspectRatio");
    if (ratio && ratio->starts_with("none")) return;
    const double stretch = width / height * facts.height / facts.width;
    if (stretch < 0.98 || stretch > 1.02)
        check.findings.Note(kImageStretched, element, "xlink:href", reference,
                            "its " + std::to_string(facts.width) + " x " + std::to_string(facts.height) +
                                " pixels do not have the aspect ratio of its width and height");
}

// Images that SVG hides or clips.
void CheckDrawn(CheckContext& check, const NumberedElement& element, const SvgDrawState& state) {
    const Visibility& visibility = check.inForce.visibility;
    if (visibility.isRemoved || visibility.isHidden)
        check.findings.Note(kHiddenButPrinted, element, {}, {}, "images are printed even if they are hidden");
    const ORVXmlNode& node = *element.node;
    double x = 0.0, y = 0.0, width = 0.0, height = 0.0;
    ParseHorizontalLength(state, node.Value(AttributeName::kX), x);
    ParseVerticalLength(state, node.Value(AttributeName::kY), y);
    ParseHorizontalLength(state, node.Value(AttributeName::kWidth), width);
    ParseVerticalLength(state, node.Value(AttributeName::kHeight), height);
    ORVMathBox2D box;
    box.Add({x, y});
    box.Add({x + width, y + height});
    NoteDrawn(check, element, box);
    // In a definition, images count for blending like shapes.
    if (check.openDefinition) ++check.openDefinition->leaves;
}

}  // namespace

void CheckImage(CheckContext& check, const NumberedElement& element, const SvgDrawState& state) {
    const std::string_view reference = element.node->Value(AttributeName::kXlinkHref);
    if (reference.empty()) {
        if (!element.node->Find("href"))
            check.findings.Note(kImageMissing, element, {}, {}, "has no image: give it xlink:href");
        return;
    }
    const ImageFacts& facts = check.resources.CheckImage(state, reference);
    if (facts.problem) return check.findings.Note(element, "xlink:href", reference, *facts.problem);
    if (facts.remark) check.findings.Note(element, "xlink:href", reference, *facts.remark);
    CheckDrawn(check, element, state);
    CheckShape(check, element, reference, facts, state);
}

bool IsSizeOfTile(ResourceChecks& resources, const ORVXmlNode& pattern, AttributeName name,
                  const SvgDrawState& state) {
    double size = 0.0;
    if (ParseLength(SvgDrawState(), pattern.Value(name), size) != kRead) return false;
    if (name == AttributeName::kX || name == AttributeName::kY) return size == 0.0;
    const bool isWidth = name == AttributeName::kWidth;
    if (!isWidth && name != AttributeName::kHeight) return false;
    for (const ORVXmlNode* child = pattern.firstChild; child; child = child->nextSibling) {
        if (child->id != ElementName::kImage || !child->Has(AttributeName::kXlinkHref)) continue;
        const ImageFacts& facts = resources.CheckImage(state, child->Value(AttributeName::kXlinkHref));
        if (std::abs(size - (isWidth ? facts.tileWidth : facts.tileHeight)) > 0.01 * size) return false;
    }
    return true;
}
