// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/ORVPdfGenerator.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"
#include "generators/common/number_text.h"
#include "generators/pdf/pdf_content.h"
#include "generators/pdf/pdf_content_layers.h"
#include "generators/pdf/pdf_document.h"
#include "generators/pdf/pdf_file.h"
#include "generators/pdf/pdf_fonts.h"
#include "generators/pdf/pdf_images.h"
#include "generators/pdf/pdf_object_pool.h"
#include "generators/pdf/pdf_parts.h"
#include "generators/pdf/pdf_syntax.h"
#include "platform/print/link_addresses.h"

namespace {

constexpr double kPointsPerUserUnit = 72.0 / 90.0;
// PDF limits page sides to 14,400 units of one point.
constexpr double kLargestSide = 14'400.0;

/// Percent-encodes a URL for a literal string. Existing escapes are kept.
std::string EncodeAddress(std::string_view address) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    constexpr std::string_view kEncoded = "\"'<>()\\";
    std::string result;
    for (const char c : address) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > 0x20 && byte < 0x7F && kEncoded.find(c) == kEncoded.npos) {
            result += c;
        } else {
            result += '%';
            result += kDigits[byte >> 4U];
            result += kDigits[byte & 15U];
        }
    }
    return result;
}

}  // namespace

struct ORVPdfGenerator::State {
    State(ORVOutput& sink, std::optional<std::int64_t> creationTime) : output(sink) {
        facts.creationTime = creationTime;
    }

    int Check() {
        if (file && file->IsGood()) return kGeneratorDone;
        if (!output.GetError().empty()) return kOutputFailed;
        failure = ORVFailure::OutOfMemory();  // of the compressor
        return kDrawingFailed;
    }

    struct OpenGroup {
        std::string target;  // destination name, if it is a link target
        std::string action;  // action of its link, if it is a link
        bool isLayer = false;
        bool HasBox() const { return !target.empty() || !action.empty(); }
    };
    /// Calls `draw` with the content being drawn on.
    template <class Draw>
    int DrawOn(Draw draw) {
        if (!page) return kDrawingFailed;
        draw(page->GetTop());
        return Check();
    }
    /// Calls `change` with the stack of open content. @param change  returns false if the call is out of
    /// order
    template <class Change>
    int ChangeParts(Change change) {
        return page && change(*page) ? Check() : static_cast<int>(kDrawingFailed);
    }
    void EndBox(const OpenGroup& group);
    void EndLayer();
    void EndPage();

    ORVOutput& output;
    std::optional<PdfFile> file;
    PdfFontTable fonts;
    PdfImageTable images;
    std::optional<PdfObjectPool> pool;
    std::optional<PdfDocumentObjects> objects;
    std::unordered_map<const void*, PdfForm> forms;
    PdfContentLayers layers;
    PdfDocumentFacts facts;
    ORVFailure failure;

    std::optional<PdfParts> page;  // the open page and its nested content
    double height = 0.0, width = 0.0;
    ORVMathBox2D trim;
    std::vector<OpenGroup> groups;
    bool insideLink = false;
    std::vector<unsigned int> annotations;
};

ORVPdfGenerator::ORVPdfGenerator(ORVOutput& output, std::optional<std::int64_t> creationTime)
    : state_(std::make_unique<State>(output, creationTime)) {}

ORVPdfGenerator::~ORVPdfGenerator() = default;

const ORVFailure& ORVPdfGenerator::GetFailure() const { return state_->failure; }

int ORVPdfGenerator::BeginDocument(const ORVPrintDocumentInfo& info) {
    State& state = *state_;
    if (state.output.BeginPart() != 1) return kOutputFailed;
    state.facts.title = info.title;
    state.file.emplace(state.output);
    state.pool.emplace(*state.file);
    state.objects.emplace(PdfDocumentObjects{*state.file, state.fonts, state.images, *state.pool});
    state.facts.pageTree = state.file->Reserve();
    return state.Check();
}

