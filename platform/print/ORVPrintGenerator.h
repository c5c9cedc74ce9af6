// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "platform/mathematics/geometry.h"
#include "platform/system/ORVBaseObject.h"

class ORVPixelImage;
struct ORVPrintFilter;
struct ORVPrintPath;
struct ORVTextLayout;

/// An sRGB colour with opacity. Black and opaque by default.
struct ORVPrintColour {
    std::uint8_t red = 0, green = 0, blue = 0, opacity = 255;  ///< 0 to 255; opacity 255 is opaque
};

/// A colour stop of a gradient.
struct ORVPrintGradientStop {
    double offset = 0.0;    ///< from 0 to 1
    ORVPrintColour colour;  ///< colour at the offset
};

/// A gradient. Colour and opacity are interpolated separately (not premultiplied), in sRGB.
struct ORVPrintGradient {
    /// Geometry of the gradient.
    enum class Kind : std::uint8_t {
        kLinear,  ///< along the line from `start` to `end`
        kRadial,  ///< between two circles, as in the HTML canvas and PDF
    };
    /// What is painted before offset 0 and after offset 1: the colour at that end, the gradient mirrored, or
    /// the gradient repeated.
    enum class Spread : std::uint8_t { kPad, kReflect, kRepeat };

    Kind kind = Kind::kLinear;     ///< determines the meaning of `start` and `end`
    Spread spread = Spread::kPad;  ///< what is painted outside offsets 0 to 1
    ORVMathPoint2D start;          ///< position of offset 0: an end of the line, or the first centre
    ORVMathPoint2D end;            ///< position of offset 1; for kLinear, different from `start`
    /// Radius of the first circle. Radii are not negative and not both 0, and the circles are not equal. If
    /// neither circle contains the other, nothing is painted outside the cone formed by them.
    double startRadius = 0.0;
    double endRadius = 0.0;  ///< radius of the second circle
    /// At least two, in ascending order of offset. Where several have the same offset, the first applies up
    /// to that position and the last applies after it.
    std::span<const ORVPrintGradientStop> stops;
    ORVMathAffine2D toPage;  ///< from the gradient's coordinates to page coordinates; invertible
};

/// The paint of an area: a colour, a gradient, or a repeated bitmap.
struct ORVPrintFill {
    ORVPrintColour colour;  ///< with a pattern, only its opacity applies; with a gradient, its first colour
    bool evenOdd = false;   ///< even-odd rule; otherwise the nonzero rule
    const ORVPixelImage* pattern = nullptr;  ///< bitmap repeated in both directions; null for none
    ORVMathAffine2D patternToPage = {};      ///< from pattern pixels (y down) to page coordinates
    /// Null for none. Opacities of the stops are final. Generators without gradients use `colour`.
    const ORVPrintGradient* gradient = nullptr;
    bool isCrisp = false;  ///< no antialiasing of the edges in raster output
    /// For raster output: nothing shows of edges that parts of the path share. The dialect SVG adds up the
    /// coverage of parts.
    bool isExact = false;
};

/// The paint and style of an outline. Lengths are in the coordinates of the shape, before its `toPage`.
struct ORVPrintStroke {
    /// Ends of lines and dashes.
    enum class Cap : std::uint8_t { kButt, kRound, kSquare };
    /// Corners of lines. Beyond the miter limit, kMiter becomes kBevel, and kMiterClip is cut off at the
    /// limit; generators without kMiterClip treat it as kMiter.
    enum class Join : std::uint8_t { kMiter, kRound, kBevel, kMiterClip };
    ORVPrintColour colour;                       ///< colour and opacity of the line
    double width = 1.0;                          ///< greater than 0
    Cap cap = Cap::kButt;                        ///< ends of open lines and of dashes
    Join join = Join::kMiter;                    ///< corners between segments
    double miterLimit = 4.0;                     ///< ratio of miter length to line width, as in SVG
    std::span<const double> dashes;              ///< lengths of dashes and gaps; empty for a solid line
    double dashOffset = 0.0;                     ///< start in the dash pattern; not negative
    const ORVPrintGradient* gradient = nullptr;  ///< as in ORVPrintFill
    bool isCrisp = false;                        ///< as in ORVPrintFill
    /// For raster output: caps and joins at curves follow the curve's tangent instead of its flattened form,
    /// lines thinner than a pixel are as light as their width says, and lines drawn forth and back are no
    /// bolder than others. The dialect SVG keeps the flattened form, gives lines a minimum width, and adds up
    /// the coverage of overlapping parts.
    bool isExact = false;
};

