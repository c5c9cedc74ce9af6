// SPDX-License-Identifier: Apache-2.0
#include "generators/common/visible_box.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "generators/common/glyph_outlines.h"
#include "platform/print/ORVPrintPath.h"

namespace {

constexpr int kPointsOfCurve = 32;

ORVMathPoint2D PointOfCubic(const ORVMathPoint2D& from, const ORVMathPoint2D* to, double t) {
    const double s = 1.0 - t;
    const double a = s * s * s, b = 3.0 * s * s * t, c = 3.0 * s * t * t, d = t * t * t;
    return {a * from.x + b * to[0].x + c * to[1].x + d * to[2].x,
            a * from.y + b * to[0].y + c * to[1].y + d * to[2].y};
}

/// A vertex of a flattened contour.
struct Vertex {
    ORVMathPoint2D place;
    bool isCorner;  // the pen makes a join here
};

/// Adds the area that a pen paints along a contour.
class PenBox {
public:
    PenBox(const ORVPrintStroke& stroke, const ORVMathAffine2D& toPage, ORVMathBox2D& box)
        : stroke_(stroke), toPage_(toPage), half_(stroke.width / 2.0), box_(box) {}

    void AddContour(std::vector<Vertex> contour, bool isClosed) {
        const auto isSame = [](const Vertex& a, const Vertex& b) { return a.place == b.place; };
        contour.erase(std::unique(contour.begin(), contour.end(), isSame), contour.end());
        if (isClosed && contour.size() > 1 && isSame(contour.front(), contour.back())) contour.pop_back();
        const std::size_t count = contour.size();
        if (count == 1) AddDot(contour.front().place);
        if (count < 2) return;
        const std::size_t segments = isClosed ? count : count - 1;
        for (std::size_t i = 0; i < segments; ++i)
            AddSegment(contour[i].place, contour[(i + 1) % count].place);
        for (std::size_t i = isClosed ? 0 : 1; i < segments; ++i)
            AddJoin(contour[(i + count - 1) % count].place, contour[i], contour[(i + 1) % count].place);
        if (isClosed) return;
        AddCap(contour[1].place, contour[0].place);
        AddCap(contour[count - 2].place, contour[count - 1].place);
    }

private:
    static ORVMathVector2D Direction(const ORVMathPoint2D& from, const ORVMathPoint2D& to) {
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        return {(to.x - from.x) / length, (to.y - from.y) / length};
    }

    void Add(const ORVMathPoint2D& p, double x, double y) { box_.Add(toPage_({p.x + x, p.y + y})); }

    void AddCircle(const ORVMathPoint2D& p) {
        const ORVMathPoint2D centre = toPage_(p);
        const double x = half_ * std::hypot(toPage_.m11, toPage_.m12);
        const double y = half_ * std::hypot(toPage_.m21, toPage_.m22);
        box_.Add({centre.x - x, centre.y - y});
        box_.Add({centre.x + x, centre.y + y});
    }

    void AddDot(const ORVMathPoint2D& p) {
        if (stroke_.cap == ORVPrintStroke::Cap::kRound) AddCircle(p);
        if (stroke_.cap != ORVPrintStroke::Cap::kSquare) return;
        Add(p, -half_, -half_);
        Add(p, half_, -half_);
        Add(p, -half_, half_);
        Add(p, half_, half_);
    }

    void AddSegment(const ORVMathPoint2D& from, const ORVMathPoint2D& to) {
        const ORVMathVector2D along = Direction(from, to);
        for (const ORVMathPoint2D& end : {from, to}) {
            Add(end, -along.y * half_, along.x * half_);
            Add(end, along.y * half_, -along.x * half_);
        }
    }

    void AddJoin(const ORVMathPoint2D& before, const Vertex& vertex, const ORVMathPoint2D& after) {
        const ORVMathPoint2D& at = vertex.place;
        // Inside a curve, the outline is round.
        if (!vertex.isCorner || stroke_.join == ORVPrintStroke::Join::kRound) return AddCircle(at);
        if (stroke_.join == ORVPrintStroke::Join::kBevel) return;
        const ORVMathVector2D in = Direction(before, at), out = Direction(at, after);
        // The miter's tip is at a distance of half the width divided by the sine of half the angle.
        const ORVMathVector2D across{in.x - out.x, in.y - out.y};
        const double bend = std::hypot(across.x, across.y);
        const double sine = std::sqrt(std::max(0.0, (1.0 + in.x * out.x + in.y * out.y) / 2.0));
        if (bend == 0.0) return;
        const bool isWithinLimit = sine * stroke_.miterLimit >= 1.0;
        if (!isWithinLimit && stroke_.join == ORVPrintStroke::Join::kMiter) return;
        // A bevelled or clipped tip ends at the limit or before it.
        const double reach = half_ / bend * (isWithinLimit ? 1.0 / sine : std::max(1.0, stroke_.miterLimit));
        Add(at, across.x * reach, across.y * reach);
    }