int ORVPdfGenerator::BeginPage(const ORVPrintPageInfo& info) {
    State& state = *state_;
    if (!state.objects || state.page) return kDrawingFailed;
    if (!(info.width * kPointsPerUserUnit <= kLargestSide) ||
        !(info.height * kPointsPerUserUnit <= kLargestSide)) {
        state.failure =
            ORVFailure::Of(ORVFailureReason::kNotDrawn,
                           "page " + std::to_string(info.number) +
                               " is larger than PDF allows (5080 mm); fit it to a sheet with --paper");
        return kPageTooLarge;
    }
    state.width = info.width;
    state.height = info.height;
    state.trim = info.trim;
    state.layers.BeginPage();
    state.facts.pages.push_back({state.file->Reserve(), std::string(info.title), std::string(info.label)});
    state.page.emplace(*state.objects, state.forms, info.width, info.height);
    return state.Check();
}

int ORVPdfGenerator::BeginGroup(const ORVPrintGroup& group) {
    State& state = *state_;
    if (!state.page || state.page->CountSymbols() > 0) return kDrawingFailed;
    State::OpenGroup open;
    if (state.page->CountMasksAndTiles() > 0) {
        state.groups.push_back(std::move(open));  // links in invisible content are ignored
        return kGeneratorDone;
    }
    if (group.isLinkTarget) open.target = group.id;
    // A link inside another link is ignored: the outer link applies.
    if (!state.insideLink && !group.linkURL.empty() && !ORVIsScriptAddress(group.linkURL))
        open.action = "/A<</S/URI/URI(" + EncodeAddress(group.linkURL) + ")>>";
    else if (!state.insideLink && !group.linkElementId.empty())
        AppendPdfBytes(open.action = "/Dest", group.linkElementId);
    if (!open.action.empty()) state.insideLink = true;
    if (group.layer) {
        open.isLayer = true;
        state.page->GetTop().BeginLayer(state.layers.Begin(*group.layer, *state.file));
    }
    if (open.HasBox()) state.page->GetPage().BeginBox();
    state.groups.push_back(std::move(open));
    return kGeneratorDone;
}

void ORVPdfGenerator::State::EndBox(const OpenGroup& group) {
    const ORVMathBox2D box = page->GetPage().EndBox();
    const auto toPoints = [&](double x, double y) {
        std::string text;
        AppendDecimal(text, x * kPointsPerUserUnit, kPdfPlaces);
        text += ' ';
        AppendDecimal(text, (height - y) * kPointsPerUserUnit, kPdfPlaces);
        return text;
    };
    if (!group.target.empty()) {
        // A link target without content leads to the page as a whole.
        const std::string corner = box.IsEmpty() ? toPoints(0.0, 0.0) : toPoints(box.xMin, box.yMin);
        facts.targets.try_emplace(
            group.target, "[" + PdfReference(facts.pages.back().object) + "/XYZ " + corner + " null]");
    }
    if (group.action.empty()) return;
    insideLink = false;
    if (box.IsEmpty()) return;
    const unsigned int object = file->Reserve();
    annotations.push_back(object);
    file->WriteObject(object, "<</Type/Annot/Subtype/Link/F 4/Border[0 0 0]/Rect[" +
                                  toPoints(box.xMin, box.yMax) + " " + toPoints(box.xMax, box.yMin) + "]" +
                                  group.action + ">>");
}

void ORVPdfGenerator::State::EndLayer() {
    page->GetTop().EndLayer();
    layers.End();
}

int ORVPdfGenerator::EndGroup() {
    State& state = *state_;
    if (!state.page || state.groups.empty()) return kDrawingFailed;
    if (state.groups.back().HasBox()) state.EndBox(state.groups.back());
    if (state.groups.back().isLayer) state.EndLayer();
    state.groups.pop_back();
    return kGeneratorDone;
}

int ORVPdfGenerator::BeginClip(const ORVMathBox2D& box) {
    return state_->DrawOn([&](PdfContent& content) { content.BeginClip(box); });
}

int ORVPdfGenerator::EndClip() {
    return state_->ChangeParts([](PdfParts& parts) { return parts.GetTop().EndClip(); });
}

int ORVPdfGenerator::BeginClipPath(const ORVPrintClipPath& clip) {
    return state_->DrawOn([&](PdfContent& content) { content.BeginClipPath(clip); });
}

int ORVPdfGenerator::BeginLayer(const ORVPrintLayer& layer) {
    return state_->ChangeParts([&](PdfParts& parts) {
        parts.BeginLayer(layer);
        return true;
    });
}

