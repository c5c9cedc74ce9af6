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

/// Kinds of findings, in output order: content missing from the page comes first.
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
    std::string_view name;   ///< stable name, used in options and JSON
    std::string_view title;  ///< heading for all findings of this kind
};
/// All kinds, in the order of FindingCode.
std::span<const FindingKind> GetFindingKinds();
const FindingKind& GetFindingKind(FindingCode code);
/// @return null if there is no kind of that name
const FindingKind* FindFindingKind(std::string_view name);

/// One place in the input that may not print as its author expects.
struct Finding {
    FindingCode code{};
    std::uint32_t line = 0, column = 0;  ///< counted from 1; 0 if unknown
    std::string element, attribute;      ///< names as written; `attribute` may be empty
    std::string value;                   ///< one-line excerpt of the attribute's value
    std::string message;
};

/// The findings of one input. All are counted, but at most kKept of each kind are stored, so memory use is
/// bounded.
class Findings {
public:
    static constexpr std::size_t kKept = 1000;

    /// @param ignored  kinds that are not counted
    explicit Findings(const std::set<FindingCode>& ignored = {});

    /// Counts a finding.
    /// @return true if its description should be stored with Add()
    bool Count(FindingCode code);
    void Add(Finding finding) { kept_.push_back(std::move(finding)); }
    /// Counts an element or attribute of another namespace, which is not a finding.
    void CountForeign() { ++foreign_; }

    std::uint64_t GetCount(FindingCode code) const { return counts_[static_cast<std::size_t>(code)]; }
    std::uint64_t GetTotal() const;
    std::uint64_t GetForeignCount() const { return foreign_; }
    /// In document order.
    const std::vector<Finding>& GetKept() const { return kept_; }

private:
    static constexpr auto kKinds = static_cast<std::size_t>(FindingCode::kCount);
    std::array<bool, kKinds> ignored_{};
    std::array<std::uint64_t, kKinds> counts_{};
    std::uint64_t foreign_ = 0;
    std::vector<Finding> kept_;
};

/// The beginning of a text; not escaped for output.
std::string Excerpt(std::string_view text);
