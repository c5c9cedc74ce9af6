// SPDX-License-Identifier: Apache-2.0
#include "generators/flatten/ORVFilterImages.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <exception>
#include <new>
#include <string>
#include <utility>

#include "generators/common/exception_text.h"
#include "generators/common/filter_reach.h"
#include "generators/common/generator_status.h"
#include "generators/flatten/filter_run.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

constexpr double kUserUnitsPerInch = 90.0, kPxPerInch = 96.0;
// Maximum number of filter pixels in memory at once (8 bytes each): kUsualPixels or, if greater, this
// multiple of the visible pixels of the page, but at most kMostPixels.
constexpr double kUsualPixels = 2e7, kPixelsOfShown = 5.0, kMostPixels = 6e7;
// Visible pixels beyond which a whole page does not fit that anyway, and kUsualPixels must do for formats
// that have no pixels of their own.
constexpr double kHugePage = 4e7;
// What the filters of a page may take beyond the work at full resolution, in multiples of it, and the share
// of the rest that one filter may take. At the least resolution, more is allowed.
constexpr double kLoweredWork = 1.0, kShareOfLoweredWork = 1.0 / 32.0;
// Maximum number of pixels touched by the filters of a page: kUsualWork plus this multiple of the page's
// pixels.
constexpr double kUsualWork = 1e9, kWorkOfPagePixel = 400.0;
// Work of a filter of any size, and of each pixel drawn for it or passed on: painting, conversion, sampling.
constexpr double kFilterWork = 50'000.0, kWorkOfPixel = 40.0;
// Maximum number of pixels of a page's images, which are kept until it ends: the greater of a constant and
// this multiple of the page's pixels.
constexpr double kUsualImagePixels = 2.4e7, kImagesOfPage = 6.0;
// Maximum nesting depth of filters.
constexpr unsigned int kGreatestDepth = 64;

double WorkOf(const FilterPlan& plan) {
    const double ends = plan.results.empty() ? 0.0 : plan.source.Area() + plan.results.back().Area();
    return plan.work + kFilterWork + kWorkOfPixel * ends;
}

/// Bounding box of a clip path, on the page.
ORVMathBox2D BoxOf(const ORVPrintClipPath& clip) {
    ORVMathBox2D box;
    for (const ORVMathPoint2D& point : clip.path.points) box.Add(clip.toPage(point));
    return box;
}

/// Passes texts on as invisible text, and drops everything else.
class UnseenTexts final : public ORVPrintGenerator {
public:
    explicit UnseenTexts(ORVPrintGenerator& target) : target_(target) {}

    int BeginDocument(const ORVPrintDocumentInfo& /*info*/) override { return kGeneratorDone; }
    int BeginPage(const ORVPrintPageInfo& /*info*/) override { return kGeneratorDone; }
    int BeginGroup(const ORVPrintGroup& /*group*/) override { return kGeneratorDone; }
    int EndGroup() override { return kGeneratorDone; }
    int BeginClip(const ORVMathBox2D& /*box*/) override { return kGeneratorDone; }
    int EndClip() override { return kGeneratorDone; }
    int DrawShape(const ORVPrintShape& /*shape*/) override { return kGeneratorDone; }
    int DrawText(const ORVPrintText& text) override {
        return target_.DrawText({text.layout, text.text, text.toPage});
    }
    int DrawImage(const ORVPrintImage& /*image*/) override { return kGeneratorDone; }
    int EndPage() override { return kGeneratorDone; }
    int EndDocument() override { return kGeneratorDone; }

private:
    ORVPrintGenerator& target_;
};

}  // namespace

ORVRasterOptions ORVClearRaster(const ORVFilterOptions& options) {
    ORVRasterOptions raster;
    raster.dotsPerInch = kUserUnitsPerInch;  // pages are measured in pixels
    raster.pixelLimit = options.pixelLimit;
    raster.outputPixelLimit = options.outputPixelLimit;
    raster.paintLimit = options.paintLimit;
    raster.threads = options.threads;
    raster.isClear = true;
    return raster;
}

struct ORVFilterImages::Taken {
    explicit Taken(const ORVPrintFilter& given)
        : filter(given), steps(given.steps.begin(), given.steps.end()) {
        filter.steps = steps;
    }

