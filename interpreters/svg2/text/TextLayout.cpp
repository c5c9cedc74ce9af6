// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/text/TextLayout.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "interpreters/svg2/tree/shapes.h"
#include "interpreters/svg2/tree/structure.h"
#include "interpreters/svg2/values/path_data.h"
#include "interpreters/svg2/values/scanner.h"
#include "interpreters/svg2/values/transform.h"

namespace svg2 {
namespace {

constexpr int kGreatestDepth = 256;  // of spans within each other

/// Bytes of the character that begins at `offset`.
std::size_t SizeOfCharacter(std::string_view text, std::size_t offset) {
    std::size_t size = 1;
    while (offset + size < text.size() && (static_cast<unsigned char>(text[offset + size]) & 0xC0U) == 0x80U)
        ++size;
    return size;
}

std::uint32_t CodePointOf(std::string_view character) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(character[i]); };
    switch (character.size()) {
        case 1: return byte(0);
        case 2: return (byte(0) & 0x1FU) << 6U | (byte(1) & 0x3FU);
        case 3: return (byte(0) & 0x0FU) << 12U | (byte(1) & 0x3FU) << 6U | (byte(2) & 0x3FU);
        default:
            return (byte(0) & 0x07U) << 18U | (byte(1) & 0x3FU) << 12U | (byte(2) & 0x3FU) << 6U |
                   (byte(3) & 0x3FU);
    }
}

/// Characters that stand upright in vertical lines: those of East Asia, by their blocks.
bool IsUpright(std::uint32_t code) {
    return (code >= 0x1100 && code < 0x1200) || (code >= 0x2E80 && code < 0xA4D0) ||
           (code >= 0xA960 && code < 0xA980) || (code >= 0xAC00 && code < 0xD800) ||
           (code >= 0xF900 && code < 0xFB00) || (code >= 0xFE10 && code < 0xFE20) ||
           (code >= 0xFE30 && code < 0xFE50) || (code >= 0xFF01 && code < 0xFF61) ||
           (code >= 0xFFE0 && code < 0xFFE7) || (code >= 0x1F000 && code < 0x1FB00) ||
           (code >= 0x20000 && code < 0x40000);
}

/// Characters that are set on, or join, the one before them.
bool GoesWithTheOneBefore(std::uint32_t code) {
    return (code >= 0x300 && code < 0x370) || (code >= 0x1AB0 && code < 0x1B00) ||
           (code >= 0x1DC0 && code < 0x1E00) || (code >= 0x20D0 && code < 0x2100) ||
           (code >= 0xFE00 && code < 0xFE10) || (code >= 0xFE20 && code < 0xFE30) || code == 0x200D;
}

bool IsSpaceToWiden(std::string_view character) { return character == " " || character == "\u00A0"; }

}  // namespace

bool TextLayout::LayOut(ElementIndex element, const Style& style, const Viewport& viewport) {
    viewport_ = viewport;
    Collect(element, style, 0, 0);
    if (!characters_.empty() && characters_.back().isCollapsed) {
        // White space at the end of the text goes, too.
        characters_.pop_back();
        for (TextSpan& span : spans_) span.end = std::min(span.end, characters_.size());
    }
    if (characters_.empty()) return true;
    ApplyLists();
    MakeSegments();
    for (TextSegment& segment : segments_)
        if (!Shape(segment)) return false;
    if (!FitLengths()) return false;
    PlaceChunks();
    return true;
}

