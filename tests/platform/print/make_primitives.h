// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>
#include <vector>

#include "platform/mathematics/geometry.h"
#include "platform/model/ORVPrtColourTable.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/model/visit_primitive.h"
#include "platform/system/ORVRef.h"

// Shortcuts for creating primitives.

template <class Primitive>
ORVRef<Primitive> Make() {
    return ORVRef<Primitive>(new Primitive);
}

template <class Primitive>
ORVRef<Primitive> MakePoints(std::vector<ORVMathPoint2D> points) {
    auto primitive = Make<Primitive>();
    primitive->SetPoints(std::move(points));
    return primitive;
}

inline ORVRef<ORVPrtRectangleElt> MakeRectangle(double x1, double y1, double x2, double y2) {
    auto rectangle = Make<ORVPrtRectangleElt>();
    rectangle->SetPoints({x1, y1}, {x2, y2});
    return rectangle;
}

inline ORVRef<ORVPrtCircleElt> MakeCircle(double x, double y, double radius) {
    auto circle = Make<ORVPrtCircleElt>();
    circle->SetCenter({x, y});
    circle->SetRadius(radius);
    return circle;
}

inline ORVRef<ORVPrtLineElt> MakeLine(double x1, double y1, double x2, double y2) {
    auto line = Make<ORVPrtLineElt>();
    line->SetStartPoint({x1, y1});
    line->SetEndPoint({x2, y2});
    return line;
}

inline ORVRef<ORVPrtEllipticalArcElt> MakeArc(double x, double y, double horz, double vert, double start,
                                              double end, double slope = 0.0) {
    auto arc = Make<ORVPrtEllipticalArcElt>();
    arc->SetCenter({x, y});
    arc->SetHorzRadius(horz);
    arc->SetVertRadius(vert);
    arc->SetStartAngle(static_cast<float>(start));
    arc->SetEndAngle(static_cast<float>(end));
    arc->SetSlope(static_cast<float>(slope));
    return arc;
}

/// A container with children, to which it holds references.
template <class Container>
ORVRef<Container> MakeContainer(std::initializer_list<ORVRef<ORVPrtGraphicPrimitiveElt>> children) {
    auto container = Make<Container>();
    for (const auto& child : children) container->AddChild(child.get());
    return container;
}

inline ORVPrtTransformAttributes Translation(double x, double y) {
    ORVPrtTransformAttributes transform;
    transform.AddTranslation({x, y});
    return transform;
}

inline ORVPrtTransformAttributes Matrix(double m11, double m12, double m21, double m22) {
    ORVPrtTransformAttributes transform;
    transform.AddMatrix({m11, m12, m21, m22});
    return transform;
}

/// A model of one page, 100 wide and 50 high, whose colours are black, red and green.
class OnePage {
public:
    OnePage() : model_(new ORVPrtModel), page_(new ORVPrtImageElt) {
        const auto colours = Make<ORVPrtColourTable>();
        unsigned int index = 0;
        colours->AddColour(0, 0, 0, index);
        colours->AddColour(255, 0, 0, index);
        colours->AddColour(0, 255, 0, index);
        page_->SetColourTable(colours.get());
        page_->SetSize(100.0, 50.0);
        model_->AddImage(page_.get());
    }
    void Add(const ORVRef<ORVPrtGraphicPrimitiveElt>& primitive) { page_->AddChild(primitive.get()); }

    ORVPrtModel& GetModel() { return *model_; }
    ORVPrtImageElt& GetPage() { return *page_; }

private:
    ORVRef<ORVPrtModel> model_;
    ORVRef<ORVPrtImageElt> page_;
};
