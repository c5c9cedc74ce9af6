#include "generators/pdf/ORVPdfGenerator.h"

#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"
#include "generators/pdf/pdf_file.h"
#include "generators/pdf/pdf_fonts.h"
#include "generators/pdf/pdf_images.h"
#include "generators/pdf/pdf_page.h"

namespace {

constexpr double kPointsPerUserUnit = 72.0 / 90.0;
// The format's own limit for page sides is 14,400 units of one point.
constexpr double kLargestSide = 14'400.0;

/// An address in the characters that addresses have, for a string in round brackets. What is encoded already
/// stays.
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

/// Any bytes as a string in round brackets.
std::string Bracketed(std::string_view bytes) {
    std::string text = "(";
    for (const char c : bytes) {
        if (c == '(' || c == ')' || c == '\\') text += '\\';
        if (c == '\r')
            text += "\\r";  // a bare one would be read as a line feed
        else
            text += c;
    }
    return text + ")";
}

std::string Reference(unsigned int object) { return std::to_string(object) + " 0 R"; }

}  // namespace

struct ORVPdfGenerator::State {
    explicit State(ORVOutput& sink) : output(sink) {}

    int Check() const { return file && file->IsGood() ? kGeneratorDone : kOutputFailed; }

    struct OpenGroup {
        std::string target;  // its name, when links lead here
        std::string action;  // of its link, when it is one
        bool HasBox() const { return !target.empty() || !action.empty(); }
    };
    void EndBox(const OpenGroup& group);
    void EndPage();

    ORVOutput& output;
    std::optional<PdfFile> file;
    PdfFontTable fonts;
    PdfImageTable images;
    std::optional<PdfDocumentObjects> objects;
    std::string title;
    std::string error;

    unsigned int pageTree = 0;
    std::vector<unsigned int> pages;
    std::map<std::string, std::string> targets;  // places by name, in the order that the format asks for

    std::optional<PdfPage> page;  // the open one, and what belongs to it
    double height = 0.0, width = 0.0;
    unsigned int content = 0;
    std::vector<OpenGroup> groups;
    bool insideLink = false;
    std::vector<unsigned int> annotations;
    std::vector<std::pair<unsigned int, std::string>> pendingAnnotations;
};

ORVPdfGenerator::ORVPdfGenerator(ORVOutput& output) : state_(std::make_unique<State>(output)) {}

ORVPdfGenerator::~ORVPdfGenerator() = default;

const std::string& ORVPdfGenerator::GetError() const { return state_->error; }

int ORVPdfGenerator::BeginDocument(const ORVPrintDocumentInfo& info) {
    State& state = *state_;
    if (state.output.BeginPart() != 1) return kOutputFailed;
    state.title = info.title;
    state.file.emplace(state.output);
    state.objects.emplace(PdfDocumentObjects{*state.file, state.fonts, state.images});
    state.pageTree = state.file->Reserve();
    return state.Check();
}

int ORVPdfGenerator::BeginPage(const ORVPrintPageInfo& info) {
    State& state = *state_;
    if (!state.objects || state.page) return kDrawingFailed;
    if (!(info.width * kPointsPerUserUnit <= kLargestSide) ||
        !(info.height * kPointsPerUserUnit <= kLargestSide)) {
        state.error = "page " + std::to_string(info.number) + " is larger than PDF allows (5080 mm)";
        return kPageTooLarge;
    }
    state.width = info.width;
    state.height = info.height;
    state.pages.push_back(state.file->Reserve());
    state.content = state.file->Reserve();
    state.page.emplace(*state.objects, state.content, info.width, info.height);
    return state.Check();
}

int ORVPdfGenerator::BeginGroup(const ORVPrintGroup& group) {
    State& state = *state_;
    if (!state.page) return kDrawingFailed;
    State::OpenGroup open;
    if (group.isLinkTarget) open.target = group.id;
    // A place inside a link that leads elsewhere is part of the outer link.
    if (!state.insideLink && !group.linkURL.empty())
        open.action = "/A<</S/URI/URI(" + EncodeAddress(group.linkURL) + ")>>";
    else if (!state.insideLink && !group.linkElementId.empty())
        open.action = "/Dest" + Bracketed(group.linkElementId);
    if (!open.action.empty()) state.insideLink = true;
    if (open.HasBox()) state.page->BeginBox();
    state.groups.push_back(std::move(open));
    return kGeneratorDone;
}

