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

/// A device colour: sRGB and opacity, 255 being opaque.
struct ORVPrintColour {
    std::uint8_t red = 0, green = 0, blue = 0, opacity = 255;  ///< 0 to 255
};

/// A colour of a gradient, and where it stands.
struct ORVPrintGradientStop {
    double offset = 0.0;    ///< from 0 to 1
    ORVPrintColour colour;  ///< at the offset
};

/// Colours that run into each other. Colour and opacity are mixed each by itself, in sRGB.
struct ORVPrintGradient {
    /// The shape along which colours change.
    enum class Kind : std::uint8_t {
        kLinear,  ///< along the line from `start` to `end`
        kRadial,  ///< from one circle to another, as canvases and PDF draw them
    };
    /// What lies before the first and behind the last place: the colour there, the gradient mirrored, or the
    /// gradient again.
    enum class Spread : std::uint8_t { kPad, kReflect, kRepeat };

    Kind kind = Kind::kLinear;     ///< says what the places are
    Spread spread = Spread::kPad;  ///< beyond the first and the last place
    ORVMathPoint2D start;          ///< where offset 0 lies: an end of the line, or the centre of a circle
    ORVMathPoint2D end;            ///< where offset 1 lies; for lines, not where the other lies
    /// Of the first circle. Radii are not negative and not both 0; the circles differ. Where one circle does
    /// not hold the other, nothing shows beside the cone of the two.
    double startRadius = 0.0;
    double endRadius = 0.0;  ///< of the second circle
    /// At least two, in ascending order of offsets; of equal offsets the first one counts up to the place
    /// and the last one from there.
    std::span<const ORVPrintGradientStop> stops;
    ORVMathAffine2D toPage;  ///< from the gradient's coordinates to those of the page; can be inverted
};

/// How an inside is painted: with a colour, a gradient, or a bitmap that repeats in both directions.
struct ORVPrintFill {
    ORVPrintColour colour;  ///< with a pattern, only its opacity counts; with a gradient, its first colour
    bool evenOdd = false;   ///< whether a point is inside by the even-odd rule, else by the nonzero rule
    const ORVPixelImage* pattern = nullptr;  ///< repeats in both directions; null for none
    ORVMathAffine2D patternToPage = {};      ///< from pattern pixels (y down) to page coordinates
    /// Null for none. Its stops have their final opacities. Generators that cannot draw it draw `colour`.
    const ORVPrintGradient* gradient = nullptr;
    bool isCrisp = false;  ///< in pixels, its edges have no levels between nothing and all
};

/// How an outline is painted. Lengths are measured before the shape's map to the page.
struct ORVPrintStroke {
    /// Ends of lines and dashes.
    enum class Cap : std::uint8_t { kButt, kRound, kSquare };
    /// Corners of lines. Beyond the miter limit, kMiter is as kBevel, and kMiterClip is cut off there;
    /// generators that cannot do so draw kMiterClip as kMiter.
    enum class Join : std::uint8_t { kMiter, kRound, kBevel, kMiterClip };
    ORVPrintColour colour;                       ///< of the line
    double width = 1.0;                          ///< greater than 0
    Cap cap = Cap::kButt;                        ///< of open lines and dashes
    Join join = Join::kMiter;                    ///< of segments that meet
    double miterLimit = 4.0;                     ///< ratio of miter length to width, as SVG counts it
    std::span<const double> dashes;              ///< lengths of dashes and gaps, none for a solid line
    double dashOffset = 0.0;                     ///< where in the dashes a line begins, not negative
    const ORVPrintGradient* gradient = nullptr;  ///< as in ORVPrintFill
    bool isCrisp = false;                        ///< as in ORVPrintFill
};

/// An outline with its paints; a null paint is not drawn. The fill comes before the stroke.
struct ORVPrintShape {
    const ORVPrintPath& path;                ///< the outline, before `toPage`
    ORVMathAffine2D toPage;                  ///< from the outline's coordinates to those of the page
    const ORVPrintFill* fill = nullptr;      ///< null when the inside is not painted
    const ORVPrintStroke* stroke = nullptr;  ///< null when the outline is not painted
    std::string_view id = {};                ///< see ORVPrintGenerator::KeepsIdentifiers
};

