// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/system/ORVBaseObject.h"

class ORVPrintGenerator;
class ORVPrintParameters;
class ORVPrtImageElt;
class ORVPrtModel;
struct ORVPrintProgress;

/// Draws a print model onto a generator: multiplies out transforms, turns colour indices and draw styles
/// into paints, and every primitive into paths, texts and images. Owns nothing of what it is given.
class ORV_PLATFORM_EXPORT ORVPrintModelRender {
public:
    /// A page without area: its width or height is not positive, or not finite. When all pages were to be
    /// drawn, the others are, and the output was closed cleanly; else nothing was drawn.
    static constexpr int kPageWithoutArea = -2;
    /// More primitives than the parameters allow. Nothing was drawn.
    static constexpr int kTooManyPrimitives = -3;
    /// Memory ran short, or out, while drawing; the output was closed cleanly.
    static constexpr int kLowMemory = -4;
    /// More pages than the parameters allow. Nothing was drawn.
    static constexpr int kTooManyPages = -5;
    /// More repeats of shared primitives than the parameters allow; the output was closed cleanly.
    static constexpr int kTooManyRepeats = -6;
    /// The generator, or another object of the host's, threw an exception, which ends here.
    static constexpr int kThrown = -7;
    /// A text cannot be set as it should: ORVGetTextFailure() tells why. The output was closed cleanly.
    static constexpr int kTextNotSet = -8;
    /// More pixels in the images of the document than ORVPrintLimit::kDocumentPixels allows.
    static constexpr int kTooManyPixels = -9;

    /// All three must outlive this object.
    /// @param generator  null to have the model inspected only
    ORVPrintModelRender(const ORVPrtModel& model, ORVPrintGenerator* generator,
                        const ORVPrintParameters& parameters);
    /// Takes the model apart: long outlines are given back as soon as they are drawn, unless a page is drawn
    /// twice. After that, the model can be destroyed, and nothing else.
    ORVPrintModelRender(ORVPrtModel&& model, ORVPrintGenerator* generator,
                        const ORVPrintParameters& parameters);
    virtual ~ORVPrintModelRender();

    /// Draws every page that has an area, or those that the parameters name. When the parameters have a model
    /// inspector, it sees the model first; without a generator that is all.
    /// Nothing is thrown, and a document that has begun is always ended.
    /// @return 1 on success, 0 when there is no page or no generator, one of the failures above, or what the
    ///         generator returned when it was not 1
    virtual int Draw();
    /// Draws one page, 1-based; 0 when there is no such page.
    virtual int Draw(unsigned int page);

private:
    int DrawAllPages(bool& begun);
    /// @param numbers  1-based, in the order in which the pages come out
    /// @param begun    out: true once the generator's document has begun, which the caller ends
    int DrawPages(const std::vector<unsigned int>& numbers, bool& begun);
    /// @param number  place in the output, 1-based
    int DrawPage(const ORVPrtImageElt& page, unsigned int number, ORVPrintProgress& progress);
    /// Calls `draw` with that flag, and ends the document.
    template <class Work>
    int DrawDocument(Work draw);

    const ORVPrtModel& model_;
    bool takesApart_ = false;
    ORVPrintGenerator* generator_;
    const ORVPrintParameters& parameters_;
};
