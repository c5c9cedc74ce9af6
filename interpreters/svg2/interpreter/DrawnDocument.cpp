// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/interpreter/DrawnDocument.h"

#include <cmath>
#include <new>
#include <utility>

#include "interpreters/svg2/document/parsing.h"
#include "interpreters/svg2/drawing/Bounds.h"
#include "interpreters/svg2/drawing/ClipKeeper.h"
#include "interpreters/svg2/drawing/Drawing.h"
#include "interpreters/svg2/drawing/DrawingBudget.h"
#include "interpreters/svg2/tree/page_size.h"
#include "interpreters/svg2/tree/shapes.h"
#include "interpreters/svg2/values/scanner.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"

namespace svg2 {
namespace {

constexpr int kDone = 1, kNoPages = 0;

/// The text of an element's "title" child.
std::string_view TitleOf(const Document& document, ElementIndex element) {
    for (ElementIndex child = document[element].firstChild; child != kNoElement;
         child = document[child].nextSibling)
        if (document[child].tag == Tag::kTitle) return Trim(document[child].node->GetText());
    return {};
}

/// The bounding box of all content, in px.
ORVMathBox2D ContentBox(const Document& document) {
    Scene scene(document, {});
    const ORVPrintParameters parameters;
    DrawingBudget budget(parameters);
    budget.AllowFor(document);
    TextFonts fonts;
    Bounds bounds(scene, budget, fonts);
    scene.SetBoxes(&bounds);
    return bounds.Of(Document::kRoot, scene.StyleInPlace(Document::kRoot), {});
}

void PaintPage(const Style& root, const Page& page, ORVPrintGenerator& generator, int& status) {
    const ORVPrintColour colour = MakeColour(Resolve(root.backgroundColour, root), 1.0);
    if (colour.opacity == 0) return;
    ORVPrintPath path;
    AddRectangle(path, {0.0, 0.0, page.GetWidth(), page.GetHeight()});
    const ORVPrintFill fill{.colour = colour};
    status = generator.DrawShape({path, {}, &fill, nullptr});
}

}  // namespace

DrawnDocument::DrawnDocument(std::string bytes) : bytes_(std::move(bytes)) {}

DrawnDocument::DrawnDocument(ORVRef<const ORVXmlTree> tree, const ORVXmlNode* root)
    : tree_(std::move(tree)), root_(root) {}

bool DrawnDocument::Parse() {
    if (isParsed_) return document_ != nullptr;
    isParsed_ = true;
    // Style sheets linked before the root of a larger document do not apply to drawings in it.
    const bool isWhole = root_ && tree_->GetRoot() == root_;
    const std::string_view source = isWhole ? tree_->GetSource() : std::string_view(bytes_);
    std::vector<OuterSheet> sheets = ReadOuterSheets(source, path_, nullptr);
    document_ = root_ ? std::make_unique<Document>(std::exchange(tree_, nullptr), *root_)
                      : ParseDocument(std::exchange(bytes_, {}));
    if (document_ && !document_->IsSvg()) document_.reset();
    if (!document_) return false;
    try {
        document_->SetOuterSheets(std::move(sheets));
        FindPages();
    } catch (...) {
        document_.reset();  // a document with only some of its pages is discarded
        throw;
    }
    return true;
}

void DrawnDocument::FindPages() {
    title_ = TitleOf(*document_, Document::kRoot);
    size_ = FindPageSize(*document_, [this] { return ContentBox(*document_); });
    const Rectangle whole{0.0, 0.0, size_.width, size_.height};
    ORVMathAffine2D toPx;
    const auto viewBox = ReadViewBox(document_->ValueOf(Document::kRoot, Name::kViewBox));
    if (viewBox && viewBox->width > 0.0 && viewBox->height > 0.0)
        toPx = FitViewBox(*viewBox,
                          ReadAspectRatio(document_->ValueOf(Document::kRoot, Name::kPreserveAspectRatio)),
                          whole);
    for (const ElementIndex element : document_->FindAll(Tag::kPage)) {
        Rectangle area;
        double* const parts[] = {&area.x, &area.y, &area.width, &area.height};
        constexpr Name kNames[] = {Name::kX, Name::kY, Name::kWidth, Name::kHeight};
        bool isRead = true;
        for (std::size_t i = 0; i < std::size(kNames); ++i)
            isRead = ReadNumber(document_->ValueOf(element, kNames[i]), *parts[i]) && isRead;
        if (!isRead || !(area.width > 0.0) || !(area.height > 0.0)) continue;
        const ORVMathBox2D box = MapBox(toPx, area.Box());
        pages_.push_back({{box.xMin, box.yMin, box.xMax - box.xMin, box.yMax - box.yMin},
                          document_->ValueOf(element, Name::kLabel)});
    }
    if (pages_.empty()) pages_.push_back({whole, {}});
}

std::string_view DrawnDocument::GetTitle(const Page& page) const {
    return page.label.empty() ? title_ : page.label;
}

int DrawnDocument::Draw(const std::vector<unsigned int>& numbers, ORVPrintGenerator* generator,
                        const ORVPrintParameters& parameters) {
    if (!generator || numbers.empty()) return kNoPages;
    if (numbers.size() > parameters.GetPageLimit()) return ORVPrintModelRender::kTooManyPages;
    for (const unsigned int number : numbers) {
        const Rectangle& area = pages_[number - 1].area;
        if (!(area.width > 0.0) || !(area.height > 0.0) || !std::isfinite(area.width + area.height))
            return ORVPrintModelRender::kPageWithoutArea;
    }
    ORVPrintDocumentInfo info;
    const std::string title(parameters.GetTitle().IsEmpty()
                                ? GetTitle(pages_[numbers.front() - 1])
                                : std::string_view(parameters.GetTitle().GetView()));
    info.title = title;
    info.pageCount = static_cast<unsigned int>(numbers.size());
    if (const int begun = generator->BeginDocument(info); begun != kDone) return begun;
    int status = kDone;
    try {
        status = DrawPages(numbers, *generator, parameters);
    } catch (const std::bad_alloc&) {
        status = ORVPrintModelRender::kLowMemory;
    } catch (...) {
        status = ORVPrintModelRender::kThrown;
    }
    // Always ended; the first failure is returned.
    const int ended = generator->EndDocument();
    return status == kDone ? ended : status;
}

int DrawnDocument::DrawPages(const std::vector<unsigned int>& numbers, ORVPrintGenerator& target,
                             const ORVPrintParameters& parameters) {
    ClipKeeper generator(target);
    Scene scene(*document_, Medium{size_.width, size_.height});
    Images images(path_);
    DrawingBudget budget(parameters);
    budget.AllowFor(*document_);
    TextFonts fonts;
    Drawing drawing(scene, generator, budget, images, fonts);
    drawing.ReportContentLayers();
    if (!parameters.GetReportedElement().IsEmpty())
        drawing.Report(document_->FindById(parameters.GetReportedElement().GetView()));
    const std::string id(document_->ValueOf(Document::kRoot, Name::kId));
    unsigned int place = 0;
    for (const unsigned int number : numbers) {
        const Page& page = pages_[number - 1];
        budget.BeginPage();
        ORVPrintPageInfo info;
        info.number = ++place;
        info.width = page.GetWidth();
        info.height = page.GetHeight();
        info.id = id;
        info.title = GetTitle(page);
        if (const int begun = generator.BeginPage(info); begun != kDone) return begun;
        const ORVMathAffine2D toPage = ORVMathAffine2D::Scaling(kUserUnitsPerPx, kUserUnitsPerPx) *
                                       ORVMathAffine2D::Translation(-page.area.x, -page.area.y);
        int status = kDone;
        PaintPage(scene.StyleInPlace(Document::kRoot), page, generator, status);
        if (status == kDone) status = drawing.Draw(toPage, size_, {0.0, info.width, 0.0, info.height});
        if (status == kDone) status = generator.EndPage();
        if (status != kDone) return status;
    }
    return kDone;
}

}  // namespace svg2
