#include "apps/orvprint/check/findings.h"

#include <numeric>

namespace {

using enum FindingCode;

constexpr std::array<FindingKind, static_cast<std::size_t>(kCount)> kKinds{{
    {kUnknownElement, "unknown-element", "Elements of no known name are not printed, nor is what they hold"},
    {kPrefixedElement, "prefixed-element", "Elements of SVG are read only when their names have no prefix"},
    {kMisplacedElement, "misplaced-element", "Elements inside shapes, texts and pictures are not printed"},
    {kNotOnAPage, "not-on-a-page", "What stands beside the pages of a drawing set is not printed"},
    {kPageSet, "page-set", "Drawings in a drawing that holds two or more of them are pages of their own"},
    {kForeignNamespace, "foreign-namespace",
     "Elements of other namespaces are printed when their names are those of SVG"},
    {kGradient, "gradient", "Gradients are not printed: a paint that refers to one keeps the colour it had"},
    {kClipPath, "clip-path", "Clipping is not printed: everything shows whole"},
    {kMask, "mask", "Masks are not printed: everything shows whole"},
    {kFilter, "filter", "Filters are not printed: everything shows unfiltered"},
    {kStyleSheet, "style-sheet", "Style sheets are not read: give properties as attributes or in style"},
    {kScript, "script", "Scripts are not run"},
    {kAnimation, "animation", "Animations are not run: everything prints as it stands"},
    {kTextSpan, "text-span", "Spans of texts are not printed: give each its own text element"},
    {kSwitch, "switch", "Alternatives are not chosen from: nothing of them is printed"},
    {kForeignObject, "foreign-object", "Content of other formats is not printed"},
    {kSvgFont, "svg-font", "Fonts defined in drawings are not read"},
    {kUnprintedElement, "unprinted-element", "Elements of SVG that are not printed"},
    {kHrefWithoutPrefix, "href-without-prefix", "References are read from xlink:href, not from href"},
    {kPrefixedAttribute, "prefixed-attribute", "Attributes of XLink are read only with the prefix xlink"},
    {kMissingReference, "missing-reference", "References to what the document does not have"},
    {kUnreachableReference, "unreachable-reference",
     "References to what is no definition, comes later, or stands in a group that has ended"},
    {kBadReference, "bad-reference", "References that cannot be read, or do not lead to what they need"},
    {kDuplicateId, "duplicate-id", "Identifiers that are given twice: references find the first"},
    {kScriptLink, "script-link", "Links that run something where they are opened are left out"},
    {kImageMissing, "image-missing", "Pictures whose file is not there"},
    {kImageRefused, "image-refused",
     "Pictures that the drawing may not read: allow their folder with --allow-dir"},
    {kImageRemote, "image-remote", "Pictures from the network are not loaded"},
    {kImageFormat, "image-format", "Pictures of formats other than PNG, JPEG and BMP are not printed"},
    {kImageBroken, "image-broken", "Pictures whose data cannot be read"},
    {kImageColours, "image-colours", "Pictures whose own description of their colours is not followed"},
    {kImageNotTurned, "image-not-turned",
     "Pictures that are to be turned are turned only when they are JPEG"},
    {kImageStretched, "image-stretched", "Pictures are stretched to their width and height"},
    {kUnknownAttribute, "unknown-attribute", "Attributes of no known name"},
    {kAttributeWithoutEffect, "attribute-without-effect", "Attributes without effect where they stand"},
    {kIgnoredProperty, "ignored-property", "Properties without effect"},
    {kUnknownProperty, "unknown-property", "Properties of no known name"},
    {kAttributeOnlyProperty, "attribute-only-property",
     "Properties that are read as attributes only, not in style"},
    {kLostDeclarations, "lost-declarations", "In style, all that follows a leading or doubled ; is lost"},
    {kBrokenDeclaration, "broken-declaration", "In style, declarations need a name, a colon and a value"},
    {kBadColour, "bad-colour", "Colours that cannot be read"},
    {kBadLength, "bad-length", "Lengths and numbers that cannot be read, or not to their end"},
    {kUnknownUnit, "unknown-unit", "Units that do not count: the number is taken as user units"},
    {kBadValue, "bad-value", "Values that change nothing"},
    {kBadTransform, "bad-transform", "Transforms that are not read as they are written"},
    {kBadViewBox, "bad-view-box", "View boxes that are not read as they are written"},
    {kBadPoints, "bad-points", "Point lists that are not read as they are written"},
    {kBadPathData, "bad-path-data", "Path data that are not read as they are written"},
    {kOpacityRange, "opacity-range", "Opacities are numbers from 0 to 1: others wrap around"},
    {kViewBoxNotScaled, "view-box-not-scaled",
     "A page's viewBox replaces its size and never scales: the page is as large as the box"},
    {kPageWithoutSize, "page-without-size", "A page without a size is as large as what is drawn on it"},
    {kUnitScale, "unit-scale", "Numbers without a unit are 1/90 inch here, 1/96 inch in other programs"},
    {kPercentageOfNothing, "percentage-of-nothing", "Percentages of a size that is not known"},
    {kPercentageInNestedSvg, "percentage-in-nested-svg",
     "Percentages refer to the page, also inside a nested svg or symbol"},
    {kSquareCorners, "square-corners", "Rectangles have square corners"},
    {kShapeSize, "shape-size", "Sizes that other programs do not draw, or draw otherwise"},
    {kZeroLength, "zero-length", "Lines without length are not drawn, whatever their caps"},
    {kJoinedEnds, "joined-ends", "Ends that meet are joined, but not a closing line and an arc"},
    {kArcShape, "arc-shape", "Arcs that are turned, or have radii out of range, are drawn elsewhere"},
    {kSmoothControl, "smooth-control", "Smooth curves take over the control point of any curve before them"},
    {kAlwaysStroked, "always-stroked", "Lines, polylines, and paths that are not filled, are always stroked"},
    {kPolylineNotFilled, "polyline-not-filled", "Polylines are never filled"},
    {kPathNotFilled, "path-not-filled", "Paths of at most two points are stroked and never filled"},
    {kHiddenButPrinted, "hidden-but-printed", "Hidden elements that are printed all the same"},
    {kPaintedVisible, "painted-visible", "visibility='visible' turns fill and stroke on, both of them"},
    {kRepaintedDefinition, "repainted-definition",
     "What is used is painted as the place that uses it, not with paint of its own"},
    {kFittedUse, "fitted-use", "A use with width and height scales whatever it places, not only symbols"},
    {kUnfittedSymbol, "unfitted-symbol", "A symbol is fitted to a use only when that has width and height"},
    {kNotClipped, "not-clipped", "Nothing is cut off where a nested svg or a symbol ends"},
    {kPatternWithoutImage, "pattern-without-image",
     "Patterns fill with the pictures they hold, nothing else"},
    {kPatternTile, "pattern-tile",
     "Patterns tile their picture in its own size, from the corner of the page"},
    {kMarkerNotTurned, "marker-not-turned", "Markers are never turned"},
    {kMarkerSize, "marker-size",
     "Markers are as large as they say, whatever the width of the line, and are not cut off"},
    {kMarkerPlace, "marker-place", "Markers of polygons stand on the listed points only"},
    {kExtraEffect, "extra-effect", "Attributes and values with an effect that SVG does not give them"},
    {kCurrentColour, "current-colour", "currentColor is the colour in force where it is said"},
    {kGroupOpacity, "group-opacity", "Nothing is blended as a whole: what overlaps shows through"},
    {kOpacityCombined, "opacity-combined",
     "Opacities of one kind multiply on their way down, others replace each other"},
    {kAttributeWins, "attribute-wins", "On texts, attributes about fonts win over style"},
    {kFontSizePercentage, "font-size-percentage", "A font size of 200% is two hundred times as large"},
    {kFontWeightReversed, "font-weight-reversed", "bolder is one step lighter, lighter one step bolder"},
    {kLetterSpacingInStyle, "letter-spacing-in-style", "Letter spacing is read as an attribute only"},
    {kTextPositions, "text-positions", "Of lists of positions, a text takes the first number"},
    {kTextShiftUp, "text-shift-up", "A positive dy moves a text up"},
    {kJoinedWords, "joined-words", "Line breaks and tabs of texts are deleted: words around them join"},
    {kTextBlanks, "text-blanks", "Runs of blanks in texts are kept, those at the ends are not"},
    {kFontMissing, "font-missing", "Fonts that are not installed"},
    {kFontFallback, "font-fallback", "Fonts that are not installed: a later one of the list is taken"},
    {kMissingGlyph, "missing-glyph", "Characters that no installed font has"},
    {kTextCannotBeSet, "text-cannot-be-set",
     "Text that cannot be set here: no font, or a font or library that cannot be used"},
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
        std::size_t end = kLongest;  // not in the middle of a character
        while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
        text = text.substr(0, end);
    }
    return std::string(text) + (isCut ? "..." : "");
}
