#include "interpreters/svg2/drawing/TextDrawing.h"

#include "interpreters/svg2/drawing/Drawing.h"

namespace svg2 {

void TextDrawing::Draw(ElementIndex element, const Style& style, const DrawState& state) {
    static_cast<void>(element);
    static_cast<void>(style);
    static_cast<void>(state);
    static_cast<void>(drawing_);
}

}  // namespace svg2
