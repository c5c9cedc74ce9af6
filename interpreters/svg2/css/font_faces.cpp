// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/css/font_faces.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>

#include "interpreters/svg2/css/declarations.h"
#include "interpreters/svg2/css/property_rows.h"
#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

constexpr char32_t kLastCodePoint = 0x10FFFF;

std::string_view Unquoted(std::string_view text) {
    text = Trim(text);
    Scanner scanner(text);
    std::string_view inside;
    return scanner.TakeString(inside) ? Trim(inside) : text;
}

std::string NormalFamily(std::string_view name) {
    std::string normal;
    for (const char c : Unquoted(name)) {
        if (!IsSpace(c))
            normal += ToLower(c);
        else if (normal.empty() || normal.back() != ' ')
            normal += ' ';
    }
    return normal;
}

/// True for font formats that can be read, and if the format is not stated.
bool IsReadFormat(std::string_view format) {
    constexpr std::string_view kFormats[] = {"truetype",
                                             "opentype",
                                             "woff",
                                             "woff2",
                                             "truetype-variations",
                                             "opentype-variations",
                                             "woff-variations",
                                             "woff2-variations",
                                             "collection"};
    return std::any_of(std::begin(kFormats), std::end(kFormats),
                       [&](std::string_view known) { return EqualsIgnoringCase(format, known); });
}

/// One entry of "src".
void AddSource(std::string_view entry, std::vector<FontSource>& sources) {
    Scanner scanner(Trim(entry));
    const std::string_view function = scanner.TakeName();
    std::string_view inside;
    if (!scanner.TakeParentheses(inside)) return;
    FontSource source;
    source.text = Unquoted(inside);
    if (EqualsIgnoringCase(function, "local"))
        source.kind = FontSource::Kind::kLocal;
    else if (!EqualsIgnoringCase(function, "url"))
        return;
    else if (EqualsIgnoringCase(source.text.substr(0, 5), "data:"))
        source.kind = FontSource::Kind::kData;
    scanner.SkipSpace();
    if (EqualsIgnoringCase(scanner.TakeName(), "format") && scanner.TakeParentheses(inside) &&
        !IsReadFormat(Unquoted(inside)))
        return;
    sources.push_back(source);
}

void ReadSources(std::string_view text, std::vector<FontSource>& sources) {
    sources.clear();
    for (Scanner scanner(text); !scanner.AtEnd(); scanner.Take(','))
        AddSource(scanner.TakeUntil(","), sources);
}

/// "400", "bold", "100 900", "75% 125%".
template <class Read>
void ReadSpan(std::string_view text, Read read, std::pair<double, double>& span) {
    const std::size_t end = std::min(text.find_first_of(" \t\r\n\f"), text.size());
    std::pair<double, double> both;
    if (!read(text.substr(0, end), both.first)) return;
    both.second = both.first;
    if (const std::string_view second = Trim(text.substr(end)); !second.empty() && !read(second, both.second))
        return;
    span = std::minmax(both.first, both.second);
}

bool ReadWeight(std::string_view text, double& weight) {
    constexpr Keyword<double> kWeights[] = {{"normal", 400.0}, {"bold", 700.0}, {"auto", 400.0}};
    if (ReadKeyword(kWeights, text, weight)) return true;
    double number = 0.0;
    if (!ReadNumber(text, number) || number < 1.0 || number > 1000.0) return false;
    weight = number;
    return true;
}

bool ReadHex(std::string_view text, char32_t& value) {
    std::uint32_t number = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    if (end.ec != std::errc() || end.ptr != text.data() + text.size()) return false;
    value = std::min<char32_t>(number, kLastCodePoint);
    return true;
}

/// "U+26", "U+0-7F", "U+4??".
bool ReadRange(std::string_view text, std::pair<char32_t, char32_t>& range) {
    if (text.size() < 3 || ToLower(text[0]) != 'u' || text[1] != '+') return false;
    text.remove_prefix(2);
    const std::size_t dash = text.find('-');
    if (dash != std::string_view::npos)
        return ReadHex(text.substr(0, dash), range.first) && ReadHex(text.substr(dash + 1), range.second);
    constexpr std::size_t kMostDigits = 6;
    if (text.size() > kMostDigits) return false;
    std::string first(text), last(text);
    std::replace(first.begin(), first.end(), '?', '0');
    std::replace(last.begin(), last.end(), '?', 'F');
    return ReadHex(first, range.first) && ReadHex(last, range.second);
}

void ReadRanges(std::string_view text, std::vector<std::pair<char32_t, char32_t>>& ranges) {
    std::vector<std::pair<char32_t, char32_t>> read;
    for (Scanner scanner(text); !scanner.AtEnd(); scanner.Take(',')) {
        std::pair<char32_t, char32_t> range;
        if (!ReadRange(Trim(scanner.TakeUntil(",")), range)) return;  // the whole range is ignored
        read.push_back(range);
    }
    ranges = std::move(read);
}

}  // namespace

bool ReadFontFace(std::string_view block, FontFaceRule& rule) {
    Scanner scanner(block);
    for (Declaration declaration; TakeDeclaration(scanner, declaration);) {
        const auto [name, value, isImportant] = declaration;
        if (EqualsIgnoringCase(name, "font-family")) {
            rule.writtenFamily = Unquoted(value);
            rule.family = NormalFamily(value);
        } else if (EqualsIgnoringCase(name, "src")) {
            ReadSources(value, rule.sources);
        } else if (EqualsIgnoringCase(name, "font-weight")) {
            ReadSpan(value, ReadWeight, rule.weights);
        } else if (EqualsIgnoringCase(name, "font-stretch") || EqualsIgnoringCase(name, "font-width")) {
            ReadSpan(value, ReadFontStretch, rule.stretches);
        } else if (EqualsIgnoringCase(name, "font-style")) {
            ReadFontStyle(value, rule.isItalic);
        } else if (EqualsIgnoringCase(name, "unicode-range")) {
            ReadRanges(value, rule.ranges);
        } else if (!EqualsIgnoringCase(name, "font-display")) {
            rule.ignored = name;
        }
    }
    return !rule.family.empty() && !rule.sources.empty();
}

std::vector<std::string> SplitFamilies(std::string_view list) {
    constexpr std::size_t kMostFamilies = 64;
    std::vector<std::string> families;
    for (Scanner scanner(list); !scanner.AtEnd() && families.size() < kMostFamilies; scanner.Take(','))
        if (std::string family = NormalFamily(scanner.TakeUntil(",")); !family.empty())
            families.push_back(std::move(family));
    return families;
}

}  // namespace svg2