    ORVPrintFilter filter;
    std::vector<ORVPrintFilterStep> steps;
    ORVPageRecording content;
    std::deque<ORVPageRecording> inputs;
    bool isInInput = false;
    bool hasFilters = false;     // nested inside it
    unsigned int innerOpen = 0;  // open filters nested inside it
};

struct ORVFilterImages::Budget {
    double limit = 0.0, spent = 0.0;
    double full = 0.0;  // what may be spent at full resolution so far
    unsigned int depth = 0;
};

ORVFilterImages::ORVFilterImages(ORVPrintGenerator& target, const ORVFilterOptions& options)
    : target_(target), options_(options), ownBudget_(std::make_unique<Budget>()), budget_(ownBudget_.get()) {}

ORVFilterImages::ORVFilterImages(ORVPrintGenerator& target, const ORVFilterOptions& options, Budget* budget)
    : target_(target), options_(options), budget_(budget) {}

ORVFilterImages::~ORVFilterImages() = default;

template <class Action>
int ORVFilterImages::Guard(Action action) {
    try {
        return action();
    } catch (const std::exception&) {
        ORVNameException(failure_);
        return kDrawingFailed;
    }
}

ORVPrintGenerator& ORVFilterImages::Record() {
    return taken_->isInInput ? taken_->inputs.back() : taken_->content;
}

/// Passes a call to the recording or the target.
template <class Call>
int ORVFilterImages::Pass(Call call) {
    if (!taken_) return call(target_);
    return Guard([&] { return call(Record()); });
}

/// The same for the beginning of a part that clips to a box.
template <class Call>
int ORVFilterImages::BeginPart(const ORVMathBox2D& box, Call call) {
    if (taken_) return Pass(call);
    return Guard([&] {
        shown_.push_back(Shown().Overlap(box));
        return call(target_);
    });
}

template <class Call>
int ORVFilterImages::EndPart(Call call) {
    if (!taken_ && !shown_.empty()) shown_.pop_back();
    return Pass(call);
}

int ORVFilterImages::BeginDocument(const ORVPrintDocumentInfo& info) {
    if (ownBudget_) *ownBudget_ = {};
    return target_.BeginDocument(info);
}

int ORVFilterImages::BeginPage(const ORVPrintPageInfo& info) {
    page_ = {0.0, info.width, 0.0, info.height};
    pageNumber_ = info.number;
    shown_.clear();
    symbolScales_.clear();
    taken_.reset();
    imagePixels_ = 0.0;
    if (ownBudget_) {
        const double scale = options_.dotsPerInch / kUserUnitsPerInch;
        const double allowed = kUsualWork + kWorkOfPagePixel * info.width * info.height * scale * scale;
        ownBudget_->full = ownBudget_->spent + options_.fullWork;
        ownBudget_->limit = std::min(ownBudget_->spent + allowed, static_cast<double>(options_.paintLimit));
    }
    return target_.BeginPage(info);
}

int ORVFilterImages::BeginGroup(const ORVPrintGroup& group) {
    return taken_ && taken_->isInInput ? Pass([&](ORVPrintGenerator& to) { return to.BeginGroup(group); })
                                       : target_.BeginGroup(group);
}

int ORVFilterImages::EndGroup() {
    return taken_ && taken_->isInInput ? Pass([](ORVPrintGenerator& to) { return to.EndGroup(); })
                                       : target_.EndGroup();
}

int ORVFilterImages::BeginClip(const ORVMathBox2D& box) {
    return BeginPart(box, [&](ORVPrintGenerator& to) { return to.BeginClip(box); });
}

int ORVFilterImages::EndClip() {
    return EndPart([](ORVPrintGenerator& to) { return to.EndClip(); });
}

int ORVFilterImages::BeginClipPath(const ORVPrintClipPath& clip) {
    return BeginPart(taken_ ? ORVMathBox2D() : BoxOf(clip),
                     [&](ORVPrintGenerator& to) { return to.BeginClipPath(clip); });
}

int ORVFilterImages::EndClipPath() {
    return EndPart([](ORVPrintGenerator& to) { return to.EndClipPath(); });
}

