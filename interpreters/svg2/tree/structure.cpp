// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/tree/structure.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "interpreters/svg2/values/scanner.h"
#include "platform/print/ORVPrintPreferences.h"
#include "platform/system/files.h"

namespace svg2 {
namespace {

/// The language of the locale, such as "en-US", in lower case.
std::string LanguageOfLocale() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* text = ORVGetEnv(variable);
        if (!text || *text == '\0') continue;
        std::string language(text);
        language.resize(std::min(language.find_first_of(".@"), language.size()));
        if (language == "C" || language == "POSIX") break;
        for (char& c : language) c = c == '_' ? '-' : ToLower(c);
        return language;
    }
    return "en";
}

/// The user's languages, set by the host or else taken from the locale.
const std::vector<std::string>& UserLanguages() {
    const std::vector<std::string>& stated = ORVPrintPreferences::Get().languages;
    if (!stated.empty()) return stated;
    static const std::vector<std::string> kOfLocale{LanguageOfLocale()};
    return kOfLocale;
}

/// Whether the languages are equal or one is a prefix of the other, followed by "-".
bool IsLanguageOf(std::string_view language, std::string_view lowerUser) {
    const std::size_t size = std::min(language.size(), lowerUser.size());
    if (size == 0 || !EqualsIgnoringCase(language.substr(0, size), lowerUser.substr(0, size))) return false;
    const std::string_view longer = language.size() > lowerUser.size() ? language : lowerUser;
    return longer.size() == size || longer[size] == '-';
}

bool PassesLanguage(std::string_view list) {
    for (;;) {
        const std::size_t comma = list.find(',');
        const std::string_view language = Trim(list.substr(0, comma));
        for (const std::string& read : UserLanguages())
            if (IsLanguageOf(language, read)) return true;
        if (comma == std::string_view::npos) return false;
        list.remove_prefix(comma + 1);
    }
}

/// A coordinate of a symbol's reference point: a length, or a keyword for a fraction of the content.
std::optional<double> FindReferencePoint(const Scene& scene, ElementIndex element, Name name,
                                         const Style& style, const Viewport& sizes,
                                         const Rectangle& content) {
    const bool isX = name == Name::kRefX;
    const std::string_view text = Trim(scene.GetDocument().ValueOf(element, name));
    constexpr std::pair<std::string_view, double> kWords[] = {
        {"left", 0.0}, {"top", 0.0}, {"center", 0.5}, {"right", 1.0}, {"bottom", 1.0}};
    for (const auto& [word, share] : kWords)
        if (EqualsIgnoringCase(text, word))
            return isX ? content.x + share * content.width : content.y + share * content.height;
    return scene.FindLength(element, name, style, sizes, isX ? Axis::kX : Axis::kY);
}

}  // namespace

std::optional<InnerViewport> FindInnerViewport(const Scene& scene, ElementIndex element, const Style& style,
                                               const Viewport& outer, ElementIndex use,
                                               const Style* useStyle) {
    const bool isSymbol = scene.GetDocument()[element].tag == Tag::kSymbol;
    const auto sizeOf = [&](Name name, Axis axis) {
        if (use != kNoElement)
            if (const auto size = scene.FindLength(use, name, *useStyle, outer, axis)) return *size;
        return scene.LengthOf(element, name, style, outer, axis, Scene::BaseOf(outer, axis));
    };
    InnerViewport inner;
    inner.rectangle.width = sizeOf(Name::kWidth, Axis::kX);
    inner.rectangle.height = sizeOf(Name::kHeight, Axis::kY);
    if (!(inner.rectangle.width > 0.0) || !(inner.rectangle.height > 0.0)) return std::nullopt;
    inner.rectangle.x = scene.LengthOf(element, Name::kX, style, outer, Axis::kX);
    inner.rectangle.y = scene.LengthOf(element, Name::kY, style, outer, Axis::kY);

    const std::optional<Rectangle> viewBox =
        ReadViewBox(scene.GetDocument().ValueOf(element, Name::kViewBox));
    if (viewBox) {
        if (viewBox->width == 0.0 || viewBox->height == 0.0) return std::nullopt;
        const AspectRatio ratio =
            ReadAspectRatio(scene.GetDocument().ValueOf(element, Name::kPreserveAspectRatio));
        inner.toOuter = FitViewBox(*viewBox, ratio, inner.rectangle);
        inner.sizes = {viewBox->width, viewBox->height};
    } else {
        inner.toOuter = ORVMathAffine2D::Translation(inner.rectangle.x, inner.rectangle.y);
        inner.sizes = {inner.rectangle.width, inner.rectangle.height};
    }
    if (isSymbol) {
        // The symbol's reference point is aligned with its position, on each axis for which it is specified.
        const Rectangle content =
            viewBox.value_or(Rectangle{0.0, 0.0, inner.sizes.width, inner.sizes.height});
        const auto refX = FindReferencePoint(scene, element, Name::kRefX, style, inner.sizes, content);
        const auto refY = FindReferencePoint(scene, element, Name::kRefY, style, inner.sizes, content);
        const ORVMathPoint2D point = inner.toOuter({refX.value_or(0.0), refY.value_or(0.0)});
        const double dx = refX ? inner.rectangle.x - point.x : 0.0,
                     dy = refY ? inner.rectangle.y - point.y : 0.0;
        inner.toOuter = ORVMathAffine2D::Translation(dx, dy) * inner.toOuter;
        inner.rectangle.x += dx;
        inner.rectangle.y += dy;
    }
    return inner;
}

