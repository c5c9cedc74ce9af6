#pragma once

#include <vector>

#include "platform/system/ORVBaseObject.h"

class ORVPrintGenerator;
class ORVPrintParameters;
class ORVPrtModel;

/// Draws a print model onto a generator: multiplies out transforms, turns colour indices and draw styles
/// into paints, and every primitive into paths, texts and images. Owns nothing of what it is given.
class ORV_PLATFORM_EXPORT ORVPrintModelRender {
public:
    /// A page whose width or height is not positive, or not finite.
    static constexpr int kPageWithoutArea = -2;
    /// More primitives than the parameters allow. Nothing was drawn.
    static constexpr int kTooManyPrimitives = -3;
    /// Memory ran short, or out, while drawing; the output was closed cleanly.
    static constexpr int kLowMemory = -4;
    /// More pages than the parameters allow. Nothing was drawn.
    static constexpr int kTooManyPages = -5;
    /// More repeats of shared primitives than the parameters allow; the output was closed cleanly.
    static constexpr int kTooManyRepeats = -6;
    /// A text cannot be set as it should: ORVGetTextFailure() tells why. The output was closed cleanly.
    static constexpr int kTextNotSet = -7;

    ORVPrintModelRender(const ORVPrtModel& model, ORVPrintGenerator* generator,
                        const ORVPrintParameters& parameters);
    virtual ~ORVPrintModelRender();

    /// Draws every page, or those that the parameters name. When the parameters have a model inspector, it
    /// sees the model first; without a generator that is all.
    /// @return 1 on success, 0 when there is no page or no generator, one of the failures above, or what the
    ///         generator returned when it was not 1
    virtual int Draw();
    /// Draws one page, 1-based; 0 when there is no such page.
    virtual int Draw(unsigned int page);

private:
    /// @param numbers  1-based, in the order in which the pages come out
    /// @param begun    out: true once the generator's document has begun, which the caller ends
    int DrawPages(const std::vector<unsigned int>& numbers, bool& begun);
    /// Calls `draw` with that flag, and ends the document.
    template <class Work>
    int DrawDocument(Work draw);

    const ORVPrtModel& model_;
    ORVPrintGenerator* generator_;
    const ORVPrintParameters& parameters_;
};
