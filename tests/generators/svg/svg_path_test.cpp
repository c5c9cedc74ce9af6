// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/svg_path.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>

#include "tests/generators/drawing_calls.h"
#include "tests/support/named_rows.h"

namespace {

ORVPrintPath PathOf(const std::function<void(ORVPrintPath&)>& draw) {
    ORVPrintPath path;
    draw(path);
    return path;
}

struct PathCase {
    const char* name;
    void (*draw)(ORVPrintPath& path);
    const char* expected;
};
class AppendSvgPathTest : public testing::TestWithParam<PathCase> {};
TEST_P(AppendSvgPathTest, WritesTheShorterForm) {
    std::string text;
    AppendSvgPath(text, PathOf(GetParam().draw), {}, 3);
    EXPECT_EQ(text, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Path, AppendSvgPathTest,
                         testing::Values(PathCase{"Line",
                                                  [](ORVPrintPath& p) {
                                                      p.MoveTo({1, 2}), p.LineTo({3, 5});
                                                  },
                                                  "M1 2l2 3"},
                                         PathCase{"Across",
                                                  [](ORVPrintPath& p) {
                                                      p.MoveTo({100, 2}), p.LineTo({101, 2});
                                                  },
                                                  "M100 2h1"},
                                         PathCase{"Down",
                                                  [](ORVPrintPath& p) {
                                                      p.MoveTo({1, 200}), p.LineTo({1, 5});
                                                  },
                                                  "M1 200V5"},
                                         PathCase{"RepeatedLines",
                                                  [](ORVPrintPath& p) {
                                                      p.MoveTo({100, 100});
                                                      p.LineTo({101, 101});
                                                      p.LineTo({102, 100});
                                                  },
                                                  "M100 100l1 1 1-1"},
                                         PathCase{"AbsoluteLine",
                                                  [](ORVPrintPath& p) {
                                                      p.MoveTo({-100, -100}), p.LineTo({1, 1});
                                                  },
                                                  "M-100-100 1 1"},
                                         // After closing, steps count from the start of the subpath.
                                         PathCase{"AfterClosing",
                                                  [](ORVPrintPath& p) {
                                                      p.MoveTo({100, 100});
                                                      p.LineTo({190, 190});
                                                      p.Close();
                                                      p.LineTo({101, 102});
                                                  },
                                                  "M100 100l90 90zl1 2"},
                                         PathCase{"Curve",
                                                  [](ORVPrintPath& p) {
                                                      p.MoveTo({100, 100});
                                                      p.CubicTo({101, 100}, {102, 101}, {102, 102});
                                                  },
                                                  "M100 100c1 0 2 1 2 2"},
                                         PathCase{"Dot",
                                                  [](ORVPrintPath& p) {
                                                      p.MoveTo({1, 1}), p.LineTo({1, 1});
                                                  },
                                                  "M1 1h0"}),
                         kNameOfRow);

// Each step is a third, which has to be rounded; the errors must not add up.
TEST(AppendSvgPathTest, RoundingDoesNotAddUp) {
    ORVPrintPath path;
    path.MoveTo({1000.0, 1000.0});
    for (int i = 1; i <= 3000; ++i) path.LineTo({1000.0 + i / 3.0, 1000.0 + i % 2});
    std::string text;
    AppendSvgPath(text, path, {}, 3);
    double x = 1000.0;
    std::size_t at = text.find('l') + 1;
    while (at < text.size()) {
        std::size_t length = 0;
        x += std::stod(text.substr(at), &length);
        at += length;
        std::stod(text.substr(at), &length);
        at += length;
        while (at < text.size() && text[at] == ' ') ++at;
    }
    EXPECT_NEAR(x, 2000.0, 1e-6);
}

ORVPrintPath EllipsePath(double cx, double cy, double rx, double ry, int arcs, double start = 0.0) {
    ORVPrintPath path;
    const double step = 2.0 * std::numbers::pi / arcs, handle = 4.0 / 3.0 * std::tan(step / 4.0);
    const auto at = [&](double angle, double along) {
        return ORVMathPoint2D{cx + rx * (std::cos(angle) - along * std::sin(angle)),
                              cy + ry * (std::sin(angle) + along * std::cos(angle))};
    };
    path.MoveTo(at(start, 0.0));
    for (int i = 0; i < arcs; ++i) {
        const double from = start + step * i, to = from + step;
        path.CubicTo(at(from, handle), at(to, -handle), at(to, 0.0));
    }
    path.Close();
    return path;
}

TEST(RecogniseOutlineTest, FindsRectangles) {
    const SvgOutline found = RecogniseOutline(RectanglePath(1, 2, 3, 4), {0.0, -1.0, 1.0, 0.0, 0.0, 0.0}, 3);
    EXPECT_EQ(found.kind, SvgOutline::Kind::kRectangle);
    EXPECT_DOUBLE_EQ(found.x, -6.0);
    EXPECT_DOUBLE_EQ(found.y, 1.0);
    EXPECT_DOUBLE_EQ(found.width, 4.0);
    EXPECT_DOUBLE_EQ(found.height, 3.0);
}

TEST(RecogniseOutlineTest, FindsCirclesAndEllipses) {
    for (const int arcs : {4, 8}) {
        for (const double start : {0.0, 0.5, -1.0}) {
            const SvgOutline circle = RecogniseOutline(EllipsePath(10, 20, 5, 5, arcs, start), {}, 3);
            EXPECT_EQ(circle.kind, SvgOutline::Kind::kCircle) << arcs << " " << start;
            EXPECT_NEAR(circle.x, 10.0, 1e-9);
            EXPECT_NEAR(circle.y, 20.0, 1e-9);
            EXPECT_NEAR(circle.width, 5.0, 1e-9);
        }
        const SvgOutline ellipse = RecogniseOutline(EllipsePath(10, 20, 5, 50, arcs), {}, 3);
        EXPECT_EQ(ellipse.kind, SvgOutline::Kind::kEllipse);
        EXPECT_NEAR(ellipse.width, 5.0, 1e-9);
        EXPECT_NEAR(ellipse.height, 50.0, 1e-9);
    }
}

TEST(RecogniseOutlineTest, LeavesAllElseAsItIs) {
    ORVPrintPath open = RectanglePath(0, 0, 9, 9), slanted = open, flat = RectanglePath(0, 0, 9, 0);
    open.verbs.pop_back();
    slanted.points[2].x += 1.0;
    ORVPrintPath dented = EllipsePath(0, 0, 9, 9, 4);
    dented.points[4].x *= 0.9;
    ORVPrintPath leaf = EllipsePath(0, 0, 9, 9, 4);
    for (std::size_t i = 1; i < leaf.points.size(); i += 3) leaf.points[i] = leaf.points[i - 1];
    const ORVMathAffine2D turned{0.8, -0.6, 0.6, 0.8, 0.0, 0.0};
    EXPECT_EQ(RecogniseOutline(open, {}, 3).kind, SvgOutline::Kind::kPath);
    EXPECT_EQ(RecogniseOutline(slanted, {}, 3).kind, SvgOutline::Kind::kPath);
    EXPECT_EQ(RecogniseOutline(flat, {}, 3).kind, SvgOutline::Kind::kPath);
    EXPECT_EQ(RecogniseOutline(dented, {}, 3).kind, SvgOutline::Kind::kPath);
    EXPECT_EQ(RecogniseOutline(leaf, {}, 3).kind, SvgOutline::Kind::kPath);
    EXPECT_EQ(RecogniseOutline(RectanglePath(0, 0, 9, 9), turned, 3).kind, SvgOutline::Kind::kPath);
    EXPECT_EQ(RecogniseOutline(EllipsePath(0, 0, 9, 3, 4), turned, 3).kind, SvgOutline::Kind::kPath);
    EXPECT_EQ(RecogniseOutline(EllipsePath(0, 0, 1e-9, 1e-9, 4), {}, 3).kind, SvgOutline::Kind::kPath);
}

}  // namespace
