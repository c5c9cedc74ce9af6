#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <new>
#include <unordered_map>
#include <vector>

#include "generators/common/path_range.h"
#include "generators/raster/stroke_outline.h"
#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

class ORVFontFace;
struct ORVGlyphRun;

/// Memory that is taken piece by piece and given back all at once. What was made in it is not destroyed.
class RasterArena {
public:
    template <class T>
    T* Make(std::size_t count) {
        static_assert(alignof(T) <= kAlignment && std::is_trivially_destructible_v<T>);
        return static_cast<T*>(Take(count * sizeof(T)));
    }
    void Clear();

private:
    static constexpr std::size_t kAlignment = 8;
    void* Take(std::size_t bytes);

    std::vector<std::unique_ptr<std::byte[]>> blocks_;
    std::size_t left_ = 0;
    std::byte* next_ = nullptr;
};

/// Items by number. It grows in blocks that stay where they are: nothing is copied, and little is taken in
/// vain.
template <class T>
class RasterSequence {
public:
    void Append(const T& item) {
        if (size_ == blocks_.size() << kBlockShift) blocks_.push_back(std::make_unique<T[]>(kBlock));
        (*this)[size_++] = item;
    }
    /// Forgets the items from this one on.
    void Truncate(std::size_t size) { size_ = size; }
    T& operator[](std::size_t i) { return blocks_[i >> kBlockShift][i & (kBlock - 1)]; }
    const T& operator[](std::size_t i) const { return blocks_[i >> kBlockShift][i & (kBlock - 1)]; }
    const T& Last() const { return (*this)[size_ - 1]; }
    std::size_t GetSize() const { return size_; }
    bool IsEmpty() const { return size_ == 0; }

private:
    static constexpr unsigned int kBlockShift = 8;
    static constexpr std::size_t kBlock = std::size_t{1} << kBlockShift;
    std::vector<std::unique_ptr<T[]>> blocks_;
    std::size_t size_ = 0;
};

/// A point near the place that its geometry counts from.
struct RasterPoint {
    float x = 0.0F, y = 0.0F;
    friend bool operator==(const RasterPoint&, const RasterPoint&) = default;
};

struct RasterContour {
    enum class Verb : std::uint8_t { kLine, kCubic };  // one point, three points
    const RasterPoint* points = nullptr;               // the start, then those of the verbs
    const Verb* verbs = nullptr;
    std::uint32_t verbCount = 0;
    bool closed = false;  // its last point is its first, then
};

/// Outlines in device space.
struct RasterGeometry {
    int originX = 0, originY = 0;
    std::uint32_t contourCount = 0;
    const RasterContour* contours = nullptr;
};

/// The outline of a glyph as it is drawn: straight pieces, from the glyph's own origin.
struct RasterGlyph {
    struct Contour {
        std::uint32_t first = 0, count = 0;
    };
    std::vector<Contour> contours;  // closed
    std::vector<RasterPoint> points;
    std::vector<std::uint8_t> smooth;  // a point, whether it is inside a curve
    float top = 0.0F, bottom = 0.0F, left = 0.0F, right = 0.0F;
    bool clockwise = false;  // area of its contours taken together, y down

    bool IsEmpty() const { return contours.empty(); }
};

struct RasterGlyphPlace {
    const RasterGlyph* glyph = nullptr;
    float x = 0.0F, y = 0.0F;  // from the operation's origin
};

/// Pixels that paint an inside.
struct RasterPicture {
    ORVRef<const ORVPixelImage> image;
    ORVMathAffine2D toDevice;  // from the image's pixels
    bool repeats = false;      // else the image's border goes on without end
};

/// What cuts a drawing off: a box in device space, fractions of pixels included, or an outline.
struct RasterClip {
    double left = 0.0, top = 0.0, right = 0.0, bottom = 0.0;
    const RasterGeometry* outline = nullptr;
};

/// One paint on one area: all its outlines together, drawn once.
struct RasterOperation {
    RasterGeometry geometry;                   // of paths
    const RasterGlyphPlace* glyphs = nullptr;  // or of glyphs
    const StrokePen* pen = nullptr;            // draws the outlines; null for none
    const RasterPicture* picture = nullptr;    // paints instead of the colour
    std::uint32_t clip = 0;
    ORVPrintColour colour;
    bool fills = true;
    bool evenOdd = false;
    bool smooths = true;      // false: no levels of coverage
    bool clipped = false;     // something of it may lie outside of the clip
    int left = 0, right = 0;  // pixel columns that may be touched, [left, right)
};

/// A part of an operation, small enough to be looked at as a whole in every band that it touches.
struct RasterPiece {
    static constexpr std::uint32_t kAll = 0xFFFFFFFFU;
    std::uint32_t operation = 0;
    int firstRow = 0, lastRow = 0;  // rows that it may touch, on the page
    std::uint32_t contour = kAll;   // all of the operation's contours, or verbs of one
    std::uint32_t firstVerb = 0, verbCount = 0;
    std::uint32_t firstPoint = 0;  // where the first verb starts; of glyphs: the first one
};

