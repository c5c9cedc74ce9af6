// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

class ORVPrtColourTable;
class ORVPrtGraphicPrimitiveElt;
class ORVPrtImageElt;

/// Describes primitives in one line of text, so that a test can specify a whole tree in a row. For example
///     g#a"note"[~100 t(5,-5) ~100]{rect(0,100 10,80) path{...}}
/// Each primitive consists of its kind and, where present, #identifier, "description", 'title', [transform],
/// (geometry), {children}. Numbers have up to ten digits.
///
/// Kinds: page g symbol pattern figure region rect circle ellipse arc line polyline polygon cubic quad text
/// image. Transforms: t(x,y) sx(f) sy(f) r(rad) kx(rad) ky(rad) m(m11 m12 m21 m22); ~h is a reflection about
/// the height h, that is t(0,h) sy(-1). Links: ->#id, ->url, !show. A symbol's viewBox: <x y w h>.
std::string SketchOf(const ORVPrtGraphicPrimitiveElt& primitive);

/// Describes the children of a page or group, separated by spaces.
std::string SketchOfChildren(const ORVPrtGraphicPrimitiveElt& container);

/// Like SketchOfChildren, with the paint after each primitive and colours resolved through the page: for
/// example
///     rect(0,100 10,80):2 fill=#ff0000 stroke=#000000
/// The number is the draw style. Opacities other than 255 follow the colour as @128; a stroke adds w2 for a
/// width other than 1, c12 and j14 for cap and join other than 10 and 13, d5,3 for dashes; a fill adds eo for
/// even-odd and pattern(2x2) for a pattern. A text adds h20 w26 a33 and the like where they differ from the
/// defaults 12, 25 and 29.
std::string PaintedSketchOfChildren(const ORVPrtImageElt& page);