void TextLayout::Collect(ElementIndex element, const Style& style, std::size_t parent, int depth) {
    const Document& document = scene_.GetDocument();
    const std::size_t number = spans_.size();
    {
        TextSpan span;
        span.element = element;
        span.style = &style;
        span.parent = parent;
        span.first = characters_.size();
        if (number > 0) {
            span.opacity = spans_[parent].opacity * style.opacity;
            span.path = spans_[parent].path;
            span.shift = spans_[parent].shift;
        }
        if (document[element].tag == Tag::kTextPath) AddPath(span);
        span.shift += ShiftOf(span);
        spans_.push_back(span);
    }
    const bool isLost = spans_[number].path != kNoPath && !paths_[spans_[number].path].isUsable;
    ElementIndex child = document[element].firstChild;
    for (const ORVXmlNode* node = document[element].node->firstChild; node && !isLost;
         node = node->nextSibling) {
        if (node->kind == ORVXmlNode::Kind::kText) AddText(node->GetText(), number);
        if (!node->IsElement()) continue;
        if (child == kNoElement || document[child].node != node) continue;  // of another namespace
        const ElementIndex inner = child;
        child = document[child].nextSibling;
        const Tag tag = document[inner].tag;
        if (tag != Tag::kTspan && tag != Tag::kTextPath && tag != Tag::kA && tag != Tag::kTref) continue;
        Style& innerStyle = *styles_.emplace_back(std::make_unique<Style>());
        scene_.GetCascade().Compute(inner, style, innerStyle);
        if (!innerStyle.isDisplayed || depth >= kGreatestDepth || !PassesConditions(document, inner))
            continue;
        Collect(inner, innerStyle, number, depth + 1);
    }
    // A light element has no nodes for its text, which comes first.
    if (!document[element].node->firstChild) AddText(document[element].node->GetText(), number);
    spans_[number].end = characters_.size();
}

void TextLayout::AddText(std::string_view text, std::size_t span) {
    const bool collapses = spans_[span].style->whiteSpace == WhiteSpace::kCollapse;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t size = SizeOfCharacter(text, i);
        std::string_view character = text.substr(i, size);
        i += size;
        const bool isSpace = character.size() == 1 && IsSpace(character.front());
        if (isSpace && collapses && endsWithSpace_) continue;
        if (isSpace) character = " ";
        endsWithSpace_ = isSpace && collapses;
        Character added{text_.size(), character.size(), span};
        const std::uint32_t code = CodePointOf(character);
        added.isUpright = IsUpright(code);
        added.isMark = !characters_.empty() && GoesWithTheOneBefore(code);
        added.isCollapsed = endsWithSpace_;
        characters_.push_back(added);
        text_ += character;
    }
}

void TextLayout::AddPath(TextSpan& span) {
    using Verb = ORVPrintPath::Verb;
    const Document& document = scene_.GetDocument();
    span.path = paths_.size();
    Path& path = paths_.emplace_back();
    ORVPrintPath outline;
    ORVMathAffine2D transform;
    const ElementIndex target = document.FindByReference(Trim(document.ValueOf(span.element, Name::kHref)));
    if (const std::string_view data = document.ValueOf(span.element, Name::kPath); !data.empty()) {
        ReadPathData(data, outline);
    } else if (target != kNoElement && IsShape(document[target].tag)) {
        const Style& style = scene_.StyleInPlace(target);
        AddOutline(scene_, target, style, viewport_, outline);
        if (!scene_.TransformOf(target, style, viewport_, transform)) return;
    }
    double length = 0.0;
    ORVMathPoint2D start;
    const auto addPoint = [&](const ORVMathPoint2D& point, bool jumps) {
        if (!path.points.empty() && !jumps)
            length += std::hypot(point.x - path.points.back().x, point.y - path.points.back().y);
        path.points.push_back(point);
        path.lengths.push_back(length);
        path.jumps.push_back(jumps);
    };
    std::size_t next = 0;
    for (const Verb verb : outline.verbs) {
        switch (verb) {
            case Verb::kMove:
                start = transform(outline.points[next++]);
                addPoint(start, true);
                break;
            case Verb::kLine: addPoint(transform(outline.points[next++]), false); break;
            case Verb::kCubic: {
                constexpr int kSteps = 64;
                const ORVMathPoint2D p0 = path.points.back(), p1 = transform(outline.points[next]);
                const ORVMathPoint2D p2 = transform(outline.points[next + 1]);
                const ORVMathPoint2D p3 = transform(outline.points[next + 2]);
                next += 3;
                for (int i = 1; i <= kSteps; ++i) {
                    const double t = static_cast<double>(i) / kSteps, s = 1.0 - t;
                    const double a = s * s * s, b = 3.0 * s * s * t, c = 3.0 * s * t * t, d = t * t * t;
                    addPoint({a * p0.x + b * p1.x + c * p2.x + d * p3.x,
                              a * p0.y + b * p1.y + c * p2.y + d * p3.y},
                             false);
                }
                break;
            }
            case Verb::kClose: addPoint(start, false); break;
        }
    }
    if (!(length > 0.0)) return;
    path.isUsable = true;
    if (document.ValueOf(span.element, Name::kSide) == "right") {
        std::reverse(path.points.begin(), path.points.end());
        for (double& at : path.lengths) at = length - at;
        std::reverse(path.lengths.begin(), path.lengths.end());
        // What no line leads to, no line leads away from.
        std::vector<bool> jumps(path.jumps.size(), false);
        for (std::size_t i = 1; i < jumps.size(); ++i) jumps[i] = path.jumps[jumps.size() - i];
        path.jumps = std::move(jumps);
    }
    Length offset;
    if (ReadLength(document.ValueOf(span.element, Name::kStartOffset),
                   scene_.GetCascade().SizesOf(*span.style), offset)) {
        double scale = 1.0;
        if (target != kNoElement) {
            const double stated = scene_.NumberOf(target, Name::kPathLength, 0.0);
            if (stated > 0.0) scale = length / stated;
        }
        path.offset = offset.px * scale + offset.percent * length / 100.0;
    }
}

