// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/definitions/definitions.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintModelBoundingBoxComputer.h"
#include "platform/system/ORVRef.h"

/// A drawing state with its own page.
struct PageState : SvgDrawState {
    PageState(double width, double height, int flip = 1);

private:
    ORVRef<ORVPrtModel> ownModel_;
    SvgDefinitions ownDefinitions_;
    ORVPrintModelBoundingBoxComputer ownBoxes_;
    ORVUnicodeString noPath_;
};
