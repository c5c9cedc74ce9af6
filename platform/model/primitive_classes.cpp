// SPDX-License-Identifier: Apache-2.0

// Registration and copying of the model's classes.

#include <new>
#include <utility>

#include "platform/model/ORVPrtBitmapImageElt.h"
#include "platform/model/ORVPrtCircleElt.h"
#include "platform/model/ORVPrtClosedFigureElt.h"
#include "platform/model/ORVPrtClosedFigureRegionElt.h"
#include "platform/model/ORVPrtEllipseElt.h"
#include "platform/model/ORVPrtEllipticalArcElt.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtLineElt.h"
#include "platform/model/ORVPrtPatternElt.h"
#include "platform/model/ORVPrtPolyCubicBezierElt.h"
#include "platform/model/ORVPrtPolyQuadraticBezierElt.h"
#include "platform/model/ORVPrtPolygonElt.h"
#include "platform/model/ORVPrtPolylineElt.h"
#include "platform/model/ORVPrtPrimitiveBudget.h"
#include "platform/model/ORVPrtRectangleElt.h"
#include "platform/model/ORVPrtSymbolElt.h"
#include "platform/model/ORVPrtTextElt.h"
#include "platform/visualization/fonts/ORVFont.h"

namespace {

template <class Base>
const ORVMetaClass MakeMetaClass(const char* name) {
    return ORVMetaClass(name, &Base::MetaClass(), "ORVnull", "ORVPrt2DModel");
}

}  // namespace

const ORVMetaClass& ORVPrtBitmapImageElt::MetaClass() {
    static const ORVMetaClass metaClass = MakeMetaClass<ORVPrtGraphicPrimitiveElt>("ORVPrtBitmapImageElt");
    return metaClass;
}

ORVPrtGraphicPrimitiveElt* ORVPrtBitmapImageElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtBitmapImageElt(*this);
}

const ORVMetaClass& ORVPrtCircleElt::MetaClass() {
    static const ORVMetaClass metaClass = MakeMetaClass<ORVPrtGraphicPrimitiveElt>("ORVPrtCircleElt");
    return metaClass;
}

ORVPrtGraphicPrimitiveElt* ORVPrtCircleElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtCircleElt(*this);
}

const ORVMetaClass& ORVPrtClosedFigureElt::MetaClass() {
    static const ORVMetaClass metaClass = MakeMetaClass<ORVPrtContainerElt>("ORVPrtClosedFigureElt");
    return metaClass;
}

ORVPrtGraphicPrimitiveElt* ORVPrtClosedFigureElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtClosedFigureElt(*this);
}

const ORVMetaClass& ORVPrtClosedFigureRegionElt::MetaClass() {
    static const ORVMetaClass metaClass = MakeMetaClass<ORVPrtContainerElt>("ORVPrtClosedFigureRegionElt");
    return metaClass;
}

ORVPrtGraphicPrimitiveElt* ORVPrtClosedFigureRegionElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtClosedFigureRegionElt(*this);
}

const ORVMetaClass& ORVPrtEllipseElt::MetaClass() {
    static const ORVMetaClass metaClass = MakeMetaClass<ORVPrtGraphicPrimitiveElt>("ORVPrtEllipseElt");
    return metaClass;
}

ORVPrtGraphicPrimitiveElt* ORVPrtEllipseElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtEllipseElt(*this);
}

const ORVMetaClass& ORVPrtEllipticalArcElt::MetaClass() {
    static const ORVMetaClass metaClass = MakeMetaClass<ORVPrtGraphicPrimitiveElt>("ORVPrtEllipticalArcElt");
    return metaClass;
}

ORVPrtGraphicPrimitiveElt* ORVPrtEllipticalArcElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtEllipticalArcElt(*this);
}

const ORVMetaClass& ORVPrtGroupElt::MetaClass() {
    static const ORVMetaClass metaClass = MakeMetaClass<ORVPrtContainerElt>("ORVPrtGroupElt");
    return metaClass;
}