// ---- positions that the document states ----

void TextLayout::ApplyList(const TextSpan& span, Name name, Axis axis) {
    const std::string_view list = scene_.GetDocument().ValueOf(span.element, name);
    if (list.empty()) return;
    Scanner scanner(list);
    const UnitSizes sizes = scene_.GetCascade().SizesOf(*span.style);
    scanner.SkipSpace();
    for (std::size_t i = span.first; i < span.end && !scanner.AtEnd(); ++i) {
        Length length;
        if (!TakeLength(scanner, sizes, length)) return;
        scanner.SkipCommaSpace();
        const double value = length.Resolve(Scene::BaseOf(viewport_, axis));
        Character& character = characters_[i];
        switch (name) {
            case Name::kX:
                character.x = value;
                character.hasX = true;
                break;
            case Name::kY:
                character.y = value;
                character.hasY = true;
                break;
            case Name::kDx: character.dx = value; break;
            default: character.dy = value; break;
        }
    }
}

void TextLayout::ApplyRotation(const TextSpan& span) {
    const std::string_view list = scene_.GetDocument().ValueOf(span.element, Name::kRotate);
    if (list.empty()) return;
    Scanner scanner(list);
    double degrees = 0.0;
    scanner.SkipSpace();
    for (std::size_t i = span.first; i < span.end; ++i) {
        // The last value holds for all that follow.
        if (!scanner.AtEnd() && scanner.TakeNumber(degrees)) scanner.SkipCommaSpace();
        characters_[i].rotation = degrees;
    }
}

// Spans come from the outside in, so that the inner ones win.
void TextLayout::ApplyLists() {
    for (const TextSpan& span : spans_) {
        if (scene_.GetDocument()[span.element].tag == Tag::kTextPath) continue;
        ApplyList(span, Name::kX, Axis::kX);
        ApplyList(span, Name::kY, Axis::kY);
        ApplyList(span, Name::kDx, Axis::kX);
        ApplyList(span, Name::kDy, Axis::kY);
        ApplyRotation(span);
    }
    // What stands within a cluster cannot be placed by itself; its moves go with the cluster.
    for (std::size_t i = 1; i < characters_.size(); ++i) {
        Character& mark = characters_[i];
        if (mark.isMark) mark.hasX = mark.hasY = false;
    }
}

double TextLayout::ShiftOf(const TextSpan& span) {
    const Style& style = *span.style;
    const bool isText = scene_.GetDocument()[span.element].tag == Tag::kText;
    double shift = 0.0;
    const FontMetrics metrics = fonts_.Find(style).metrics;
    if (!isText && !style.baselineShift.empty()) {
        const std::string_view text = style.baselineShift;
        Length length;
        if (EqualsIgnoringCase(text, "sub"))
            shift -= metrics.subscript * style.fontSize;
        else if (EqualsIgnoringCase(text, "super"))
            shift += metrics.superscript * style.fontSize;
        else if (ReadLength(text, scene_.GetCascade().SizesOf(style), length))
            shift += length.Resolve(style.fontSize);
    }
    return shift;
}

