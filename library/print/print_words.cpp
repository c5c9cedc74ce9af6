// SPDX-License-Identifier: Apache-2.0
#include "library/print/print_words.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <system_error>

#include "generators/formats.h"

namespace {

std::string Quoted(const std::string& text) { return "'" + text + "' "; }

std::string Lower(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return text;
}

template <class Number>
bool ReadNumber(const std::string& text, double least, double most, Number& number) {
    Number read{};
    const char* const end = text.data() + text.size();
    const auto [stop, status] = std::from_chars(text.data(), end, read);
    const bool isRead = status == std::errc{} && stop == end && static_cast<double>(read) >= least &&
                        static_cast<double>(read) <= most;
    if (isRead) number = read;
    return isRead;
}

bool ReadSwitch(const std::string& text, bool& flag) {
    if (!text.empty() && text != "true" && text != "false") return false;
    flag = text != "false";
    return true;
}

bool IsFolder(const std::string& path) {
    struct stat facts {};
    return stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

bool IsLanguageList(const std::string& text) {
    const auto isPart = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
               c == ',' || c == ' ';
    };
    return text.find_first_not_of(", ") != std::string::npos && std::all_of(text.begin(), text.end(), isPart);
}

/// Parses a value. Returns the error, worded to follow the value; empty on success.
using Reader = std::string (*)(const std::string& value, PrintWords& words);

std::string ReadLimit(const std::string& value, PrintWords& words) {
    const std::size_t sign = value.find('=');
    const ORVPrintLimits::Row* row = ORVPrintLimits::Find(std::string_view(value).substr(0, sign));
    if (!row) return "is not a limit, such as primitives=1000000";
    const std::string number = sign == std::string::npos ? std::string() : value.substr(sign + 1);
    std::uint64_t read = 0;
    const auto [end, status] = std::from_chars(number.data(), number.data() + number.size(), read);
    if (number.empty() || status != std::errc{} || end != number.data() + number.size() ||
        read > row->greatest)
        return "needs a whole number of at most " + std::to_string(row->greatest) + ", as in " +
               std::string(row->name) + "=" + std::to_string(row->unchecked);
    words.read.limits.Set(row->limit, read);
    return {};
}

std::string ReadFormat(const std::string& value, PrintWords& words) {
    if (!ORVFindOutputFormat(value)) {
        std::string names;
        for (const ORVOutputFormat& format : ORVOutputFormats())
            names += (names.empty() ? "" : ", ") + std::string(format.name);
        return "is not an output format; there are " + names;
    }
    words.pages.format = value;
    return {};
}

std::string ReadPages(const std::string& value, PrintWords& words) {
    std::string error;
    return words.pages.page.pages.Parse(value, error) ? std::string() : "is no list of pages: " + error;
}

std::string ReadIgnored(const std::string& value, PrintWords& words) {
    const FindingKind* kind = FindFindingKind(value);
    if (!kind) return "is not a kind of finding";
    words.ignored.insert(kind->code);
    return {};
}

std::string ReadInterpreter(const std::string& value, PrintWords& words) {
    const std::string name = Lower(value);
    if (name != "svg" && name != "svg2") return "is not an interpreter: svg or svg2";
    words.read.drawing.interpreter = name == "svg" ? "SVG" : "SVG2";
    return {};
}

std::string ReadParser(const std::string& value, PrintWords& words) {
    if (value != "light" && value != "dom") return "is not a parser: light or dom";
    words.read.drawing.parser = value;
    return {};
}

std::string ReadOrientation(const std::string& value, PrintWords& words) {
    const std::string name = Lower(value);
    if (name != "auto" && name != "portrait" && name != "landscape")
        return "is not an orientation: auto, portrait or landscape";
    words.pages.sheet.orientation = name;
    return {};
}

std::string ReadLanguages(const std::string& value, PrintWords& words) {
    if (!IsLanguageList(value)) return "is not a list of languages, such as de,en-GB";
    words.read.drawing.languages = value;
    return {};
}

std::string ReadFolder(const std::string& value, PrintWords& words) {
    if (!IsFolder(value)) return "is not a folder";
    words.read.drawing.allowedFolders.push_back(value);
    return {};
}

std::string ReadElement(const std::string& value, PrintWords& words) {
    if (value.empty()) return "is no id: it has one character at least";
    words.pages.page.elementId = value;
    return {};
}

template <auto kMember>
std::string ReadFlag(const std::string& value, PrintWords& words) {
    return ReadSwitch(value, kMember(words)) ? std::string() : "is neither true nor false";
}

template <auto kMember>
std::string ReadText(const std::string& value, PrintWords& words) {
    kMember(words) = value;
    return {};
}

template <auto kMember, int kLeastThousandths, int kMost>
std::string ReadDouble(const std::string& value, PrintWords& words) {
    constexpr double kLeast = kLeastThousandths / 1000.0;
    double number = 0.0;
    if (!ReadNumber(value, kLeast, kMost, number)) {
        std::array<char, 32> least{};
        char* const end = std::to_chars(least.data(), least.data() + least.size(), kLeast).ptr;
        return "is not a number from " + std::string(least.data(), end) + " to " + std::to_string(kMost);
    }
    kMember(words) = number;
    return {};
}

template <auto kMember, unsigned int kLeast, unsigned int kMost>
std::string ReadCount(const std::string& value, PrintWords& words) {
    unsigned int number = 0;
    if (!ReadNumber(value, kLeast, kMost, number))
        return "is not a whole number from " + std::to_string(kLeast) + " to " + std::to_string(kMost);
    kMember(words) = number;
    return {};
}

std::string ReadZoom(const std::string& value, PrintWords& words) {
    double zoom = 0.0;
    if (!ReadNumber(value, kSmallestZoom, kGreatestZoom, zoom)) return "is not a factor from 0.0001 to 10000";
    words.pages.size.zoom = zoom;
    return {};
}

std::string ReadStrokeScale(const std::string& value, PrintWords& words) {
    double factor = 0.0;
    // The upper limit is checked when the options are interpreted together.
    if (!ReadNumber(value, 0.0, HUGE_VAL, factor)) return "is not a factor, such as 1.5";
    words.pages.sheet.strokeScale = factor;
    return {};
}

struct Row {
    std::string_view key;
    WordUse use;
    Reader read;
};

#define ORV_MEMBER(path) \
    [](PrintWords & words) -> auto& { return words.path; }

constexpr int kGreatestSidePx = static_cast<int>(kGreatestSide);

constexpr std::array kRows{
    Row{"interpreter", WordUse::kReading, ReadInterpreter},
    Row{"parser", WordUse::kReading, ReadParser},
    Row{"qvxml", WordUse::kReading, ReadFlag<ORV_MEMBER(read.drawing.qvxml)>},
    Row{"fragment", WordUse::kReading, ReadText<ORV_MEMBER(read.drawing.fragment)>},
    Row{"keep-going", WordUse::kReading, ReadFlag<ORV_MEMBER(read.drawing.keepGoing)>},
    Row{"allow-dir", WordUse::kReading, ReadFolder},
    Row{"no-file-images", WordUse::kReading, ReadFlag<ORV_MEMBER(read.readsNoFiles)>},
    Row{"limit", WordUse::kReading, ReadLimit},
    Row{"language", WordUse::kReading, ReadLanguages},
    Row{"font-size", WordUse::kReading, ReadDouble<ORV_MEMBER(read.drawing.fontSize), 100, 10000>},
    Row{"format", WordUse::kPrinting, ReadFormat},
    Row{"pages", WordUse::kPrinting, ReadPages},
    Row{"dpi", WordUse::kPrinting, ReadDouble<ORV_MEMBER(pages.dotsPerInch), 1000, 10000>},
    Row{"flatten-dpi", WordUse::kPrinting,
        ReadDouble<ORV_MEMBER(pages.page.flattenDotsPerInch), 1000, 10000>},
    Row{"threads", WordUse::kPrinting, ReadCount<ORV_MEMBER(pages.page.threads), 0, 1024>},
    Row{"paper", WordUse::kPrinting, ReadText<ORV_MEMBER(pages.sheet.paper)>},
    Row{"orientation", WordUse::kPrinting, ReadOrientation},
    Row{"scale", WordUse::kPrinting, ReadText<ORV_MEMBER(pages.sheet.scale)>},
    Row{"margin", WordUse::kPrinting, ReadText<ORV_MEMBER(pages.sheet.margin)>},
    Row{"align", WordUse::kPrinting, ReadText<ORV_MEMBER(pages.sheet.align)>},
    Row{"tile", WordUse::kPrinting, ReadFlag<ORV_MEMBER(pages.sheet.isPoster)>},
    Row{"overlap", WordUse::kPrinting, ReadText<ORV_MEMBER(pages.sheet.overlap)>},
    Row{"nup", WordUse::kPrinting, ReadCount<ORV_MEMBER(pages.sheet.pagesPerSheet), 1, kMostPagesPerSheet>},
    Row{"grey", WordUse::kPrinting, ReadFlag<ORV_MEMBER(pages.sheet.isGrey)>},
    Row{"gray", WordUse::kPrinting, ReadFlag<ORV_MEMBER(pages.sheet.isGrey)>},
    Row{"mono", WordUse::kPrinting, ReadFlag<ORV_MEMBER(pages.sheet.isMono)>},
    Row{"stroke-scale", WordUse::kPrinting, ReadStrokeScale},
    Row{"min-stroke", WordUse::kPrinting, ReadText<ORV_MEMBER(pages.sheet.leastLineWidth)>},
    Row{"width", WordUse::kPrinting, ReadDouble<ORV_MEMBER(pages.size.width), 1000, kGreatestSidePx>},
    Row{"height", WordUse::kPrinting, ReadDouble<ORV_MEMBER(pages.size.height), 1000, kGreatestSidePx>},
    Row{"zoom", WordUse::kPrinting, ReadZoom},
    Row{"background", WordUse::kPrinting, ReadText<ORV_MEMBER(pages.size.background)>},
    Row{"export-id", WordUse::kPrinting, ReadElement},
    Row{"ignore", WordUse::kChecking, ReadIgnored},
};

#undef ORV_MEMBER

const char* NameOf(WordUse use) {
    switch (use) {
        case WordUse::kReading: return "for opening a document";
        case WordUse::kPrinting: return "for rendering";
        case WordUse::kChecking: break;
    }
    return "for checking";
}

/// The first given option that conflicts with a size in pixels.
std::string FindOtherSize(const PageWords& words) {
    const SheetWords& sheet = words.sheet;
    const bool isGiven[] = {words.dotsPerInch.has_value(),
                            sheet.paper.has_value(),
                            sheet.orientation.has_value(),
                            sheet.scale.has_value(),
                            sheet.margin.has_value(),
                            sheet.align.has_value(),
                            sheet.isPoster,
                            sheet.pagesPerSheet.has_value()};
    static_assert(std::size(isGiven) == std::size(kOtherSizes));
    const auto* const given = std::find(std::begin(isGiven), std::end(isGiven), true);
    return given == std::end(isGiven) ? std::string() : kOtherSizes[given - isGiven];
}

}  // namespace

