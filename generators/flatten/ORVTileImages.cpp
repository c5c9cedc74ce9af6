// SPDX-License-Identifier: Apache-2.0
#include "generators/flatten/ORVTileImages.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "generators/filters/filter_pixels.h"

namespace {

constexpr double kUserUnitsPerInch = 90.0;
// Maximum pixels of a tile; at 300 dpi, 17 cm by 17 cm.
constexpr double kMostTilePixels = 4e6;
// Maximum pixels of a page's images, which are kept until it ends: the greater of a constant and a multiple
// of the page's pixels.
constexpr double kUsualImagePixels = 2.4e7, kImagesOfPage = 6.0;
constexpr std::size_t kGreatestDepth = 16;
constexpr double kMostOfPage = 2.0;  // times the tiles of an area

/// Number of pixels of an image that is `length` pixels long on the page: rounded, if that changes the length
/// little, as it always does for large tiles; otherwise twice as many, so that sampling does not blur the
/// tile.
int PixelsFor(double length) {
    const double near = std::max(0.125, length / 64.0);
    const double whole = std::round(length);
    if (whole >= 1.0 && std::fabs(length - whole) <= near) return static_cast<int>(whole);
    return static_cast<int>(std::ceil(2.0 * length));
}

/// From pixels of an image to tile coordinates.
ORVMathAffine2D ToTile(const ORVMathBox2D& tile, int width, int height) {
    return ORVMathAffine2D::Translation(tile.xMin, tile.yMin) *
           ORVMathAffine2D::Scaling((tile.xMax - tile.xMin) / width, (tile.yMax - tile.yMin) / height);
}

}  // namespace

ORVTileImages::ORVTileImages(ORVPrintGenerator& target, const ORVFilterOptions& options, PageScale scale,
                             double mostTiles)
    : target_(target),
      options_(options),
      pageScale_(std::move(scale)),
      mostTiles_(mostTiles),
      dotsPerInch_(options.dotsPerInch) {}

ORVTileImages::~ORVTileImages() = default;

int ORVTileImages::BeginDocument(const ORVPrintDocumentInfo& info) {
    // Keys are those of a drawing.
    known_ = {};
    return target_.BeginDocument(info);
}

int ORVTileImages::BeginPage(const ORVPrintPageInfo& info) {
    pageNumber_ = info.number;
    known_ = {};
    counted_ = {};
    imagePixels_ = 0.0;
    const int status = target_.BeginPage(info);
    dotsPerInch_ = options_.dotsPerInch * (pageScale_ ? pageScale_() : 1.0);
    const double scale = Scale();
    mostImagePixels_ = std::max(kUsualImagePixels, kImagesOfPage * info.width * info.height * scale * scale);
    return status;
}

int ORVTileImages::EndDocument() {
    open_.clear();
    known_ = {};
    return target_.EndDocument();
}

// ---- Tiles ------------------------------------------------------------------------------------------------

double ORVTileImages::Scale() const {
    if (open_.empty()) return dotsPerInch_ / kUserUnitsPerInch;
    const Open& open = *open_.back();
    const ORVMathBox2D& tile = open.tiles.tile;
    return std::sqrt(static_cast<double>(open.size.width) * open.size.height /
                     ((tile.xMax - tile.xMin) * (tile.yMax - tile.yMin)));
}

/// Size of the image; 0 if the tile would have too many pixels.
ORVTileImages::Size ORVTileImages::SizeFor(const ORVPrintTiles& tiles) const {
    const ORVMathAffine2D& map = tiles.toPage;
    const auto lengthOf = [&](double x, double y) { return std::hypot(x, y) * Scale(); };
    const ORVMathPoint2D origin = map({0.0, 0.0}), right = map({1.0, 0.0}), down = map({0.0, 1.0});
    const double width =
        (tiles.tile.xMax - tiles.tile.xMin) * lengthOf(right.x - origin.x, right.y - origin.y);
    const double height =
        (tiles.tile.yMax - tiles.tile.yMin) * lengthOf(down.x - origin.x, down.y - origin.y);
    // With more, the numbers of pixels might not fit an int.
    if (!(width > 0.0 && height > 0.0 && width <= kMostTilePixels && height <= kMostTilePixels)) return {};
    Size size{PixelsFor(width), PixelsFor(height)};
    size.finer = size.width / width;
    const double pixels = static_cast<double>(size.width) * size.height;
    return pixels <= kMostTilePixels && imagePixels_ + pixels <= mostImagePixels_ ? size : Size{};
}