std::optional<InnerViewport> FindRootViewport(const Document& document, const Viewport& page) {
    InnerViewport inner;
    inner.rectangle = {0.0, 0.0, page.width, page.height};
    inner.sizes = page;
    const auto viewBox = ReadViewBox(document.ValueOf(Document::kRoot, Name::kViewBox));
    if (!viewBox) return inner;
    if (viewBox->width == 0.0 || viewBox->height == 0.0) return std::nullopt;
    const AspectRatio ratio = ReadAspectRatio(document.ValueOf(Document::kRoot, Name::kPreserveAspectRatio));
    inner.toOuter = FitViewBox(*viewBox, ratio, inner.rectangle);
    inner.sizes = {viewBox->width, viewBox->height};
    return inner;
}

bool PassesConditions(const Document& document, ElementIndex element) {
    if (const auto extensions = document.Find(element, Name::kRequiredExtensions)) return false;
    const std::optional<std::string_view> language = document.Find(element, Name::kSystemLanguage);
    return !language || PassesLanguage(*language);
}

namespace {

ElementIndex FindOfSwitch(const Document& document, ElementIndex element) {
    for (ElementIndex child = document[element].firstChild; child != kNoElement;
         child = document[child].nextSibling) {
        switch (document[child].tag) {
            case Tag::kTitle:
            case Tag::kDesc:
            case Tag::kMetadata:
            case Tag::kForeignObject:
            case Tag::kUnknown: continue;
            default: break;
        }
        if (PassesConditions(document, child)) return child;
    }
    return kNoElement;
}

}  // namespace

ElementIndex ChooseOfSwitch(Scene& scene, ElementIndex element) {
    return scene.ChildOfSwitch(element, [&] { return FindOfSwitch(scene.GetDocument(), element); });
}

bool IsShownByUse(const Document& document, ElementIndex target, const Style& style) {
    return (style.isDisplayed || document[target].tag == Tag::kSymbol) && PassesConditions(document, target);
}

ElementIndex FindUseTarget(const Document& document, ElementIndex use) {
    const ElementIndex target = document.FindByReference(Trim(document.ValueOf(use, Name::kHref)));
    if (target == kNoElement || document.IsWithin(use, target)) return kNoElement;
    switch (document[target].tag) {
        case Tag::kSvg:
        case Tag::kSymbol:
        case Tag::kG:
        case Tag::kA:
        case Tag::kSwitch:
        case Tag::kUse:
        case Tag::kImage:
        case Tag::kText:
        case Tag::kPath:
        case Tag::kRect:
        case Tag::kCircle:
        case Tag::kEllipse:
        case Tag::kLine:
        case Tag::kPolyline:
        case Tag::kPolygon: return target;
        default: return kNoElement;
    }
}

}  // namespace svg2
