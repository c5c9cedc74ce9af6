// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/system/ORVBaseObject.h"

class ORVPrintGenerator;
class ORVPrintParameters;
class ORVPrtImageElt;
class ORVPrtModel;
struct ORVPrintProgress;

/// Renders a print model with a generator: combines transformations, resolves colour indices and draw styles
/// into paints, and converts primitives to paths, texts and images. Keeps references to its arguments and
/// owns none of them.
class ORV_PLATFORM_EXPORT ORVPrintModelRender {
public:
    /// The width or height of a page is not positive or not finite. When all pages are drawn, the other pages
    /// are drawn and the output is closed cleanly; otherwise nothing is drawn.
    static constexpr int kPageWithoutArea = -2;
    /// More primitives than the parameters allow. Nothing is drawn.
    static constexpr int kTooManyPrimitives = -3;
    /// Out of memory, or memory became low, while drawing. The output is closed cleanly.
    static constexpr int kLowMemory = -4;
    /// More pages than the parameters allow. Nothing is drawn.
    static constexpr int kTooManyPages = -5;
    /// More repeats of shared primitives than the parameters allow. The output is closed cleanly.
    static constexpr int kTooManyRepeats = -6;
    /// The generator, or another object supplied by the host, threw an exception. It is not passed on.
    static constexpr int kThrown = -7;
    /// A text cannot be set correctly; see ORVGetTextFailure() for the cause. The output is closed cleanly.
    static constexpr int kTextNotSet = -8;
    /// The images of the document have more pixels than ORVPrintLimit::kDocumentPixels allows.
    static constexpr int kTooManyPixels = -9;

    /// All arguments must outlive this object.
    /// @param generator  null to call only the model inspector
    ORVPrintModelRender(const ORVPrtModel& model, ORVPrintGenerator* generator,
                        const ORVPrintParameters& parameters);
    /// Takes the model apart: frees long outlines as soon as they are drawn, unless a page is drawn twice.
    /// Afterwards the model must only be destroyed.
    ORVPrintModelRender(ORVPrtModel&& model, ORVPrintGenerator* generator,
                        const ORVPrintParameters& parameters);
    virtual ~ORVPrintModelRender();

    /// Draws every page that has an area, or the pages selected by the parameters. A model inspector in the
    /// parameters is called first; without a generator, nothing else happens. Throws nothing. A document that
    /// has been begun is always ended.
    /// @return 1 on success, 0 when there is no page or no generator, one of the errors above, or the
    /// generator's result when that was not 1
    virtual int Draw();
    /// Draws one page. @param page  from 1 @return as for Draw(); 0 when there is no such page
    virtual int Draw(unsigned int page);

private:
    int DrawAllPages(bool& begun);
    /// @param numbers  page numbers from 1, in output order
    /// @param begun    out: true once the generator's document has been begun; the caller must end it
    int DrawPages(const std::vector<unsigned int>& numbers, bool& begun);
    /// @param number  number of the page in the output, from 1
    int DrawPage(const ORVPrtImageElt& page, unsigned int number, ORVPrintProgress& progress);
    /// Calls `draw` with a flag that it sets once the document has been begun, then ends the document.
    template <class Work>
    int DrawDocument(Work draw);

    const ORVPrtModel& model_;
    bool takesApart_ = false;
    ORVPrintGenerator* generator_;
    const ORVPrintParameters& parameters_;
};