int ORVPdfGenerator::EndLayer() {
    return state_->ChangeParts([](PdfParts& parts) { return parts.EndLayer(); });
}

int ORVPdfGenerator::BeginMask(const ORVPrintMask& mask) {
    return state_->ChangeParts([&](PdfParts& parts) { return parts.BeginMask(mask); });
}

int ORVPdfGenerator::EndMask() {
    return state_->ChangeParts([](PdfParts& parts) { return parts.EndMask(); });
}

int ORVPdfGenerator::BeginSymbol(const ORVPrintSymbol& symbol) {
    if (!state_->page) return kDrawingFailed;
    if (state_->page->BeginSymbol(symbol)) return kDrawSymbol;
    const int result = state_->Check();
    return result == kGeneratorDone ? kSymbolKnown : result;
}

int ORVPdfGenerator::EndSymbol() {
    return state_->ChangeParts([](PdfParts& parts) { return parts.EndSymbol(); });
}

int ORVPdfGenerator::BeginTiles(const ORVPrintTiles& tiles) {
    // Some viewers misplace gradients and nested patterns in cells.
    if (!tiles.isPlain) return kNoTiles;
    return state_->ChangeParts([&](PdfParts& parts) {
        parts.BeginTiles(tiles);
        return true;
    });
}

int ORVPdfGenerator::EndTiles() {
    return state_->ChangeParts([](PdfParts& parts) { return parts.EndTiles(); });
}

int ORVPdfGenerator::DrawShape(const ORVPrintShape& shape) {
    return state_->DrawOn([&](PdfContent& content) { content.DrawShape(shape); });
}

int ORVPdfGenerator::DrawText(const ORVPrintText& text) {
    return state_->DrawOn([&](PdfContent& content) { content.DrawText(text); });
}

int ORVPdfGenerator::DrawImage(const ORVPrintImage& image) {
    return state_->DrawOn([&](PdfContent& content) { content.DrawImage(image); });
}

void ORVPdfGenerator::State::EndPage() {
    // An aborted drawing leaves parts open.
    page->EndAll();
    for (; !groups.empty(); groups.pop_back()) {
        if (groups.back().HasBox()) EndBox(groups.back());
        if (groups.back().isLayer) EndLayer();
    }
    const std::string entries = page->GetPage().FinishPage();
    page.reset();

    std::string dictionary = "<</Type/Page/Parent " + PdfReference(facts.pageTree);
    const auto addBox = [&](const char* name, const ORVMathBox2D& box) {
        dictionary += name;
        char separator = '[';
        for (const double side : {box.xMin, height - box.yMax, box.xMax, height - box.yMin}) {
            dictionary += separator;
            AppendDecimal(dictionary, side * kPointsPerUserUnit, kPdfPlaces);
            separator = ' ';
        }
        dictionary += ']';
    };
    const ORVMathBox2D sheet{0.0, width, 0.0, height};
    ORVMathBox2D trimmed{std::max(trim.xMin, 0.0), std::min(trim.xMax, width), std::max(trim.yMin, 0.0),
                         std::min(trim.yMax, height)};
    if (!(trimmed.xMin < trimmed.xMax) || !(trimmed.yMin < trimmed.yMax)) trimmed = sheet;
    addBox("/MediaBox", sheet);
    addBox("/CropBox", sheet);
    addBox("/TrimBox", trimmed);
    dictionary += entries;
    if (!annotations.empty()) {
        dictionary += "/Annots[";
        for (const unsigned int annotation : annotations) {
            AppendPdfReference(dictionary, annotation);
            dictionary += ' ';
        }
        dictionary += ']';
        annotations.clear();
    }
    file->WriteObject(facts.pages.back().object, dictionary + ">>");
}

int ORVPdfGenerator::EndPage() {
    if (!state_->page) return kDrawingFailed;
    state_->EndPage();
    return state_->Check();
}

int ORVPdfGenerator::EndDocument() {
    State& state = *state_;
    if (!state.file) return kDrawingFailed;
    if (state.page) state.EndPage();
    state.fonts.WriteAll(*state.file);
    state.facts.layers = state.layers.MakeProperties();
    FinishPdfDocument(*state.file, state.facts);
    const int result = state.Check();
    const bool closed = state.output.EndPart() == 1;
    return result == kGeneratorDone && !closed ? kOutputFailed : result;
}