int ORVFilterImages::BeginLayer(const ORVPrintLayer& layer) {
    return BeginPart(layer.box, [&](ORVPrintGenerator& to) { return to.BeginLayer(layer); });
}

int ORVFilterImages::EndLayer() {
    return EndPart([](ORVPrintGenerator& to) { return to.EndLayer(); });
}

int ORVFilterImages::BeginMask(const ORVPrintMask& mask) {
    const int answer = BeginPart(mask.box, [&](ORVPrintGenerator& to) { return to.BeginMask(mask); });
    if (answer == kSkipMask && !taken_ && !shown_.empty()) shown_.pop_back();
    return answer;
}

int ORVFilterImages::EndMask() {
    return EndPart([](ORVPrintGenerator& to) { return to.EndMask(); });
}

int ORVFilterImages::BeginSymbol(const ORVPrintSymbol& symbol) {
    const int answer = Pass([&](ORVPrintGenerator& to) { return to.BeginSymbol(symbol); });
    return answer != kDrawSymbol || taken_ ? answer : Guard([&] {
        // Any part of the symbol may be visible where it is placed later.
        constexpr double kFar = 1e7;
        symbolScales_.push_back(SymbolScale() * symbol.toPage.Enlargement());
        shown_.push_back({-kFar, kFar, -kFar, kFar});
        return answer;
    });
}

int ORVFilterImages::EndSymbol() {
    if (!taken_ && !symbolScales_.empty()) symbolScales_.pop_back();
    return EndPart([](ORVPrintGenerator& to) { return to.EndSymbol(); });
}

int ORVFilterImages::BeginTiles(const ORVPrintTiles& tiles) {
    if (taken_) return kNoTiles;
    const int answer = Pass([&](ORVPrintGenerator& to) { return to.BeginTiles(tiles); });
    return answer != kDrawTile ? answer : Guard([&] {
        symbolScales_.push_back(SymbolScale() * tiles.toPage.Enlargement());
        shown_.push_back(tiles.tile);
        return answer;
    });
}

int ORVFilterImages::EndTiles() {
    if (!symbolScales_.empty()) symbolScales_.pop_back();
    return EndPart([](ORVPrintGenerator& to) { return to.EndTiles(); });
}

int ORVFilterImages::DrawShape(const ORVPrintShape& shape) {
    return Pass([&](ORVPrintGenerator& to) { return to.DrawShape(shape); });
}

int ORVFilterImages::DrawText(const ORVPrintText& text) {
    return Pass([&](ORVPrintGenerator& to) { return to.DrawText(text); });
}

int ORVFilterImages::DrawImage(const ORVPrintImage& image) {
    return Pass([&](ORVPrintGenerator& to) { return to.DrawImage(image); });
}

int ORVFilterImages::EndPage() { return target_.EndPage(); }

int ORVFilterImages::EndDocument() {
    taken_.reset();
    return target_.EndDocument();
}

// ---- Filters ----------------------------------------------------------------------------------------------

int ORVFilterImages::BeginFilter(const ORVPrintFilter& filter) {
    if (taken_) {
        ++taken_->innerOpen;
        taken_->hasFilters = true;
        return Pass([&](ORVPrintGenerator& to) { return to.BeginFilter(filter); });
    }
    // Content outside the visible area may be moved into it.
    if ((target_.GetPowers() & kFilters) != 0 && filter.inputCount == 0)
        return BeginPart(page_, [&](ORVPrintGenerator& to) { return to.BeginFilter(filter); });
    return Guard([&] {
        if (budget_->depth >= kGreatestDepth) return Refuse("has filters too deep within each other");
        taken_ = std::make_unique<Taken>(filter);
        return static_cast<int>(kGeneratorDone);
    });
}

int ORVFilterImages::BeginFilterInput() {
    if (!taken_) return target_.BeginFilterInput();
    if (taken_->innerOpen > 0) return Pass([](ORVPrintGenerator& to) { return to.BeginFilterInput(); });
    return Guard([&] {
        taken_->inputs.emplace_back();
        taken_->isInInput = true;
        return static_cast<int>(kGeneratorDone);
    });
}