/// An outline with its paints. The fill is painted before the stroke.
struct ORVPrintShape {
    const ORVPrintPath& path;                ///< the outline, in its own coordinates
    ORVMathAffine2D toPage;                  ///< from the outline's coordinates to page coordinates
    const ORVPrintFill* fill = nullptr;      ///< null for no fill
    const ORVPrintStroke* stroke = nullptr;  ///< null for no stroke
    std::string_view id = {};                ///< see ORVPrintGenerator::KeepsIdentifiers
};

/// One line of shaped text.
struct ORVPrintText {
    const ORVTextLayout& layout;             ///< positioned glyphs
    std::string_view text;                   ///< the text that the layout's clusters index, UTF-8
    ORVMathAffine2D toPage;                  ///< from layout space (y up, origin at pen start) to page
    const ORVPrintFill* fill = nullptr;      ///< null for no fill
    const ORVPrintStroke* stroke = nullptr;  ///< null for no stroke
    const ORVPrintPath* clip = nullptr;      ///< clip path in page coordinates; null for none
    std::string_view id = {};                ///< see ORVPrintGenerator::KeepsIdentifiers
};

/// A raster image. `toPage` maps the unit square to the page: (0, 0) is the upper left corner of the image,
/// (1, 1) the lower right one.
struct ORVPrintImage {
    const ORVPixelImage& image;  ///< decoded on demand
    ORVMathAffine2D toPage;      ///< from the unit square to page coordinates
    std::string_view id = {};    ///< see ORVPrintGenerator::KeepsIdentifiers
    bool isSmooth = true;        ///< interpolate between pixels; otherwise pixels are rectangles
};

/// Which source objects the following calls draw: primitives of the page in drawing order, or elements of the
/// drawing in document order. Numbers start at 1.
struct ORVPrintOrigin {
    std::uint32_t first = 0;  ///< 0 when unknown
    std::uint32_t last = 0;   ///< greater than `first` for a line that several primitives form together
};

/// Properties of the document, known before the first page.
struct ORVPrintDocumentInfo {
    std::string_view title;      ///< UTF-8, may be empty
    unsigned int pageCount = 0;  ///< number of pages that will be drawn; 0 when not known yet
};

/// Properties of a page, known before its content is drawn.
struct ORVPrintPageInfo {
    unsigned int number = 0;                  ///< position in the document, from 1
    double width = 0.0;                       ///< user units (1/90 inch); positive and finite
    double height = 0.0;                      ///< user units (1/90 inch); positive and finite
    std::string_view id, title, description;  ///< UTF-8; may be empty
    /// The page after trimming, in page coordinates; empty when it is the whole page.
    ORVMathBox2D trim;
    /// Label shown instead of the page number, such as "A2" for one sheet of a poster; empty to show the
    /// number.
    std::string_view label;
};

/// A layer in the sense of drawing editors, which viewers can show and hide.
struct ORVPrintContentLayer {
    std::string_view label;  ///< UTF-8, not empty
    bool isShown = true;     ///< initially visible
    bool isLocked = false;   ///< viewers should not let users change its visibility
};

/// A group of content, which may be a single shape that is the target of a link. Carries its descriptive
/// texts and the link that it is an anchor of.
struct ORVPrintGroup {
    std::string_view id, description;  ///< UTF-8; may be empty
    /// Id of the link's target in the same drawing. Empty when there is no link, or when the drawing has no
    /// such element, so links are never broken.
    std::string_view linkElementId;
    std::string_view linkURL;   ///< target of the link outside the drawing; empty for none
    int linkShow = 0;           ///< a value of ORVPrintLinkShow
    bool isLinkTarget = false;  ///< a link leads to this id, and this is the first element with the id
    /// Null when the group is not a layer. Layers may be nested; they do not occur in masks, clips and
    /// symbols.
    const ORVPrintContentLayer* layer = nullptr;
};

/// A clip path: content is clipped to the inside of the outline.
struct ORVPrintClipPath {
    const ORVPrintPath& path;  ///< empty to hide everything
    ORVMathAffine2D toPage;    ///< from the outline's coordinates to page coordinates
    bool evenOdd = false;      ///< even-odd rule; otherwise the nonzero rule
};

/// Blend mode of a layer, as defined by Compositing and Blending and by PDF.
enum class ORVPrintBlendMode : std::uint8_t {
    kNormal,
    kMultiply,
    kScreen,
    kOverlay,
    kDarken,
    kLighten,
    kColourDodge,
    kColourBurn,
    kHardLight,
    kSoftLight,
    kDifference,
    kExclusion,
    kHue,
    kSaturation,
    kColour,
    kLuminosity,
};

/// A transparency group: content that is composited separately and then painted on the backdrop as one image.
struct ORVPrintLayer {
    double opacity = 1.0;                                  ///< 0 to 1
    ORVPrintBlendMode blend = ORVPrintBlendMode::kNormal;  ///< how the layer is blended with its backdrop
    bool isIsolated = true;                                ///< false: blend modes inside see the backdrop
    bool hasMask = false;                                  ///< BeginMask is the next call
    /// Bounding box of the visible content, in page coordinates. Anything outside is not shown.
    ORVMathBox2D box;
};