/// One line of shaped text.
struct ORVPrintText {
    const ORVTextLayout& layout;             ///< the glyphs in their places
    std::string_view text;                   ///< UTF-8 that the layout's clusters refer to
    ORVMathAffine2D toPage;                  ///< from the layout's space (y up, origin at its pen's start)
    const ORVPrintFill* fill = nullptr;      ///< null when the inside is not painted
    const ORVPrintStroke* stroke = nullptr;  ///< null when the outline is not painted
    const ORVPrintPath* clip = nullptr;      ///< in page coordinates; null for none
    std::string_view id = {};                ///< see ORVPrintGenerator::KeepsIdentifiers
};

/// A pixel image. `toPage` takes the unit square to the page: (0, 0) is the image's upper left corner,
/// (1, 1) its lower right one.
struct ORVPrintImage {
    const ORVPixelImage& image;  ///< its pixels come when they are asked for
    ORVMathAffine2D toPage;      ///< from the unit square to page coordinates
    std::string_view id = {};    ///< see ORVPrintGenerator::KeepsIdentifiers
    bool isSmooth = true;        ///< whether what lies between pixels is blended, else each is an area
};

/// What of a drawing calls show: primitives of a page in the order in which the renderer comes to them, or
/// elements of the drawing in document order; counted from 1.
struct ORVPrintOrigin {
    std::uint32_t first = 0;  ///< 0 when it is not known
    std::uint32_t last = 0;   ///< beyond `first` for a line that several primitives draw together
};

/// What is known of a document before its first page.
struct ORVPrintDocumentInfo {
    std::string_view title;      ///< UTF-8, may be empty
    unsigned int pageCount = 0;  ///< pages that will be drawn, 0 when that is not known yet
};

/// What is known of a page before anything is drawn on it.
struct ORVPrintPageInfo {
    unsigned int number = 0;                  ///< 1-based place in the document
    double width = 0.0;                       ///< user units of 1/90 inch, positive and finite
    double height = 0.0;                      ///< as the width
    std::string_view id, title, description;  ///< UTF-8, each perhaps empty
    /// What remains when the sheet has been cut, in page coordinates; empty for all of the page.
    ORVMathBox2D trim;
    /// How the page is called where pages are counted, such as "A2" for a part of a poster; empty for its
    /// number.
    std::string_view label;
};

/// A layer of the drawing as its editor has them, which viewers can show and hide.
struct ORVPrintContentLayer {
    std::string_view label;  ///< UTF-8, not empty
    bool isShown = true;     ///< to begin with
    bool isLocked = false;   ///< whether viewers leave it as it is
};

/// A part of the page that belongs together, a single shape that links lead to among them: its texts and the
/// target of its link, all perhaps empty.
struct ORVPrintGroup {
    std::string_view id, description;  ///< UTF-8, each perhaps empty
    /// Another place of the drawing, named by its id. Empty when the drawing has no such place, so that a
    /// link never leads nowhere.
    std::string_view linkElementId;
    std::string_view linkURL;   ///< where the link leads outside of the drawing; empty for nowhere
    int linkShow = 0;           ///< ORVPrintLinkShow
    bool isLinkTarget = false;  ///< a link leads to this id; true for the first place that bears it
    /// Null when the group is no layer. Layers nest. They do not occur in masks, clips and symbols.
    const ORVPrintContentLayer* layer = nullptr;
};

/// A region that content is cut to: the inside of an outline.
struct ORVPrintClipPath {
    const ORVPrintPath& path;  ///< empty for a region in which nothing shows
    ORVMathAffine2D toPage;    ///< from the outline's coordinates to those of the page
    bool evenOdd = false;      ///< whether a point is inside by the even-odd rule, else by the nonzero rule
};

/// How the colours of a layer meet those below it, as in Compositing and Blending, and in PDF.
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

/// Content that is painted by itself, on nothing, and then laid over what is there as one image.
struct ORVPrintLayer {
    double opacity = 1.0;                                  ///< from 0 to 1
    ORVPrintBlendMode blend = ORVPrintBlendMode::kNormal;  ///< with what lies below the layer
    bool isIsolated = true;                                ///< false: blend modes in it see what lies below
    bool hasMask = false;                                  ///< BeginMask follows at once
    /// What of the page the content can reach, in page coordinates; all that lies outside is not shown.
    ORVMathBox2D box;
};

