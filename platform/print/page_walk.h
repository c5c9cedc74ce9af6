// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>

#include "platform/print/drawing_budget.h"
#include "platform/print/link_targets.h"
#include "platform/print/symbol_table.h"

class ORVPrintGenerator;
class ORVPrintParameters;

/// State shared by all pages of one drawing.
struct ORVPrintProgress {
    /// @param distinctWork  see ORVPrintDrawingBudget
    /// @param isModelTaken  the model is not needed after the drawing
    ORVPrintProgress(const ORVPrtModel& model, std::span<const ORVPrtImageElt* const> pages,
                     const ORVPrintGenerator& generator, const ORVPrintParameters& parameters,
                     std::uint64_t distinctWork, bool isModelTaken);

    /// Whether the ids of shapes are needed; for most drawings they are not.
    bool NamesShapes() const { return keepsIdentifiers || !links.IsEmpty(); }

    ORVPrintLinkTargets links;
    ORVPrintSymbolTable symbols;
    ORVPrintDrawingBudget budget;
    const bool keepsIdentifiers;  ///< the generator wants the ids of shapes
    const bool takesApart;        ///< primitives are not needed after they have been drawn
    bool takesSymbols = true;     ///< until the generator answers kNoSymbols
};

/// Whether drawing ended because of an error of the renderer, not of the generator, so that the generator can
/// still be asked to close its output.
bool ORVIsGivenUp(int result);

/// Draws the content of a page that is open in the generator. If the drawing is abandoned, its groups are
/// ended.
/// @return 1, an error of ORVPrintModelRender, or the generator's result when that was not 1
[[nodiscard]] int ORVDrawPage(ORVPrintGenerator& generator, const ORVPrtImageElt& page,
                              ORVPrintProgress& progress);