/// The mask of a layer. The mask's content is not shown; its luminance or opacity determines how much of the
/// layer shows.
struct ORVPrintMask {
    /// Which property of the content is the mask value.
    enum class Kind : std::uint8_t {
        kLuminance,  ///< 0.2125 red + 0.7154 green + 0.0721 blue of sRGB, times opacity; black if unpainted
        kOpacity,
        kLinearLuminance,  ///< like kLuminance, with the sRGB values converted to linear light first
    };
    Kind kind = Kind::kLuminance;  ///< which property of the content is the mask value
    ORVMathBox2D box;              ///< in page coordinates; the layer is hidden outside it
};

/// Content that occurs several times on a page, differing only in its transformation.
struct ORVPrintSymbol {
    const void* key = nullptr;  ///< identifies the content until the document ends
    ORVMathAffine2D toPage;     ///< from the symbol's coordinates to page coordinates
};

/// Content repeated in a grid.
struct ORVPrintTiles {
    ORVMathBox2D tile;       ///< area of one tile, in tile coordinates; content is clipped to it
    double xStep = 1.0;      ///< distance between tiles in x, greater than 0
    double yStep = 1.0;      ///< distance between tiles in y, greater than 0
    ORVMathAffine2D toPage;  ///< from tile coordinates (of about the page's scale) to page coordinates
    ORVMathBox2D shown;      ///< area of the page that is tiled
    bool isPlain = true;     ///< all content is shapes in plain colours
    bool isHeavy = false;    ///< the output would become very large if the tiles were drawn one by one
    /// Tiles of a drawing with the same number have the same content and box; 0: not known.
    std::uint64_t key = 0;
};

/// Interface of output formats and devices. The renderer resolves the model and calls a generator, which
/// needs no knowledge of models. Page coordinates are user units of 1/90 inch with the origin in the upper
/// left corner and y pointing down.
///
/// Every call returns 1 on success; any other value ends the drawing. Once BeginDocument has succeeded,
/// EndDocument is always called, so that the output is closed cleanly. Views and references passed to a call
/// are valid only during the call.
class ORV_PLATFORM_EXPORT ORVPrintGenerator {
public:
    virtual ~ORVPrintGenerator();

    /// The first call; made once.
    [[nodiscard]] virtual int BeginDocument(const ORVPrintDocumentInfo& info) = 0;
    /// Begins an empty page. Pages are not nested.
    [[nodiscard]] virtual int BeginPage(const ORVPrintPageInfo& info) = 0;
    /// Begins a group. Groups may be nested and have no transformation. Groups that carry no information are
    /// not reported.
    [[nodiscard]] virtual int BeginGroup(const ORVPrintGroup& group) = 0;
    /// Ends the innermost group.
    [[nodiscard]] virtual int EndGroup() = 0;
    /// Clips content to a box in page coordinates until EndClip. Clips may be nested and are ended in
    /// the group that they were begun in.
    [[nodiscard]] virtual int BeginClip(const ORVMathBox2D& box) = 0;
    /// Ends the innermost clip.
    [[nodiscard]] virtual int EndClip() = 0;

    /// What a generator supports, as flags. Unsupported content is either replaced before it reaches the
    /// generator (see flatten/) or simplified: gradients become their first colour, layers are drawn without
    /// compositing, clip paths become their bounding box, and filtered content is drawn unfiltered.
    enum Power : unsigned int {
        kGradients = 1,  ///< in fills and strokes, including those of texts
        kClipPaths = 2,
        kLayers = 4,      ///< with opacity
        kBlendModes = 8,  ///< of layers
        kMasks = 16,      ///< of layers
        kFilters = 32,
        /// Can hide groups that are layers of the drawing. Other generators do not receive hidden layers.
        kContentLayers = 1U << 16U,
        /// Accepts text with neither fill nor stroke, which is invisible but can be searched and copied.
        /// Other generators do not receive it.
        kUnseenText = 1U << 17U,
    };
    /// The flags of what this generator supports. Constant while a document is open.
    virtual unsigned int GetPowers() const { return 0; }
    /// Like BeginClip, for a clip path.
    [[nodiscard]] virtual int BeginClipPath(const ORVPrintClipPath& clip);
    /// Ends the innermost clip path.
    [[nodiscard]] virtual int EndClipPath() { return EndClip(); }
    /// Begins a layer. Layers may be nested and may contain groups, clips and symbols; they are ended inside
    /// the group, clip or symbol that they were begun in.
    [[nodiscard]] virtual int BeginLayer(const ORVPrintLayer& /*layer*/) { return 1; }
    /// Ends the innermost layer and composites it.
    [[nodiscard]] virtual int EndLayer() { return 1; }
    /// Begins the mask of the layer that has just begun; its content follows, up to EndMask. It contains no
    /// links or identifiers.
    /// @return kSkipMask when the generator has no masks: neither content nor EndMask follows
    [[nodiscard]] virtual int BeginMask(const ORVPrintMask& /*mask*/) { return kSkipMask; }
    /// Ends the mask; the content of the layer follows.
    [[nodiscard]] virtual int EndMask() { return 1; }
    static constexpr int kSkipMask = 2;  ///< result of BeginMask: masks are not supported

