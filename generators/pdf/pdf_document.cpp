// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_document.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

#include "generators/pdf/pdf_file.h"
#include "generators/pdf/pdf_syntax.h"
#include "platform/system/ORVUnicodeString.h"

namespace {

constexpr std::string_view kProgram = "orvprint";

/// A time in the two formats that PDF uses. Both are empty if there is none, or if its year does not have
/// four digits.
struct Moment {
    std::string pdf, xmp;

    // Not with the C library, which would read the local time zone first.
    explicit Moment(const std::optional<std::int64_t>& since1970) {
        using namespace std::chrono;
        constexpr sys_seconds kFirst = sys_days(year(0) / January / 1);
        constexpr sys_seconds kEnd = sys_days(year(10000) / January / 1);
        if (!since1970 || *since1970 < kFirst.time_since_epoch().count() ||
            *since1970 >= kEnd.time_since_epoch().count())
            return;
        const sys_seconds moment{seconds(*since1970)};
        const year_month_day date(floor<days>(moment));
        const hh_mm_ss time(moment - floor<days>(moment));
        const auto write = [&](const char* format) {
            std::array<char, 64> text;
            std::snprintf(text.data(), text.size(), format, static_cast<int>(date.year()),
                          static_cast<unsigned int>(date.month()), static_cast<unsigned int>(date.day()),
                          static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                          static_cast<int>(time.seconds().count()));
            return std::string(text.data());
        };
        pdf = write("D:%04d%02u%02u%02d%02d%02dZ");
        xmp = write("%04d-%02u-%02uT%02d:%02d:%02dZ");
    }
};

void AppendXml(std::string& text, std::string_view utf8) {
    for (const char c : utf8) {
        switch (c) {
            case '<': text += "&lt;"; break;
            case '>': text += "&gt;"; break;
            case '&': text += "&amp;"; break;
            default:
                // XML allows no other control characters.
                if (static_cast<unsigned char>(c) >= 0x20 || c == '\t' || c == '\n') text += c;
        }
    }
}

void WriteTree(PdfFile& file, const PdfDocumentFacts& facts) {
    std::string tree = "<</Type/Pages/Count " + std::to_string(facts.pages.size()) + "/Kids[";
    for (const PdfPageEntry& page : facts.pages) {
        AppendPdfReference(tree, page.object);
        tree += ' ';
    }
    file.WriteObject(facts.pageTree, tree + "]>>");
}

/// @return entry for the catalogue, empty if there are no titles
std::string WriteOutline(PdfFile& file, const std::vector<PdfPageEntry>& pages) {
    if (std::all_of(pages.begin(), pages.end(), [](const PdfPageEntry& page) { return page.title.empty(); }))
        return {};
    const unsigned int outline = file.Reserve();
    std::vector<unsigned int> items;
    for (std::size_t i = 0; i < pages.size(); ++i) items.push_back(file.Reserve());
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const PdfPageEntry& page = pages[i];
        std::string item = "<</Title";
        AppendPdfText(item, !page.title.empty()   ? page.title
                            : !page.label.empty() ? page.label
                                                  : "Page " + std::to_string(i + 1));
        item += "/Parent " + PdfReference(outline);
        if (i > 0) item += "/Prev " + PdfReference(items[i - 1]);
        if (i + 1 < items.size()) item += "/Next " + PdfReference(items[i + 1]);
        file.WriteObject(items[i], item + "/Dest[" + PdfReference(page.object) + "/Fit]>>");
    }
    file.WriteObject(outline, "<</Type/Outlines/First " + PdfReference(items.front()) + "/Last " +
                                  PdfReference(items.back()) + "/Count " + std::to_string(items.size()) +
                                  ">>");
    return "/Outlines " + PdfReference(outline);
}