ORVPrtGraphicPrimitiveElt* ORVPrtGroupElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtGroupElt(*this);
}

const ORVMetaClass& ORVPrtLineElt::MetaClass() {
    static const ORVMetaClass metaClass = MakeMetaClass<ORVPrtGraphicPrimitiveElt>("ORVPrtLineElt");
    return metaClass;
}

ORVPrtGraphicPrimitiveElt* ORVPrtLineElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtLineElt(*this);
}

const ORVMetaClass& ORVPrtPatternElt::MetaClass() {
    static const ORVMetaClass metaClass = MakeMetaClass<ORVPrtContainerElt>("ORVPrtPatternElt");
    return metaClass;
}

ORVPrtGraphicPrimitiveElt* ORVPrtPatternElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtPatternElt(*this);
}

const ORVMetaClass& ORVPrtPolyCubicBezierElt::MetaClass() {
    static const ORVMetaClass metaClass =
        MakeMetaClass<ORVPrtGraphicPrimitiveElt>("ORVPrtPolyCubicBezierElt");
    return metaClass;
}

ORVPrtGraphicPrimitiveElt* ORVPrtPolyCubicBezierElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtPolyCubicBezierElt(*this);
}

const ORVMetaClass& ORVPrtPolyQuadraticBezierElt::MetaClass() {
    static const ORVMetaClass metaClass =
        MakeMetaClass<ORVPrtGraphicPrimitiveElt>("ORVPrtPolyQuadraticBezierElt");
    return metaClass;
}

ORVPrtGraphicPrimitiveElt* ORVPrtPolyQuadraticBezierElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtPolyQuadraticBezierElt(*this);
}

const ORVMetaClass& ORVPrtPolygonElt::MetaClass() {
    static const ORVMetaClass metaClass = MakeMetaClass<ORVPrtGraphicPrimitiveElt>("ORVPrtPolygonElt");
    return metaClass;
}

ORVPrtGraphicPrimitiveElt* ORVPrtPolygonElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtPolygonElt(*this);
}

const ORVMetaClass& ORVPrtPolylineElt::MetaClass() {
    static const ORVMetaClass metaClass = MakeMetaClass<ORVPrtGraphicPrimitiveElt>("ORVPrtPolylineElt");
    return metaClass;
}

ORVPrtGraphicPrimitiveElt* ORVPrtPolylineElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtPolylineElt(*this);
}

const ORVMetaClass& ORVPrtRectangleElt::MetaClass() {
    static const ORVMetaClass metaClass = MakeMetaClass<ORVPrtGraphicPrimitiveElt>("ORVPrtRectangleElt");
    return metaClass;
}

ORVPrtGraphicPrimitiveElt* ORVPrtRectangleElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtRectangleElt(*this);
}

const ORVMetaClass& ORVPrtSymbolElt::MetaClass() {
    static const ORVMetaClass metaClass = MakeMetaClass<ORVPrtContainerElt>("ORVPrtSymbolElt");
    return metaClass;
}

ORVPrtGraphicPrimitiveElt* ORVPrtSymbolElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtSymbolElt(*this);
}

const ORVMetaClass& ORVPrtTextElt::MetaClass() {
    static const ORVMetaClass metaClass = MakeMetaClass<ORVPrtGraphicPrimitiveElt>("ORVPrtTextElt");
    return metaClass;
}

void ORVPrtTextElt::SetTextAttributes(ORVPrtTextAttributes text) {
    textAttributes_ = std::move(text);
    if (textAttributes_.GetFont() != ORVFont::Unavailable()) return;
    if (ORVPrtPrimitiveBudget* const budget = GetBudget()) budget->NoteUnsetText();
}

ORVPrtGraphicPrimitiveElt* ORVPrtTextElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtTextElt(*this);
}