/// What of a layer shows: content that is drawn for its light or its opacity, and not itself seen.
struct ORVPrintMask {
    /// What of the content counts.
    enum class Kind : std::uint8_t {
        kLuminance,  ///< 0.2125 red, 0.7154 green, 0.0721 blue of sRGB values, times opacity; none is black
        kOpacity,
        kLinearLuminance,  ///< the same of light as it adds up: sRGB values are made linear before
    };
    Kind kind = Kind::kLuminance;  ///< what of the content counts
    ORVMathBox2D box;              ///< outside of it, in page coordinates, nothing of the layer shows
};

/// Content that a page shows at several places, each time alike but for its map.
struct ORVPrintSymbol {
    const void* key = nullptr;  ///< the same for the same content, as long as the document is open
    ORVMathAffine2D toPage;     ///< from the symbol's own coordinates
};

/// The same content again and again, side by side.
struct ORVPrintTiles {
    ORVMathBox2D tile;       ///< what of the content shows, in the tiles' own coordinates
    double xStep = 1.0;      ///< from one tile to the next, greater than 0
    double yStep = 1.0;      ///< as `xStep`
    ORVMathAffine2D toPage;  ///< from the tiles' coordinates, which are about as large as the page's
    ORVMathBox2D shown;      ///< what of the page is covered
};

/// Where a drawing goes: a file format or a device. The renderer resolves the model and calls this; a
/// generator knows nothing of models. Page coordinates are user units of 1/90 inch, the origin in the
/// page's upper left corner, y pointing down.
///
/// Every call returns 1 when it worked; anything else ends the drawing. EndDocument is called in every
/// case once BeginDocument worked, so that output is closed cleanly. Views and references are valid
/// during the call only.
class ORV_PLATFORM_EXPORT ORVPrintGenerator {
public:
    virtual ~ORVPrintGenerator();

    /// Comes first, once.
    [[nodiscard]] virtual int BeginDocument(const ORVPrintDocumentInfo& info) = 0;
    /// Begins a page, with nothing on it. Pages do not nest.
    [[nodiscard]] virtual int BeginPage(const ORVPrintPageInfo& info) = 0;
    /// Groups nest; they carry no transform of their own. Only groups that say something are reported.
    [[nodiscard]] virtual int BeginGroup(const ORVPrintGroup& group) = 0;
    /// Ends the innermost group.
    [[nodiscard]] virtual int EndGroup() = 0;
    /// Until EndClip, nothing shows outside of this box, which is in page coordinates. Clips nest, and do not
    /// cross groups.
    [[nodiscard]] virtual int BeginClip(const ORVMathBox2D& box) = 0;
    /// Ends the innermost clip.
    [[nodiscard]] virtual int EndClip() = 0;

    /// What a generator can say by itself, as flags. What it cannot, others do for it (see flatten/), or the
    /// content is drawn more plainly: gradients as their first colour, content of layers as if there were no
    /// layer, clips by the box around their outline, and content of filters as it is.
    enum Power : unsigned int {
        kGradients = 1,  ///< in fills and strokes, of texts, too
        kClipPaths = 2,
        kLayers = 4,      ///< with opacity
        kBlendModes = 8,  ///< of layers
        kMasks = 16,      ///< of layers
        kFilters = 32,
        /// Groups that are layers of the drawing can be hidden. Others get no hidden ones.
        kContentLayers = 1U << 16U,
        /// Texts with neither fill nor stroke are not seen, and are there to be found and copied. Others get
        /// none.
        kUnseenText = 1U << 17U,
    };
    /// The flags of what this generator can say; the same as long as the document is open.
    virtual unsigned int GetPowers() const { return 0; }
    /// As BeginClip, for the inside of an outline.
    [[nodiscard]] virtual int BeginClipPath(const ORVPrintClipPath& clip);
    /// Ends the innermost clip.
    [[nodiscard]] virtual int EndClipPath() { return EndClip(); }
    /// What comes until EndLayer is one layer. Layers nest, and cross neither groups nor clips nor symbols,
    /// which they may hold.
    [[nodiscard]] virtual int BeginLayer(const ORVPrintLayer& /*layer*/) { return 1; }
    /// Ends the innermost layer, which is then laid over what is there.
    [[nodiscard]] virtual int EndLayer() { return 1; }
    /// What comes until EndMask is the mask of the layer that has just begun. Links and identifiers do not
    /// occur in it.
    /// @return kSkipMask when the generator has no masks: neither content nor EndMask follow
    [[nodiscard]] virtual int BeginMask(const ORVPrintMask& /*mask*/) { return kSkipMask; }
    /// Ends the mask; the content of its layer follows.
    [[nodiscard]] virtual int EndMask() { return 1; }
    static constexpr int kSkipMask = 2;  ///< of BeginMask: there are no masks