namespace {

/// How far below the line the alphabetic baseline lies when another one lies on the line.
double BaselineDrop(const Style& style, const FontMetrics& metrics) {
    const bool isAligned = style.alignmentBaseline != Baseline::kAuto;
    double em = 0.0;
    switch (isAligned ? style.alignmentBaseline : style.dominantBaseline) {
        case Baseline::kHanging: em = 0.8 * metrics.ascent; break;
        case Baseline::kTextBeforeEdge: em = metrics.ascent; break;
        case Baseline::kCentral: em = (metrics.ascent - metrics.descent) / 2.0; break;
        case Baseline::kMiddle: em = metrics.xHeight / 2.0; break;
        case Baseline::kMathematical: em = metrics.ascent / 2.0; break;
        case Baseline::kIdeographic:
        case Baseline::kTextAfterEdge: em = -metrics.descent; break;
        default: break;
    }
    return em * style.fontSize;
}

}  // namespace

// ---- shaping ----

void TextLayout::MakeSegments() {
    const bool isVertical = spans_[0].style->writingMode != WritingMode::kHorizontal;
    for (std::size_t i = 0; i < characters_.size(); ++i) {
        const Character& character = characters_[i];
        const bool isOnPath = spans_[character.span].path != kNoPath;
        bool begins = segments_.empty();
        if (!begins && !character.isMark) {
            const TextSegment& last = segments_.back();
            begins = last.span != character.span || isOnPath || character.hasX || character.hasY ||
                     character.dx != 0.0 || character.dy != 0.0 || character.rotation != 0.0 ||
                     characters_[last.first].rotation != 0.0 ||
                     (isVertical && character.isUpright == last.isSideways);
        }
        if (begins) {
            TextSegment& segment = segments_.emplace_back();
            segment.first = i;
            segment.span = character.span;
            segment.font = fonts_.Find(*spans_[character.span].style);
            segment.isVertical = isVertical && !isOnPath;
            segment.isSideways = segment.isVertical && !character.isUpright;
            const Style& style = *spans_[character.span].style;
            segment.spacing = style.letterSpacing.px;
        }
        segments_.back().end = i + 1;
        segments_.back().text.append(text_, character.offset, character.size);
    }
}

/// Sets what follows the spaces of a line apart. @return what that adds to the line's length
double TextLayout::AdvanceOfWordSpaces(TextSegment& segment, double spacing) const {
    double added = 0.0;
    for (ORVGlyphRun& run : segment.layout.runs) {
        for (ORVGlyph& glyph : run.glyphs) {
            const bool goesDown = segment.isVertical && !segment.isSideways;
            (goesDown ? glyph.y : glyph.x) += goesDown ? -added : added;
            if (glyph.textLength == 0) continue;
            const std::string_view cluster =
                std::string_view(segment.text).substr(glyph.textOffset, glyph.textLength);
            if (IsSpaceToWiden(cluster)) added += spacing;
        }
    }
    return added;
}

bool TextLayout::Shape(TextSegment& segment) {
    const Style& style = *spans_[segment.span].style;
    segment.layout = {};
    segment.advance = 0.0;
    if (!(style.fontSize > 0.0)) return true;
    ORVTextStyle set;
    set.font = segment.font.choice.font;
    set.weight = segment.font.choice.weight;
    set.height = style.fontSize;
    set.writingMode = segment.isVertical && !segment.isSideways ? 2 : style.isRightToLeft ? 1 : 0;
    set.extraSpacing = segment.spacing;
    set.expansion = segment.expansion;
    segment.layout = ORVLayoutText(segment.text, set);
    if (!segment.layout.isSet) return false;
    segment.advance = segment.layout.advance;
    const Length& wordSpacing = style.wordSpacing;
    if (wordSpacing.px != 0.0 || wordSpacing.percent != 0.0) {
        const double space =
            wordSpacing.percent != 0.0 ? ORVMeasureText(" ", set).advance * wordSpacing.percent / 100.0 : 0.0;
        segment.advance += AdvanceOfWordSpaces(segment, (wordSpacing.px + space) * segment.expansion);
    }
    return true;
}

double TextLayout::GapAfter(std::size_t segment, std::size_t end) const {
    return segment + 1 < end ? segments_[segment].spacing * segments_[segment].expansion : 0.0;
}