/// Whether the tiles are few enough to be drawn one by one, also with those of the same kind so far: tiles
/// within tiles are announced once for each of these.
bool ORVTileImages::AreFew(const ORVPrintTiles& tiles) {
    const auto toTiles = tiles.toPage.Inverse();
    if (!toTiles) return true;
    const ORVMathBox2D shown = tiles.shown.MappedBy(*toTiles);
    const double count = std::ceil((shown.xMax - shown.xMin) / tiles.xStep) *
                         std::ceil((shown.yMax - shown.yMin) / tiles.yStep);
    if (!(count <= mostTiles_)) return false;
    auto counted = std::find_if(counted_.begin(), counted_.end(),
                                [&](const Counted& entry) { return entry.key == tiles.key; });
    if (counted == counted_.end()) {
        counted = counted_.begin() + static_cast<std::ptrdiff_t>(nextCounted_);
        *counted = {tiles.key, 0.0};
        nextCounted_ = (nextCounted_ + 1) % counted_.size();
    }
    counted->tiles += count;
    return counted->tiles <= kMostOfPage * mostTiles_;
}

int ORVTileImages::BeginTiles(const ORVPrintTiles& tiles) {
    if (tiles.isPlain) return open_.empty() ? target_.BeginTiles(tiles) : static_cast<int>(kNoTiles);
    if (open_.empty() && mostTiles_ > 0.0 && !tiles.isHeavy && AreFew(tiles)) return kNoTiles;
    if (open_.size() >= kGreatestDepth) return kNoTiles;
    return Guard([&] {
        const Size size = SizeFor(tiles);
        if (size.width == 0) return static_cast<int>(kNoTiles);
        for (const Known& known : known_) {
            if (!known.image || known.key != tiles.key || known.size != size) continue;
            const int status = Fill(tiles, *known.image);
            return status == kGeneratorDone ? static_cast<int>(kTilesKnown) : status;
        }
        auto open = std::make_unique<Open>();
        open->tiles = tiles;
        open->size = size;
        open_.push_back(std::move(open));
        return static_cast<int>(kDrawTile);
    });
}

int ORVTileImages::EndTiles() {
    if (open_.empty()) return target_.EndTiles();
    const std::unique_ptr<Open> open = std::move(open_.back());
    open_.pop_back();
    return Guard([&] {
        ORVRef<ORVPixelImage> image;
        const int status = Render(*open, image);
        if (status != kGeneratorDone || !image) return status;
        imagePixels_ += static_cast<double>(open->size.width) * open->size.height;
        known_[nextKnown_] = {open->tiles.key, open->size, image};
        nextKnown_ = (nextKnown_ + 1) % known_.size();
        return Fill(open->tiles, *image);
    });
}

/// Draws a tile on transparent pixels.
int ORVTileImages::Render(Open& open, ORVRef<ORVPixelImage>& image) {
    if (!raster_) {
        auto sink = std::make_unique<ClearPixelSink>();
        sink_ = sink.get();
        ORVFilterOptions inPixels = options_;
        inPixels.dotsPerInch = kUserUnitsPerInch;  // pages are measured in pixels
        raster_ = std::make_unique<ORVRasterGenerator>(std::move(sink), ORVClearRaster(inPixels));
        if (const int begun = raster_->BeginDocument({}); begun != kGeneratorDone) return begun;
        filters_ = std::make_unique<ORVFilterImages>(*raster_, inPixels);
    }
    const Size size = open.size;
    const ORVMathBox2D& tile = open.tiles.tile;
    filters_->SetUnitsPerInch(dotsPerInch_ * size.finer);
    ORVPrintPageInfo info;
    info.number = pageNumber_;
    info.width = size.width;
    info.height = size.height;
    sink_->SetBox({0, 0, size.width, size.height});
    const auto fromTile = ToTile(tile, size.width, size.height).Inverse();
    if (!fromTile) return kGeneratorDone;
    int status = filters_->BeginPage(info);
    if (status == kGeneratorDone) status = open.content.ReplaySoFar(*filters_, tile, *fromTile);
    if (status == kGeneratorDone) status = filters_->EndPage();
    if (status != kGeneratorDone) {
        failure_ = filters_->GetFailure() ? filters_->GetFailure() : raster_->GetFailure();
        return status;
    }
    image = ORVImageOf(sink_->Take());
    return kGeneratorDone;
}

/// Fills the area with the image, repeated. What is around clips it.
int ORVTileImages::Fill(const ORVPrintTiles& tiles, const ORVPixelImage& image) {
    // Beyond the area, so that its border is not smoothed twice.
    const double beyond = 2.0 / Scale();
    ORVPrintPath path;
    path.MoveTo({tiles.shown.xMin - beyond, tiles.shown.yMin - beyond});
    path.LineTo({tiles.shown.xMax + beyond, tiles.shown.yMin - beyond});
    path.LineTo({tiles.shown.xMax + beyond, tiles.shown.yMax + beyond});
    path.LineTo({tiles.shown.xMin - beyond, tiles.shown.yMax + beyond});
    path.Close();
    ORVPrintFill fill;
    fill.pattern = &image;
    fill.patternToPage = tiles.toPage * ToTile(tiles.tile, static_cast<int>(image.GetWidth()),
                                               static_cast<int>(image.GetHeight()));
    return DrawShape({path, {}, &fill, nullptr});
}