void ORVPdfGenerator::State::EndBox(const OpenGroup& group) {
    const ORVMathBox2D box = page->EndBox();
    const auto toPoints = [&](double x, double y) {
        std::string text;
        AppendPdfNumber(text, x * kPointsPerUserUnit);
        text += ' ';
        AppendPdfNumber(text, (height - y) * kPointsPerUserUnit);
        return text;
    };
    if (!group.target.empty()) {
        // A place without content is the page.
        const std::string corner = box.IsEmpty() ? toPoints(0.0, 0.0) : toPoints(box.xMin, box.yMin);
        targets.try_emplace(group.target, "[" + Reference(pages.back()) + "/XYZ " + corner + " null]");
    }
    if (group.action.empty()) return;
    insideLink = false;
    if (box.IsEmpty()) return;
    const unsigned int object = file->Reserve();
    annotations.push_back(object);
    pendingAnnotations.emplace_back(object, "<</Type/Annot/Subtype/Link/F 4/Border[0 0 0]/Rect[" +
                                                toPoints(box.xMin, box.yMax) + " " +
                                                toPoints(box.xMax, box.yMin) + "]" + group.action + ">>");
}

int ORVPdfGenerator::EndGroup() {
    State& state = *state_;
    if (!state.page || state.groups.empty()) return kDrawingFailed;
    if (state.groups.back().HasBox()) state.EndBox(state.groups.back());
    state.groups.pop_back();
    return kGeneratorDone;
}

int ORVPdfGenerator::BeginClip(const ORVMathBox2D& box) {
    if (!state_->page) return kDrawingFailed;
    state_->page->BeginClip(box);
    return state_->Check();
}

int ORVPdfGenerator::EndClip() {
    if (!state_->page || !state_->page->EndClip()) return kDrawingFailed;
    return state_->Check();
}

int ORVPdfGenerator::DrawShape(const ORVPrintShape& shape) {
    if (!state_->page) return kDrawingFailed;
    state_->page->DrawShape(shape);
    return state_->Check();
}

int ORVPdfGenerator::DrawText(const ORVPrintText& text) {
    if (!state_->page) return kDrawingFailed;
    state_->page->DrawText(text);
    return state_->Check();
}

int ORVPdfGenerator::DrawImage(const ORVPrintImage& image) {
    if (!state_->page) return kDrawingFailed;
    state_->page->DrawImage(image);
    return state_->Check();
}

void ORVPdfGenerator::State::EndPage() {
    // A drawing that broke off leaves groups open.
    for (; !groups.empty(); groups.pop_back())
        if (groups.back().HasBox()) EndBox(groups.back());
    const std::string resources = page->Finish();
    page.reset();
    for (const auto& [object, annotation] : pendingAnnotations) file->WriteObject(object, annotation);
    pendingAnnotations.clear();

    std::string dictionary = "<</Type/Page/Parent " + Reference(pageTree) + "/MediaBox[0 0 ";
    AppendPdfNumber(dictionary, width * kPointsPerUserUnit);
    dictionary += ' ';
    AppendPdfNumber(dictionary, height * kPointsPerUserUnit);
    dictionary += "]/Contents " + Reference(content) + "/Resources" + resources +
                  "/Group<</Type/Group/S/Transparency/CS/DeviceRGB>>";
    if (!annotations.empty()) {
        dictionary += "/Annots[";
        for (const unsigned int annotation : annotations) dictionary += Reference(annotation) + " ";
        dictionary += "]";
        annotations.clear();
    }
    file->WriteObject(pages.back(), dictionary + ">>");
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
    PdfFile& file = *state.file;
    state.fonts.WriteAll(file);

    std::string tree = "<</Type/Pages/Count " + std::to_string(state.pages.size()) + "/Kids[";
    for (const unsigned int page : state.pages) tree += Reference(page) + " ";
    file.WriteObject(state.pageTree, tree + "]>>");

    std::string catalogue = "<</Type/Catalog/Pages " + Reference(state.pageTree);
    if (!state.targets.empty()) {
        std::string names = "<</Names[";
        for (const auto& [name, place] : state.targets) names += Bracketed(name) + place;
        const unsigned int object = file.Reserve();
        file.WriteObject(object, names + "]>>");
        catalogue += "/Names<</Dests " + Reference(object) + ">>";
    }
    const unsigned int catalogueObject = file.Reserve();
    file.WriteObject(catalogueObject, catalogue + ">>");

    // No date: the same drawing gives the same file.
    std::string info = "<</Creator(orvprint)/Producer(orvprint)";
    if (!state.title.empty()) {
        info += "/Title";
        AppendPdfText(info, state.title);
    }
    const unsigned int infoObject = file.Reserve();
    file.WriteObject(infoObject, info + ">>");
    file.Finish(catalogueObject, infoObject);

    const int result = state.Check();
    const bool closed = state.output.EndPart() == 1;
    return result == kGeneratorDone && !closed ? kOutputFailed : result;
}