// Inner lengths come first, and are part of what the outer ones find.
bool TextLayout::FitLengths() {
    for (std::size_t s = spans_.size(); s-- > 0;) {
        const TextSpan& span = spans_[s];
        Length stated;
        const Document& document = scene_.GetDocument();
        if (!ReadLength(document.ValueOf(span.element, Name::kTextLength),
                        scene_.GetCascade().SizesOf(*span.style), stated))
            continue;
        const double wanted = stated.Resolve(viewport_.width);
        if (!(wanted >= 0.0) || span.first >= span.end) continue;
        double natural = 0.0;
        std::size_t clusters = 0, firstSegment = segments_.size(), endSegment = 0;
        for (std::size_t i = 0; i < segments_.size(); ++i) {
            if (segments_[i].first < span.first || segments_[i].end > span.end) continue;
            firstSegment = std::min(firstSegment, i);
            endSegment = i + 1;
        }
        for (std::size_t i = firstSegment; i < endSegment; ++i)
            natural += segments_[i].advance + GapAfter(i, endSegment);
        for (std::size_t i = span.first; i < span.end; ++i)
            if (!characters_[i].isMark) ++clusters;
        if (!(natural > 0.0)) continue;
        const bool stretches = document.ValueOf(span.element, Name::kLengthAdjust) == "spacingAndGlyphs";
        if (!stretches && clusters < 2) continue;
        for (std::size_t i = firstSegment; i < endSegment; ++i) {
            if (stretches)
                segments_[i].expansion *= std::max(wanted / natural, 1e-6);
            else
                segments_[i].spacing += (wanted - natural) / static_cast<double>(clusters - 1);
            if (!Shape(segments_[i])) return false;
        }
    }
    return true;
}

// ---- places ----

bool TextLayout::StartsChunk(std::size_t segment) const {
    if (segment == 0) return true;
    const Character& first = characters_[segments_[segment].first];
    const std::size_t path = spans_[segments_[segment].span].path;
    return first.hasX || first.hasY || path != spans_[segments_[segment - 1].span].path;
}

void TextLayout::PlaceChunks() {
    ORVMathPoint2D pen;
    for (std::size_t first = 0; first < segments_.size();) {
        std::size_t end = first + 1;
        while (end < segments_.size() && !StartsChunk(end)) ++end;
        const Character& start = characters_[segments_[first].first];
        if (start.hasX) pen.x = start.x;
        if (start.hasY) pen.y = start.y;
        const std::size_t path = spans_[segments_[first].span].path;
        if (path == kNoPath)
            PlaceChunk({first, end}, pen);
        else
            PlaceOnPath({first, end}, paths_[path], pen);
        first = end;
    }
}

namespace {

/// Part of a chunk's length that lies before its point.
double AnchorShare(const Style& style) {
    const double share = style.textAnchor == TextAnchor::kStart    ? 0.0
                         : style.textAnchor == TextAnchor::kMiddle ? 0.5
                                                                   : 1.0;
    return style.isRightToLeft ? 1.0 - share : share;
}

constexpr double kSlant = 0.2126;  // tangent of the 12 degrees that upright letters lean by

ORVMathAffine2D GlyphsUp(const TextSegment& segment) {
    // From y up to y down, leaning where the font has nothing that does.
    return {1.0, segment.font.choice.isToBeSlanted ? kSlant : 0.0, 0.0, -1.0, 0.0, 0.0};
}

}  // namespace

void TextLayout::PlaceChunk(const Chunk& chunk, ORVMathPoint2D& pen) {
    const bool isVertical = segments_[chunk.first].isVertical;
    const Style& firstStyle = *spans_[segments_[chunk.first].span].style;
    double length = 0.0;
    for (std::size_t i = chunk.first; i < chunk.end; ++i) {
        const Character& first = characters_[segments_[i].first];
        length += segments_[i].advance + GapAfter(i, chunk.end) + (isVertical ? first.dy : first.dx);
    }
    const bool runsLeft = !isVertical && firstStyle.isRightToLeft;
    const double before = AnchorShare(firstStyle) * length;
    ORVMathPoint2D at = pen;
    (isVertical ? at.y : at.x) += runsLeft ? length - before : -before;
    for (std::size_t i = chunk.first; i < chunk.end; ++i) {
        TextSegment& segment = segments_[i];
        const TextSpan& span = spans_[segment.span];
        const Character& first = characters_[segment.first];
        at.x += runsLeft ? -first.dx : first.dx;
        at.y += first.dy;
        const double step = segment.advance + GapAfter(i, chunk.end);
        if (runsLeft) at.x -= step;
        const double drop = isVertical ? 0.0 : BaselineDrop(*span.style, segment.font.metrics) - span.shift;
        // Letters that lie on their side have the middle of their em on the line.
        constexpr double kQuarter = 90.0;
        const double middle = (segment.font.metrics.ascent - segment.font.metrics.descent) / 2.0;
        const ORVMathAffine2D turned =
            segment.isSideways
                ? Rotation(kQuarter) * ORVMathAffine2D::Translation(0.0, middle * span.style->fontSize)
                : ORVMathAffine2D();
        segment.toUser = ORVMathAffine2D::Translation(at.x, at.y) * Rotation(first.rotation) *
                         ORVMathAffine2D::Translation(isVertical ? span.shift : 0.0, drop) * turned *
                         GlyphsUp(segment);
        if (isVertical)
            at.y += step;
        else if (!runsLeft)
            at.x += step;
    }
    pen = at;
}

