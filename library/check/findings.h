// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What the check can find. The order is that of the output: what is missing on the page first.
enum class FindingCode : std::uint8_t {
    kUnknownElement,
    kPrefixedElement,
    kMisplacedElement,
    kNotOnAPage,
    kPageSet,
    kForeignNamespace,
    kGradient,
    kClipPath,
    kMask,
    kFilter,
    kStyleSheet,
    kScript,
    kAnimation,
    kTextSpan,
    kSwitch,
    kForeignObject,
    kSvgFont,
    kUnprintedElement,
    kHrefWithoutPrefix,
    kPrefixedAttribute,
    kMissingReference,
    kUnreachableReference,
    kBadReference,
    kDuplicateId,
    kScriptLink,
    kImageMissing,
    kImageRefused,
    kImageRemote,
    kImageFormat,
    kImageBroken,
    kImageColours,
    kImageNotTurned,
    kImageStretched,
    kUnknownAttribute,
    kAttributeWithoutEffect,
    kIgnoredProperty,
    kUnknownProperty,
    kAttributeOnlyProperty,
    kLostDeclarations,
    kBrokenDeclaration,
    kBadColour,
    kBadLength,
    kUnknownUnit,
    kBadValue,
    kBadTransform,
    kBadViewBox,
    kBadPoints,
    kBadPathData,
    kOpacityRange,
    kViewBoxNotScaled,
    kPageWithoutSize,
    kUnitScale,
    kPercentageOfNothing,
    kPercentageInNestedSvg,
    kSquareCorners,
    kShapeSize,
    kZeroLength,
    kJoinedEnds,
    kArcShape,
    kSmoothControl,
    kAlwaysStroked,
    kPolylineNotFilled,
    kPathNotFilled,
    kHiddenButPrinted,
    kPaintedVisible,
    kRepaintedDefinition,
    kFittedUse,
    kUnfittedSymbol,
    kNotClipped,
    kPatternWithoutImage,
    kPatternTile,
    kMarkerNotTurned,
    kMarkerSize,
    kMarkerPlace,
    kExtraEffect,
    kCurrentColour,
    kGroupOpacity,
    kOpacityCombined,
    kAttributeWins,
    kFontSizePercentage,
    kFontWeightReversed,
    kLetterSpacingInStyle,
    kTextPositions,
    kTextShiftUp,
    kJoinedWords,
    kTextBlanks,
    kFontUnspecified,
    kFontMissing,
    kFontFallback,
    kMissingGlyph,
    kTextCannotBeSet,
    kCount
};

struct FindingKind {
    FindingCode code;
    std::string_view name;   ///< stable, for options and programs
    std::string_view title;  ///< what all findings of the kind have in common, for people
};
/// All kinds, in the order of their codes.
std::span<const FindingKind> GetFindingKinds();
const FindingKind& GetFindingKind(FindingCode code);
/// Null when there is no kind of that name.
const FindingKind* FindFindingKind(std::string_view name);

/// One thing that does not print as its author may expect.
struct Finding {
    FindingCode code{};
    std::uint32_t line = 0, column = 0;  ///< counted from 1; 0 when unknown
    std::string element, attribute;      ///< the attribute may be empty
    std::string value;                   ///< an excerpt in one line
    std::string message;
};

/// The findings of one input. Counts all of them, but keeps no more than kKept of a kind, so that a document
/// cannot fill the memory.
class Findings {
public:
    static constexpr std::size_t kKept = 1000;

    /// @param ignored  kinds that are not counted
    explicit Findings(const std::set<FindingCode>& ignored = {});

    /// Counts a finding. @return true when it is to be described with Add
    bool Count(FindingCode code);
    void Add(Finding finding) { kept_.push_back(std::move(finding)); }
    /// Counts an element or attribute of another vocabulary, which is nobody's mistake.
    void CountForeign() { ++foreign_; }

    std::uint64_t GetCount(FindingCode code) const { return counts_[static_cast<std::size_t>(code)]; }
    std::uint64_t GetTotal() const;
    std::uint64_t GetForeignCount() const { return foreign_; }
    /// In the order of the document.
    const std::vector<Finding>& GetKept() const { return kept_; }

private:
    static constexpr auto kKinds = static_cast<std::size_t>(FindingCode::kCount);
    std::array<bool, kKinds> ignored_{};
    std::array<std::uint64_t, kKinds> counts_{};
    std::uint64_t foreign_ = 0;
    std::vector<Finding> kept_;
};

/// The beginning of a text, not yet escaped for people.
std::string Excerpt(std::string_view text);
