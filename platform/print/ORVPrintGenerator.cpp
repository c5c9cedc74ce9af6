// SPDX-License-Identifier: Apache-2.0
#include "platform/print/ORVPrintGenerator.h"

#include "platform/print/ORVPrintPath.h"

// Defined here so that generators in other modules share one virtual table.
ORVPrintGenerator::~ORVPrintGenerator() = default;

int ORVPrintGenerator::BeginClipPath(const ORVPrintClipPath& clip) {
    ORVMathBox2D box;
    for (const ORVMathPoint2D& point : clip.path.points) box.Add(clip.toPage(point));
    return BeginClip(box);
}