    void AddCap(const ORVMathPoint2D& before, const ORVMathPoint2D& end) {
        if (stroke_.cap == ORVPrintStroke::Cap::kRound) AddCircle(end);
        if (stroke_.cap != ORVPrintStroke::Cap::kSquare) return;
        const ORVMathVector2D along = Direction(before, end);
        Add(end, (along.x - along.y) * half_, (along.y + along.x) * half_);
        Add(end, (along.x + along.y) * half_, (along.y - along.x) * half_);
    }

    const ORVPrintStroke& stroke_;
    const ORVMathAffine2D& toPage_;
    const double half_;
    ORVMathBox2D& box_;
};

/// Calls `use(contour, isClosed)` for each contour of a path, flattened.
template <class Use>
void ForEachContour(const ORVPrintPath& path, Use use) {
    std::vector<Vertex> contour;
    const ORVMathPoint2D* point = path.points.data();
    const auto end = [&](bool isClosed) {
        if (!contour.empty()) use(contour, isClosed);
        contour.clear();
    };
    for (const ORVPrintPath::Verb verb : path.verbs) {
        switch (verb) {
            case ORVPrintPath::Verb::kMove:
                end(false);
                contour.push_back({*point++, true});
                break;
            case ORVPrintPath::Verb::kLine: contour.push_back({*point++, true}); break;
            case ORVPrintPath::Verb::kCubic: {
                const ORVMathPoint2D from = contour.empty() ? *point : contour.back().place;
                for (int i = 1; i <= kPointsOfCurve; ++i)
                    contour.push_back({PointOfCubic(from, point, static_cast<double>(i) / kPointsOfCurve),
                                       i == kPointsOfCurve});
                point += 3;
                break;
            }
            case ORVPrintPath::Verb::kClose: {
                const Vertex start = contour.empty() ? Vertex{{}, true} : contour.front();
                const bool isThere = !contour.empty();
                end(true);
                if (isThere) contour.push_back(start);  // a drawing verb may follow
                break;
            }
        }
    }
    // A trailing single point after a closed contour was not a contour.
    if (contour.size() > 1 || (!path.verbs.empty() && path.verbs.back() != ORVPrintPath::Verb::kClose))
        end(false);
}

void AddOutline(const ORVPrintPath& path, const ORVMathAffine2D& toPage, bool isFilled,
                const ORVPrintStroke* stroke, ORVMathBox2D& box) {
    ForEachContour(path, [&](const std::vector<Vertex>& contour, bool isClosed) {
        if (isFilled && contour.size() > 1)
            for (const Vertex& vertex : contour) box.Add(toPage(vertex.place));
        if (stroke) PenBox(*stroke, toPage, box).AddContour(contour, isClosed);
    });
}

void AddSquare(const ORVGlyphRun& run, const ORVMathAffine2D& toPage, ORVMathBox2D& box) {
    for (const ORVGlyph& glyph : run.glyphs) {
        box.Add(toPage({glyph.x, glyph.y}));
        box.Add(toPage({glyph.x + glyph.advance, glyph.y + run.size}));
    }
}

}  // namespace

ORVMathBox2D ORVVisibleBox(const ORVPrintShape& shape) {
    ORVMathBox2D box;
    AddOutline(shape.path, shape.toPage, shape.fill != nullptr, shape.stroke, box);
    return box;
}

ORVMathBox2D ORVVisibleBox(const ORVPrintText& text) {
    ORVMathBox2D box;
    ORVPrintPath path;
    for (const ORVGlyphRun& run : text.layout.runs) {
        ORVCollectOutlines(run, path);
        if (path.IsEmpty())
            AddSquare(run, text.toPage, box);
        else
            AddOutline(path, text.toPage, text.fill != nullptr, text.stroke, box);
    }
    return box;
}

ORVMathBox2D ORVVisibleBox(const ORVPrintImage& image) {
    ORVMathBox2D square;
    square.Add({0.0, 0.0});
    square.Add({1.0, 1.0});
    return square.MappedBy(image.toPage);
}