int ORVFilterImages::EndFilterInput() {
    if (!taken_) return target_.EndFilterInput();
    if (taken_->innerOpen > 0) return Pass([](ORVPrintGenerator& to) { return to.EndFilterInput(); });
    taken_->isInInput = false;
    return kGeneratorDone;
}

int ORVFilterImages::EndFilter() {
    if (!taken_) return EndPart([](ORVPrintGenerator& to) { return to.EndFilter(); });
    if (taken_->innerOpen > 0) {
        --taken_->innerOpen;
        return Pass([](ORVPrintGenerator& to) { return to.EndFilter(); });
    }
    ++budget_->depth;
    const int result = Guard([&] { return DrawTaken(); });
    --budget_->depth;
    taken_.reset();
    return result;
}

int ORVFilterImages::Refuse(const std::string& text) {
    failure_ =
        ORVFailure::Of(ORVFailureReason::kNotDrawn, "page " + std::to_string(pageNumber_) + " " + text);
    return kDrawingFailed;
}

/// Plans a filter at the resolution of the device, or at what memory and work permit. @return false if it
/// cannot be planned
bool ORVFilterImages::FitPlan(const ORVPrintFilter& filter, const ORVMathBox2D& content,
                              FilterPlan& plan) const {
    const double finest = options_.dotsPerInch / kUserUnitsPerInch * SymbolScale();
    const double least = options_.leastDotsPerInch / kUserUnitsPerInch * SymbolScale();
    const ORVMathBox2D& shown = Shown();
    const double seen =
        shown.IsEmpty() ? 0.0 : (shown.xMax - shown.xMin) * (shown.yMax - shown.yMin) * finest * finest;
    const double most = least > 0.0 && seen > kHugePage
                            ? kUsualPixels
                            : std::clamp(kPixelsOfShown * seen, kUsualPixels, kMostPixels);
    const double full = budget_->full - budget_->spent;
    const double work =
        std::max({full, (full + options_.fullWork * kLoweredWork) * kShareOfLoweredWork, 0.0});
    double scale = finest;
    constexpr int kMostTries = 8;
    for (int i = 0; i < kMostTries; ++i) {
        FilterGrid grid = FilterGrid::Make(filter.toPage, scale);
        grid.pixelsInPx = scale / SymbolScale() * unitsPerInch_ / kPxPerInch;
        plan = FilterPlan::Make(filter, grid, shown, content);
        const bool isSlow = least > 0.0 && scale > least && WorkOf(plan) > work;
        if (plan.pixels <= most && !isSlow) return true;
        double lower = 1.0;
        if (plan.pixels > most) lower = std::sqrt(most / plan.pixels) * 0.99;
        if (isSlow) lower = std::min(lower, std::max(std::sqrt(work / WorkOf(plan)) * 0.99, least / scale));
        scale *= lower;
    }
    return false;
}

int ORVFilterImages::DrawTaken() {
    Taken& taken = *taken_;
    const ORVPrintFilter& filter = taken.filter;
    if (!filter.toPage.Inverse() || filter.steps.empty() || Shown().IsEmpty()) return kGeneratorDone;
    const ORVMathBox2D whole = taken.content.GetBox();
    FilterPlan plan;
    if (!FitPlan(filter, whole, plan)) return Refuse("has a filter that takes too much memory");
    if (plan.results.empty() || plan.results.back().IsEmpty()) return kGeneratorDone;
    constexpr double kRounding = 0.999;
    if (const double dotsPerInch = plan.grid.pixelsInPx * kPxPerInch;
        dotsPerInch < options_.dotsPerInch * kRounding)
        lowered_.Add(dotsPerInch);
    budget_->spent += WorkOf(plan);
    if (!(budget_->spent <= budget_->limit))
        return Refuse("has filters that take too much work; use a lower resolution or simpler filters");
    FilterPixels source;
    const int drawn = DrawPixels(taken.content, taken.hasFilters, plan.grid, plan.source, source);
    if (drawn != kGeneratorDone) return drawn;
    FilterRun run(filter, plan, std::move(source),
                  [&](unsigned int number, const FilterBox& box, FilterPixels& pixels) {
                      if (number >= taken.inputs.size()) return static_cast<int>(kGeneratorDone);
                      return DrawPixels(taken.inputs[number], true, plan.grid, box, pixels);
                  });
    FilterPixels result;
    int status = run.Compute(result);
    if (status == kGeneratorDone) status = Hand(std::move(result), plan.grid);
    return status == kGeneratorDone ? HandTexts() : status;
}

