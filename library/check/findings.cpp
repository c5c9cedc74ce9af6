// SPDX-License-Identifier: Apache-2.0
#include "library/check/findings.h"

#include <numeric>

namespace {

using enum FindingCode;

constexpr std::array<FindingKind, static_cast<std::size_t>(kCount)> kKinds{{
    {kUnknownElement, "unknown-element", "Unknown elements are not printed, nor is their content"},
    {kPrefixedElement, "prefixed-element", "SVG elements are read only if their names have no prefix"},
    {kMisplacedElement, "misplaced-element", "Elements inside shapes, texts and images are not printed"},
    {kNotOnAPage, "not-on-a-page", "Elements outside the pages of a drawing set are not printed"},
    {kPageSet, "page-set", "Two or more drawings in a drawing become a page each"},
    {kForeignNamespace, "foreign-namespace",
     "Elements of other namespaces are printed if their names are those of SVG elements"},
    {kGradient, "gradient",
     "Gradients are not printed: a paint that refers to one does not change the colour"},
    {kClipPath, "clip-path", "Clipping is ignored: everything shows in full"},
    {kMask, "mask", "Masks are ignored: everything shows in full"},
    {kFilter, "filter", "Filters are ignored: everything shows unfiltered"},
    {kStyleSheet, "style-sheet", "Rules of style sheets that are not applied: use attributes or style"},
    {kScript, "script", "Scripts are not run"},
    {kAnimation, "animation", "Animations are not run: the base values print"},
    {kTextSpan, "text-span", "tspan elements are not printed: use a text element for each"},
    {kSwitch, "switch", "switch elements are not evaluated: nothing inside is printed"},
    {kForeignObject, "foreign-object", "Foreign content is not printed"},
    {kSvgFont, "svg-font", "SVG fonts are not read"},
    {kUnprintedElement, "unprinted-element", "SVG elements that are not printed"},
    {kHrefWithoutPrefix, "href-without-prefix", "References are read from xlink:href, not from href"},
    {kPrefixedAttribute, "prefixed-attribute", "Attributes of XLink are read only with the prefix xlink"},
    {kMissingReference, "missing-reference", "References to identifiers that do not exist"},
    {kUnreachableReference, "unreachable-reference",
     "References to something that is not a definition, comes later, or is in a closed group"},
    {kBadReference, "bad-reference", "References that cannot be read, or lead to the wrong kind of element"},
    {kDuplicateId, "duplicate-id", "Duplicate identifiers: references find the first"},
    {kScriptLink, "script-link", "Links that execute code are left out"},
    {kImageMissing, "image-missing", "Images whose file does not exist"},
    {kImageRefused, "image-refused", "Images outside the allowed folders: allow more with --allow-dir"},
    {kImageRemote, "image-remote", "Images from the network are not loaded"},
    {kImageFormat, "image-format", "Images other than PNG, JPEG and BMP are not printed"},
    {kImageBroken, "image-broken", "Images whose data cannot be read"},
    {kImageColours, "image-colours", "Images whose colour profile or colour description is not supported"},
    {kImageNotTurned, "image-not-turned", "The orientation of images is supported for JPEG only"},
    {kImageStretched, "image-stretched", "Images are stretched to their width and height"},
    {kUnknownAttribute, "unknown-attribute", "Unknown attributes"},
    {kAttributeWithoutEffect, "attribute-without-effect", "Attributes without effect on this element"},
    {kIgnoredProperty, "ignored-property", "Properties without effect"},
    {kUnknownProperty, "unknown-property", "Unknown properties"},
    {kAttributeOnlyProperty, "attribute-only-property",
     "Properties that are read as attributes only, not in style"},
    {kLostDeclarations, "lost-declarations", "In style, everything after a leading or doubled ; is lost"},
    {kBrokenDeclaration, "broken-declaration", "In style, a declaration needs a name, a colon and a value"},
    {kBadColour, "bad-colour", "Colours that cannot be read"},
    {kBadLength, "bad-length", "Lengths and numbers that cannot be read completely"},
    {kUnknownUnit, "unknown-unit", "Unsupported units: the number is taken as user units"},
    {kBadValue, "bad-value", "Values without effect"},
    {kBadTransform, "bad-transform", "Transforms that are read differently than written"},
    {kBadViewBox, "bad-view-box", "View boxes that are read differently than written"},
    {kBadPoints, "bad-points", "Point lists that are read differently than written"},
    {kBadPathData, "bad-path-data", "Path data that are read differently than written"},
    {kOpacityRange, "opacity-range", "Opacities are numbers from 0 to 1: others wrap around"},
    {kViewBoxNotScaled, "view-box-not-scaled",
     "A page's viewBox replaces its size and never scales: the page is as large as the box"},
    {kPageWithoutSize, "page-without-size", "A page without a size is as large as what is drawn on it"},
    {kUnitScale, "unit-scale", "Numbers without a unit are 1/90 inch here, 1/96 inch in other programs"},
    {kPercentageOfNothing, "percentage-of-nothing", "Percentages of an unknown size"},
    {kPercentageInNestedSvg, "percentage-in-nested-svg",
     "Percentages refer to the page, also inside a nested svg or symbol"},
    {kSquareCorners, "square-corners", "Rectangles have square corners"},
    {kShapeSize, "shape-size", "Sizes that other programs do not draw, or draw differently"},
    {kZeroLength, "zero-length", "Lines of zero length are not drawn, even with caps"},
    {kJoinedEnds, "joined-ends", "Ends that meet are joined, but not a closing line and an arc"},
    {kArcShape, "arc-shape", "Rotated arcs, and arcs with radii out of range, are drawn differently"},
    {kSmoothControl, "smooth-control", "Smooth curves reflect the control point of any curve before them"},
    {kAlwaysStroked, "always-stroked", "Lines, polylines, and paths that are not filled, are always stroked"},
    {kPolylineNotFilled, "polyline-not-filled", "Polylines are never filled"},
    {kPathNotFilled, "path-not-filled", "Paths of at most two points are stroked and never filled"},
    {kHiddenButPrinted, "hidden-but-printed", "Hidden elements that are printed anyway"},
    {kPaintedVisible, "painted-visible", "visibility='visible' turns on both fill and stroke"},
    {kRepaintedDefinition, "repainted-definition",
     "Used elements take the paint of the use element, not their own"},
    {kFittedUse, "fitted-use", "A use with width and height scales any target, not only symbols"},
    {kUnfittedSymbol, "unfitted-symbol", "A symbol is fitted to a use only if that has width and height"},
    {kNotClipped, "not-clipped", "Nested svg elements and symbols do not clip their content"},
    {kPatternWithoutImage, "pattern-without-image",
     "Patterns fill with the images they contain, nothing else"},
    {kPatternTile, "pattern-tile", "Patterns tile their image at its own size, from the corner of the page"},
    {kMarkerNotTurned, "marker-not-turned", "Markers are never rotated"},
    {kMarkerSize, "marker-size", "Markers do not grow with the width of the line, and are not clipped"},
    {kMarkerPlace, "marker-place", "Markers of polygons are placed on the listed points only"},
    {kExtraEffect, "extra-effect", "Attributes and values with an effect that SVG does not give them"},
    {kCurrentColour, "current-colour", "currentColor is the colour in force where it is stated"},
    {kGroupOpacity, "group-opacity", "Groups are not blended as a whole: overlapping parts show through"},
    {kOpacityCombined, "opacity-combined",
     "Opacities of nested elements multiply, those of one element replace each other"},
    {kAttributeWins, "attribute-wins", "On text, font attributes override style"},
    {kFontSizePercentage, "font-size-percentage", "A font size of 200% is two hundred times as large"},
    {kFontWeightReversed, "font-weight-reversed", "bolder is one step lighter, lighter one step bolder"},
    {kLetterSpacingInStyle, "letter-spacing-in-style", "Letter spacing is read as an attribute only"},
    {kTextPositions, "text-positions", "Text uses only the first number of a list of positions"},
    {kTextShiftUp, "text-shift-up", "A positive dy moves text up"},
    {kJoinedWords, "joined-words",
     "Line breaks and tabs in text are removed, which joins the words around them"},
    {kTextBlanks, "text-blanks", "Runs of spaces in text are kept, spaces at the ends are not"},
    {kFontUnspecified, "font-unspecified",
     "Text without font-family is set in a default font, which differs between programs"},
    {kFontMissing, "font-missing", "Fonts that are not installed"},
    {kFontFallback, "font-fallback", "Fonts that are not installed: a later one of the list is used"},
    {kMissingGlyph, "missing-glyph", "Characters missing from all installed fonts"},
    {kTextCannotBeSet, "text-cannot-be-set",
     "Text that cannot be set: no font, or a font or library that cannot be used"},
}};

constexpr bool StandInOrder() {
    for (std::size_t i = 0; i < kKinds.size(); ++i)
        if (static_cast<std::size_t>(kKinds[i].code) != i) return false;
    return true;
}
static_assert(StandInOrder());

}  // namespace

std::span<const FindingKind> GetFindingKinds() { return kKinds; }

const FindingKind& GetFindingKind(FindingCode code) { return kKinds[static_cast<std::size_t>(code)]; }

const FindingKind* FindFindingKind(std::string_view name) {
    for (const FindingKind& kind : kKinds)
        if (kind.name == name) return &kind;
    return nullptr;
}

Findings::Findings(const std::set<FindingCode>& ignored) {
    for (const FindingCode code : ignored) ignored_[static_cast<std::size_t>(code)] = true;
}

bool Findings::Count(FindingCode code) {
    const auto index = static_cast<std::size_t>(code);
    if (ignored_[index]) return false;
    return ++counts_[index] <= kKept;
}

std::uint64_t Findings::GetTotal() const {
    return std::accumulate(counts_.begin(), counts_.end(), std::uint64_t{0});
}

std::string Excerpt(std::string_view text) {
    constexpr std::size_t kLongest = 60;  // bytes
    const bool isCut = text.size() > kLongest;
    if (isCut) {
        std::size_t end = kLongest;  // do not split a UTF-8 character
        while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
        text = text.substr(0, end);
    }
    return std::string(text) + (isCut ? "..." : "");
}
