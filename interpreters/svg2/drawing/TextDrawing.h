#pragma once

#include "interpreters/svg2/drawing/DrawState.h"
#include "interpreters/svg2/tree/Scene.h"

namespace svg2 {

class Drawing;

/// Draws "text" elements.
class TextDrawing {
public:
    explicit TextDrawing(Drawing& drawing) : drawing_(drawing) {}

    void Draw(ElementIndex element, const Style& style, const DrawState& state);

private:
    Drawing& drawing_;
};

}  // namespace svg2
