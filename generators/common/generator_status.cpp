// SPDX-License-Identifier: Apache-2.0
#include "generators/common/generator_status.h"

#include "platform/print/ORVPrintModelRender.h"

ORVFailure ORVFailureOfStatus(int status) {
    using Render = ORVPrintModelRender;
    switch (status) {
        case kGeneratorDone: return {};
        case Render::kPageWithoutArea:
            return ORVFailure::Of(ORVFailureReason::kPageWithoutArea,
                                  "a page has no area that could be printed");
        case Render::kLowMemory: return ORVFailure::OutOfMemory();
        case Render::kTextNotSet: return ORVFailure::Of(ORVFailureReason::kTextNotSet);
        case Render::kTooManyPrimitives: return ORVFailure::OfLimit(ORVPrintLimit::kDrawn);
        case Render::kTooManyPages: return ORVFailure::OfLimit(ORVPrintLimit::kPages);
        case Render::kTooManyPixels: return ORVFailure::OfLimit(ORVPrintLimit::kDocumentPixels);
        case Render::kTooManyRepeats: return ORVFailure::OfLimit(ORVPrintLimit::kRepeats);
        case kOutputTooLarge: return ORVFailure::OfLimit(ORVPrintLimit::kOutputPixels);
        case kTooMuchToPaint: return ORVFailure::OfLimit(ORVPrintLimit::kPaintedPixels);
        case kOutputFailed: return ORVFailure::Of(ORVFailureReason::kUnwritable, "cannot be written");
        default: return ORVFailure::Of(ORVFailureReason::kNotDrawn);
    }
}