std::optional<WordUse> UseOfWord(std::string_view key) {
    const auto* const row =
        std::find_if(kRows.begin(), kRows.end(), [&](const Row& known) { return known.key == key; });
    return row == kRows.end() ? std::nullopt : std::optional(row->use);
}

int SetWord(WordUse use, std::string_view key, const std::string& value, PrintHost& host, PrintWords& words) {
    const auto* const row =
        std::find_if(kRows.begin(), kRows.end(), [&](const Row& known) { return known.key == key; });
    const std::string name = "--" + std::string(key);
    if (row == kRows.end()) return host.Report(kResultUsage, name, "is not an option");
    if (row->use != use)
        return host.Report(kResultUsage, name,
                           std::string("is an option ") + NameOf(row->use) + ", not " + NameOf(use));
    const std::string reason = row->read(value, words);
    return reason.empty() ? static_cast<int>(kResultDone)
                          : host.Report(kResultUsage, name, Quoted(value) + reason);
}

int ReadPageWords(const PageWords& words, bool isStandard, PrintHost& host, PageOptions& options) {
    PageOptions read = words.page;
    if (words.dotsPerInch) read.dotsPerInch = *words.dotsPerInch;
    if (const int code = ReadSheetWords(words.sheet, host, read.sheet); code != kResultDone) return code;
    SizeWords size = words.size;
    size.otherSize = FindOtherSize(words);
    if (const int code = ReadSizeWords(size, isStandard, host, read); code != kResultDone) return code;
    options = std::move(read);
    return kResultDone;
}