/// Keeps the text of an image in place, invisible, so that it can be searched and copied.
int ORVFilterImages::HandTexts() {
    if ((target_.GetPowers() & ORVPrintGenerator::kUnseenText) == 0) return kGeneratorDone;
    UnseenTexts texts(target_);
    return taken_->content.ReplaySoFar(texts, Shown(), {});
}

/// Draws the recording on transparent pixels.
int ORVFilterImages::DrawPixels(ORVPageRecording& recording, bool hasFilters, const FilterGrid& grid,
                                const FilterBox& box, FilterPixels& pixels) {
    const auto fromPage = grid.toPage.Inverse();
    if (box.IsEmpty() || !fromPage) return kGeneratorDone;
    ORVMathBox2D corners;
    corners.Add({static_cast<double>(box.left), static_cast<double>(box.top)});
    corners.Add({static_cast<double>(box.Right()), static_cast<double>(box.Bottom())});
    if (!raster_) {
        auto sink = std::make_unique<ClearPixelSink>();
        sink_ = sink.get();
        raster_ = std::make_unique<ORVRasterGenerator>(std::move(sink), ORVClearRaster(options_));
        if (const int begun = raster_->BeginDocument({}); begun != kGeneratorDone) return begun;
    }
    if (hasFilters && !inner_) {
        ORVFilterOptions inPixels = options_;
        inPixels.dotsPerInch = kUserUnitsPerInch;
        inPixels.leastDotsPerInch = 0.0;  // the resolution is that of the outer filter
        inner_.reset(new ORVFilterImages(*raster_, inPixels, budget_));
    }
    if (hasFilters) inner_->unitsPerInch_ = grid.pixelsInPx * kPxPerInch;
    ORVPrintGenerator& to = hasFilters ? static_cast<ORVPrintGenerator&>(*inner_) : *raster_;
    ORVPrintPageInfo info;
    info.number = pageNumber_;
    info.width = box.width;
    info.height = box.height;
    int result = to.BeginPage(info);
    if (result == kGeneratorDone)
        result = recording.ReplaySoFar(to, corners.MappedBy(grid.toPage),
                                       ORVMathAffine2D::Translation(-box.left, -box.top) * *fromPage);
    // Nested filters are finished now; memory for the pixels of this one is only allocated from here on.
    sink_->SetBox(box);
    if (result == kGeneratorDone) result = to.EndPage();
    pixels = sink_->Take();
    if (result != kGeneratorDone)
        failure_ = inner_ && inner_->GetFailure() ? inner_->GetFailure() : raster_->GetFailure();
    return result;
}

/// Passes the result to the target as an image.
int ORVFilterImages::Hand(FilterPixels pixels, const FilterGrid& grid) {
    const FilterBox box = pixels.GetBox();
    if (box.IsEmpty()) return kGeneratorDone;
    if (!(box.Area() <= static_cast<double>(std::min(options_.pixelLimit, ORVPixelImage::GetPixelLimit()))))
        return Refuse("has a filter whose image would have too many pixels; use a lower resolution");
    const double scale = options_.dotsPerInch / kUserUnitsPerInch;
    const double pagePixels = page_.xMax * page_.yMax * scale * scale;
    imagePixels_ += box.Area();
    if (imagePixels_ > std::max(kUsualImagePixels, kImagesOfPage * pagePixels))
        return Refuse("has filters that take too much memory; use a lower resolution or fewer filters");
    const ORVRef<ORVPixelImage> image = ORVImageOf(std::move(pixels));
    if (!image) return kGeneratorDone;
    const ORVMathAffine2D toPage = grid.toPage * ORVMathAffine2D{static_cast<double>(box.width),
                                                                 0.0,
                                                                 0.0,
                                                                 static_cast<double>(box.height),
                                                                 static_cast<double>(box.left),
                                                                 static_cast<double>(box.top)};
    return target_.DrawImage({*image, toPage});
}
