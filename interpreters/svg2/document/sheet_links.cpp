// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/document/sheet_links.h"

#include <utility>

#include "interpreters/svg2/document/outer_files.h"
#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

/// The pseudo-attributes of an instruction.
struct SheetLink {
    std::string href, type, media;
    bool isAlternate = false;  // an alternate sheet, to be selected by the user
};

/// Replaces the predefined entity references.
std::string Meant(std::string_view text) {
    constexpr std::pair<std::string_view, char> kReferences[] = {
        {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};
    std::string meant;
    while (!text.empty()) {
        char c = text.front();
        std::size_t size = 1;
        for (const auto& [reference, character] : kReferences) {
            if (!text.starts_with(reference)) continue;
            c = character;
            size = reference.size();
        }
        meant += c;
        text.remove_prefix(size);
    }
    return meant;
}

SheetLink ReadLink(std::string_view instruction) {
    SheetLink link;
    Scanner scanner(instruction);
    for (;;) {
        scanner.SkipSpace();
        const std::string_view name = scanner.TakeName();
        std::string_view value;
        if (name.empty() || !scanner.TakeAfterSpace('=')) return link;
        scanner.SkipSpace();
        if (!scanner.TakeString(value)) return link;
        if (name == "href")
            link.href = Meant(value);
        else if (name == "type")
            link.type = Meant(value);
        else if (name == "media")
            link.media = Meant(value);
        else if (name == "alternate")
            link.isAlternate = value == "yes";
    }
}

/// Takes everything up to and including `end`.
/// @return false if it does not occur
bool TakeUpTo(std::string_view& rest, std::string_view end, std::string_view& taken) {
    const std::size_t at = rest.find(end);
    if (at == std::string_view::npos) return false;
    taken = rest.substr(0, at);
    rest.remove_prefix(at + end.size());
    return true;
}

std::vector<SheetLink> FindLinks(std::string_view document) {
    constexpr std::string_view kName = "<?xml-stylesheet", kByteOrderMark = "\xEF\xBB\xBF";
    std::vector<SheetLink> links;
    std::string_view rest = document, taken;
    if (rest.starts_with(kByteOrderMark)) rest.remove_prefix(kByteOrderMark.size());
    for (;;) {
        while (!rest.empty() && IsSpace(rest.front())) rest.remove_prefix(1);
        if (rest.starts_with("<!--")) {
            if (!TakeUpTo(rest, "-->", taken)) return links;
        } else if (rest.starts_with("<?")) {
            if (!TakeUpTo(rest, "?>", taken)) return links;
            if (taken.starts_with(kName) && taken.size() > kName.size() && IsSpace(taken[kName.size()]))
                links.push_back(ReadLink(taken.substr(kName.size())));
        } else if (rest.starts_with("<!DOCTYPE")) {
            // A document type with an internal subset ends after it.
            const std::size_t subset = rest.find('['), end = rest.find('>');
            if (!TakeUpTo(rest, subset < end ? "]" : ">", taken)) return links;
            if (subset < end && !TakeUpTo(rest, ">", taken)) return links;
        } else {
            return links;
        }
    }
}

}  // namespace

std::vector<OuterSheet> ReadOuterSheets(std::string_view document, const ORVUnicodeString& path,
                                        std::vector<std::string>* lost) {
    std::vector<OuterSheet> sheets;
    for (const SheetLink& link : FindLinks(document)) {
        if (link.isAlternate || (!link.type.empty() && !EqualsIgnoringCase(link.type, "text/css"))) continue;
        std::string text;
        if (ReadOuterFile(link.href, path, text))
            sheets.push_back({std::move(text), link.media});
        else if (lost)
            lost->push_back(link.href);
    }
    return sheets;
}

}  // namespace svg2
