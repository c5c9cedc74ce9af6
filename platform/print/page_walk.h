// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>

#include "platform/print/drawing_budget.h"
#include "platform/print/link_targets.h"
#include "platform/print/symbol_table.h"

class ORVPrintGenerator;
class ORVPrintParameters;

/// What the pages of one drawing share.
struct ORVPrintProgress {
    /// @param distinctWork  see ORVPrintDrawingBudget
    /// @param isModelTaken  the model is not needed again
    ORVPrintProgress(const ORVPrtModel& model, std::span<const ORVPrtImageElt* const> pages,
                     const ORVPrintGenerator& generator, const ORVPrintParameters& parameters,
                     std::uint64_t distinctWork, bool isModelTaken);

    /// Whether it matters what shapes are called. Of most drawings it does not.
    bool NamesShapes() const { return keepsIdentifiers || !links.IsEmpty(); }

    ORVPrintLinkTargets links;
    ORVPrintSymbolTable symbols;
    ORVPrintDrawingBudget budget;
    const bool keepsIdentifiers;  ///< of shapes
    const bool takesApart;        ///< what is drawn is not needed again
    bool takesSymbols = true;     ///< until the generator says that it does not
};

/// Whether drawing ended for a reason of our own, so that the generator still takes what closes its output.
bool ORVIsGivenUp(int result);

/// Draws what stands on a page that is open in the generator. A drawing that is given up has ended its
/// groups.
/// @return 1, a failure of ORVPrintModelRender, or what the generator returned when it was not 1
[[nodiscard]] int ORVDrawPage(ORVPrintGenerator& generator, const ORVPrtImageElt& page,
                              ORVPrintProgress& progress);