/// @return entry for the catalogue, empty if labels equal page numbers
std::string LabelEntry(const std::vector<PdfPageEntry>& pages) {
    if (std::all_of(pages.begin(), pages.end(), [](const PdfPageEntry& page) { return page.label.empty(); }))
        return {};
    std::string labels = "/PageLabels<</Nums[";
    for (std::size_t i = 0; i < pages.size(); ++i) {
        if (!pages[i].label.empty()) {
            labels += std::to_string(i) + "<</P";
            AppendPdfText(labels, pages[i].label);
            labels += ">>";
        } else if (i == 0 || !pages[i - 1].label.empty()) {
            labels += std::to_string(i) + "<</S/D/St " + std::to_string(i + 1) + ">>";
        }
    }
    return labels + "]>>";
}

/// @return entry for the catalogue
std::string WriteXmp(PdfFile& file, const std::string& title, const Moment& created) {
    std::string xmp =
        "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
        "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
        "<rdf:Description rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\""
        " xmlns:pdf=\"http://ns.adobe.com/pdf/1.3/\" xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\">\n"
        "<dc:format>application/pdf</dc:format>\n";
    if (!title.empty()) {
        xmp += "<dc:title><rdf:Alt><rdf:li xml:lang=\"x-default\">";
        AppendXml(xmp, title);
        xmp += "</rdf:li></rdf:Alt></dc:title>\n";
    }
    xmp += "<pdf:Producer>" + std::string(kProgram) + "</pdf:Producer>\n<xmp:CreatorTool>" +
           std::string(kProgram) + "</xmp:CreatorTool>\n";
    if (!created.xmp.empty())
        xmp += "<xmp:CreateDate>" + created.xmp + "</xmp:CreateDate>\n<xmp:ModifyDate>" + created.xmp +
               "</xmp:ModifyDate>\n";
    xmp += "</rdf:Description>\n</rdf:RDF>\n</x:xmpmeta>\n<?xpacket end=\"r\"?>";
    const unsigned int object = file.Reserve();
    file.WriteStream(object, "/Type/Metadata/Subtype/XML", std::move(xmp), PdfFile::Packing::kStored);
    return "/Metadata " + PdfReference(object);
}

/// @return entry for the catalogue, empty if there are no destinations
std::string WriteTargets(PdfFile& file, const std::map<std::string, std::string>& targets) {
    if (targets.empty()) return {};
    std::string names = "<</Names[";
    for (const auto& [name, place] : targets) {
        AppendPdfBytes(names, name);
        names += place;
    }
    const unsigned int object = file.Reserve();
    file.WriteObject(object, names + "]>>");
    return "/Names<</Dests " + PdfReference(object) + ">>";
}

unsigned int WriteInfo(PdfFile& file, const std::string& title, const Moment& created) {
    std::string info = "<<";
    for (const char* key : {"/Creator", "/Producer"}) {
        info += key;
        AppendPdfText(info, kProgram);
    }
    if (!title.empty()) {
        info += "/Title";
        AppendPdfText(info, title);
    }
    if (!created.pdf.empty()) info += "/CreationDate(" + created.pdf + ")/ModDate(" + created.pdf + ")";
    const unsigned int object = file.Reserve();
    file.WriteObject(object, info + ">>");
    return object;
}

}  // namespace

void FinishPdfDocument(PdfFile& file, const PdfDocumentFacts& facts) {
    const Moment created(facts.creationTime);
    // Both kinds of metadata contain the same, valid UTF-8.
    const std::string title = ORVIsWellFormedUTF8(facts.title) ? facts.title : std::string();
    WriteTree(file, facts);
    std::string catalogue = "<</Type/Catalog/Pages " + PdfReference(facts.pageTree);
    catalogue += WriteOutline(file, facts.pages);
    catalogue += LabelEntry(facts.pages);
    catalogue += WriteTargets(file, facts.targets);
    catalogue += facts.layers;
    catalogue += WriteXmp(file, title, created);
    if (!title.empty()) catalogue += "/ViewerPreferences<</DisplayDocTitle true>>";
    const unsigned int object = file.Reserve();
    file.WriteObject(object, catalogue + ">>");
    file.Finish(object, WriteInfo(file, title, created));
}