    /// Begins filtered content. The inputs of the filter come first, then the content, which may be empty.
    /// Filters are properly nested with each
    /// other and with everything else.
    [[nodiscard]] virtual int BeginFilter(const ORVPrintFilter& /*filter*/) { return 1; }
    /// Ends the innermost filter.
    [[nodiscard]] virtual int EndFilter() { return 1; }
    /// Begins the next input of the filter that has just begun. It contains no links or identifiers.
    /// @return kSkipInput when the generator has no filters: neither content nor EndFilterInput follows
    [[nodiscard]] virtual int BeginFilterInput() { return kSkipInput; }
    /// Ends the filter input.
    [[nodiscard]] virtual int EndFilterInput() { return 1; }
    static constexpr int kSkipInput = 2;  ///< result of BeginFilterInput: filters are not supported

    /// Announces content that may have been drawn before. A generator that stores such content returns
    /// kDrawSymbol when the content is new: it follows in the symbol's coordinates, up to EndSymbol. It
    /// returns kSymbolKnown when the content is already stored: nothing follows. A generator that does not
    /// store symbols returns kNoSymbols: the content follows in page coordinates without EndSymbol, and no
    /// more symbols are announced in that drawing. Symbols may be nested and contain neither groups nor
    /// clips; identifiers within them are not reported.
    [[nodiscard]] virtual int BeginSymbol(const ORVPrintSymbol& /*symbol*/) { return kNoSymbols; }
    /// Ends the content of a symbol for which BeginSymbol returned kDrawSymbol.
    [[nodiscard]] virtual int EndSymbol() { return 1; }
    static constexpr int kDrawSymbol = 1;   ///< result of BeginSymbol: draw the content, which will be stored
    static constexpr int kSymbolKnown = 2;  ///< result of BeginSymbol: already stored, and now placed
    static constexpr int kNoSymbols = 3;    ///< result of BeginSymbol: draw the content like any other

    /// Announces repeated content. A generator that supports tiling returns kDrawTile: the content of one
    /// tile follows in tile coordinates, up to EndTiles. Others return kNoTiles: the tiles follow one by one
    /// in page coordinates, without EndTiles. Tiles may be nested and contain no groups with links.
    /// A generator that keeps tiles may return kTilesKnown: it has drawn all of them, and neither content nor
    /// EndTiles follows.
    [[nodiscard]] virtual int BeginTiles(const ORVPrintTiles& /*tiles*/) { return kNoTiles; }
    /// Ends the content of a tile for which BeginTiles returned kDrawTile.
    [[nodiscard]] virtual int EndTiles() { return 1; }
    static constexpr int kDrawTile = 1;    ///< result of BeginTiles: draw one tile
    static constexpr int kNoTiles = 2;     ///< result of BeginTiles: draw each tile like any other content
    static constexpr int kTilesKnown = 3;  ///< result of BeginTiles: all tiles are drawn

    /// Whether the generator uses the identifiers of shapes, texts and images. If so, they are passed with
    /// the draw calls, except inside symbols and for a shape that is wrapped in a group because a link leads
    /// to it. Otherwise they are not looked up.
    virtual bool KeepsIdentifiers() const { return false; }
    /// Paints an outline.
    [[nodiscard]] virtual int DrawShape(const ORVPrintShape& shape) = 0;
    /// Paints a line of text.
    [[nodiscard]] virtual int DrawText(const ORVPrintText& text) = 0;
    /// Paints an image.
    [[nodiscard]] virtual int DrawImage(const ORVPrintImage& image) = 0;
    /// Ends the page. Its groups, clips and symbols have been ended.
    [[nodiscard]] virtual int EndPage() = 0;
    /// The last call, made even when another call has failed. The output is complete when it returns 1.
    [[nodiscard]] virtual int EndDocument() = 0;

    /// Whether the generator uses NoteOrigin. Otherwise origins are not tracked.
    virtual bool FollowsOrigins() const { return false; }
    /// Sets the origin of the following shapes, texts and images.
    virtual void NoteOrigin(const ORVPrintOrigin& /*origin*/) {}
};