/// What a page shows, in device space and in drawing order. Its size goes with the drawing's content, not
/// with the page's resolution.
class DisplayList {
public:
    /// @param scale     pixels in a user unit
    /// @param thinnest  lines are at least so wide, in pixels
    void Begin(int width, int height, double scale, double thinnest, bool smooths);
    void Clear();

    void BeginClip(const ORVMathBox2D& box);
    void EndClip();
    void AddShape(const ORVPrintShape& shape);
    void AddText(const ORVPrintText& text);
    void AddImage(const ORVPrintImage& image);

    const RasterSequence<RasterOperation>& GetOperations() const { return operations_; }
    const RasterSequence<RasterPiece>& GetPieces() const { return pieces_; }
    const std::vector<RasterClip>& GetClips() const { return clips_; }
    int GetWidth() const { return width_; }
    int GetHeight() const { return height_; }
    /// True while nothing but black, white and greys was drawn.
    bool IsGrey() const { return isGrey_; }

private:
    struct Extent {
        double left = 0.0, top = 0.0, right = 0.0, bottom = 0.0;
    };
    struct GlyphMap {
        const ORVFontFace* face = nullptr;
        double m11 = 0.0, m12 = 0.0, m21 = 0.0, m22 = 0.0;
        friend bool operator==(const GlyphMap&, const GlyphMap&) = default;
    };
    struct GlyphMapHash {
        std::size_t operator()(const GlyphMap& map) const;
    };

    ORVMathAffine2D ToDevice(const ORVMathAffine2D& toPage) const;
    bool MakeGeometry(const ORVPrintPath& path, const ORVMathAffine2D& toDevice, PathUse use,
                      RasterGeometry& geometry, Extent& extent);
    bool CollectContours(const ORVPrintPath& path, const ORVMathAffine2D& toDevice);
    RasterGeometry KeepContours(Extent& extent);
    void AddPath(const ORVPrintPath& path, const ORVMathAffine2D& toDevice, const ORVPrintFill* fill,
                 const ORVPrintStroke* stroke);
    void AddOperation(const RasterOperation& operation, const Extent& extent);
    void AddPiecesOf(const RasterOperation& operation, const Extent& extent, int firstRow, int lastRow);
    void AddRun(const ORVPrintText& text, const ORVGlyphRun& run, const ORVMathAffine2D& toDevice,
                std::uint32_t clip);
    void AddGlyphs(RasterOperation operation);
    void AddGlyphPictures(const ORVGlyphRun& run, const ORVMathAffine2D& toDevice, const ORVPrintFill& fill,
                          std::uint32_t clip);
    const RasterGlyph* FindGlyph(const ORVGlyphRun& run, std::uint32_t index, const GlyphMap& map);
    const StrokePen* KeepPen(const ORVPrintStroke& stroke, const ORVMathAffine2D& toDevice);
    const RasterPicture* KeepPicture(const ORVPixelImage& image, const ORVMathAffine2D& toDevice,
                                     bool repeats);
    std::uint32_t AddClip(RasterClip clip);
    std::uint32_t ClipText(const ORVPrintPath& path);
    RasterOperation NewOperation(const ORVPrintColour& colour);

    int width_ = 0, height_ = 0;
    double scale_ = 1.0, thinnest_ = 0.0;
    bool smooths_ = true, isGrey_ = true;

    RasterArena arena_;
    RasterSequence<RasterOperation> operations_;
    RasterSequence<RasterPiece> pieces_;
    std::vector<RasterClip> clips_;
    std::vector<std::uint32_t> openClips_;

    struct KeptPen {
        ORVPrintStroke stroke;  // its dashes are those below
        std::vector<double> dashes, dashEnds;
        ORVMathAffine2D map;
        StrokePen pen;
    };
    std::deque<KeptPen> pens_;
    std::deque<RasterPicture> pictures_;
    std::deque<RasterGlyph> glyphs_;
    std::unordered_map<GlyphMap, std::uint32_t, GlyphMapHash> glyphMaps_;
    std::unordered_map<std::uint64_t, const RasterGlyph*> glyphIndex_;  // by number of map and glyph

    // Kept between calls for their memory.
    struct ContourDraft {
        std::size_t firstPoint = 0, firstVerb = 0;
        bool closed = false;
    };
    std::vector<ContourDraft> drafts_;
    std::vector<ORVMathPoint2D> draftPoints_;
    std::vector<RasterContour::Verb> draftVerbs_;
    std::vector<RasterGlyphPlace> places_;
    ORVPrintPath fitted_, outlines_;
};