    /// What comes until EndFilter is filtered as one. First come the filter's inputs, then the content, which
    /// may be none. Filters nest, and cross nothing else.
    [[nodiscard]] virtual int BeginFilter(const ORVPrintFilter& /*filter*/) { return 1; }
    /// Ends the innermost filter.
    [[nodiscard]] virtual int EndFilter() { return 1; }
    /// What comes until EndFilterInput is the next input of the filter that has just begun. Links and
    /// identifiers do not occur in it.
    /// @return kSkipInput when the generator has no filters: neither content nor EndFilterInput follow
    [[nodiscard]] virtual int BeginFilterInput() { return kSkipInput; }
    /// Ends the input.
    [[nodiscard]] virtual int EndFilterInput() { return 1; }
    static constexpr int kSkipInput = 2;  ///< of BeginFilterInput: there are no filters

    /// Announces content that may have been drawn before. Generators that store such content once return
    /// kDrawSymbol when it is new: it follows in the symbol's coordinates, ended by EndSymbol; or
    /// kSymbolKnown when they have it: nothing follows. Others return kNoSymbols: the content follows in page
    /// coordinates, as though nothing had been announced, and nothing more is announced in that drawing.
    /// Symbols nest and hold neither groups nor clips: identifiers within them go unreported.
    [[nodiscard]] virtual int BeginSymbol(const ORVPrintSymbol& /*symbol*/) { return kNoSymbols; }
    /// Ends the content that BeginSymbol asked for.
    [[nodiscard]] virtual int EndSymbol() { return 1; }
    static constexpr int kDrawSymbol = 1;   ///< of BeginSymbol: the content follows, to be kept
    static constexpr int kSymbolKnown = 2;  ///< of BeginSymbol: the content is kept, and placed
    static constexpr int kNoSymbols = 3;    ///< of BeginSymbol: the content follows as any other

    /// Announces content that covers a part of the page again and again. Generators that can say so return
    /// kDrawTile: the content of one tile follows in the tiles' coordinates, ended by EndTiles. Others return
    /// kNoTiles: the tiles follow one by one, in page coordinates, as though nothing had been announced.
    /// Tiles nest, and hold no groups that lead somewhere.
    [[nodiscard]] virtual int BeginTiles(const ORVPrintTiles& /*tiles*/) { return kNoTiles; }
    /// Ends the content that BeginTiles asked for.
    [[nodiscard]] virtual int EndTiles() { return 1; }
    static constexpr int kDrawTile = 1;  ///< of BeginTiles: the content of one tile follows
    static constexpr int kNoTiles = 2;   ///< of BeginTiles: each tile follows as any other content

    /// Whether the identifiers of single shapes, texts and images are of use here. They come with these calls
    /// then, unless the shape is a group's content because a link leads to it, or lies within a symbol; for
    /// others nobody looks them up.
    virtual bool KeepsIdentifiers() const { return false; }
    /// Paints an outline over what the page shows.
    [[nodiscard]] virtual int DrawShape(const ORVPrintShape& shape) = 0;
    /// Paints a line of text over what the page shows.
    [[nodiscard]] virtual int DrawText(const ORVPrintText& text) = 0;
    /// Paints an image over what the page shows.
    [[nodiscard]] virtual int DrawImage(const ORVPrintImage& image) = 0;
    /// Ends the page; its groups, clips and symbols have been ended.
    [[nodiscard]] virtual int EndPage() = 0;
    /// Comes last, also when another call has failed. What is written is complete when this returns 1.
    [[nodiscard]] virtual int EndDocument() = 0;

    /// Whether it is of use here what of the drawing is shown by which call; for others nobody counts.
    virtual bool FollowsOrigins() const { return false; }
    /// What the shapes, texts and images that come from now on show.
    virtual void NoteOrigin(const ORVPrintOrigin& /*origin*/) {}
};