void TextLayout::PlaceOnPath(const Chunk& chunk, const Path& path, ORVMathPoint2D& pen) {
    const Style& firstStyle = *spans_[segments_[chunk.first].span].style;
    double length = 0.0;
    for (std::size_t i = chunk.first; i < chunk.end; ++i)
        length += segments_[i].advance + GapAfter(i, chunk.end) + characters_[segments_[i].first].dx;
    const Character& start = characters_[segments_[chunk.first].first];
    double at = path.offset - AnchorShare(firstStyle) * length + (start.hasX ? start.x : 0.0);
    double across = 0.0;
    const double whole = path.lengths.empty() ? 0.0 : path.lengths.back();
    for (std::size_t i = chunk.first; i < chunk.end; ++i) {
        TextSegment& segment = segments_[i];
        const TextSpan& span = spans_[segment.span];
        const Character& first = characters_[segment.first];
        at += first.dx;
        across += first.dy;
        const double middle = at + segment.advance / 2.0;
        segment.isShown = middle >= 0.0 && middle <= whole && path.points.size() > 1;
        if (segment.isShown) {
            auto next = static_cast<std::size_t>(
                std::lower_bound(path.lengths.begin() + 1, path.lengths.end(), middle) -
                path.lengths.begin());
            next = std::min(next, path.points.size() - 1);
            while (next + 1 < path.points.size() &&
                   (path.jumps[next] || path.lengths[next] <= path.lengths[next - 1]))
                ++next;
            const ORVMathPoint2D &from = path.points[next - 1], &to = path.points[next];
            const double piece = path.lengths[next] - path.lengths[next - 1];
            const double share = piece > 0.0 ? (middle - path.lengths[next - 1]) / piece : 0.0;
            const ORVMathPoint2D point{from.x + (to.x - from.x) * share, from.y + (to.y - from.y) * share};
            const double degrees = std::atan2(to.y - from.y, to.x - from.x) * 180.0 / std::numbers::pi;
            const double drop = BaselineDrop(*span.style, segment.font.metrics) - span.shift + across;
            segment.toUser = ORVMathAffine2D::Translation(point.x, point.y) * Rotation(degrees) *
                             ORVMathAffine2D::Translation(-segment.advance / 2.0, drop) *
                             Rotation(first.rotation) * GlyphsUp(segment);
            pen = ORVMathAffine2D(segment.toUser)({segment.advance, 0.0});
        }
        at += segment.advance + GapAfter(i, chunk.end);
    }
}

// ---- boxes ----

ORVMathBox2D TextLayout::BoxOf(const TextSegment& segment) const {
    const double size = spans_[segment.span].style->fontSize;
    const FontMetrics& metrics = segment.font.metrics;
    if (segment.isVertical && !segment.isSideways)
        return MapBox(segment.toUser, {-size / 2.0, size / 2.0, -segment.advance, 0.0});
    return MapBox(segment.toUser, {0.0, segment.advance, -metrics.descent * size, metrics.ascent * size});
}

ORVMathBox2D TextLayout::GetBox() const {
    ORVMathBox2D box;
    for (const TextSegment& segment : segments_)
        if (segment.isShown) Unite(box, BoxOf(segment));
    return box;
}

}  // namespace svg2
