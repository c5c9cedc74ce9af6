// SPDX-License-Identifier: Apache-2.0
#include "platform/print/ORVPrintModelRender.h"

#include <new>

#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/print/page_walk.h"
#include "platform/print/primitive_count.h"

namespace {

constexpr int kDone = 1;

/// Calls `work`. Returns its result, or an error code for the exception thrown.
template <class Work>
int WithoutExceptions(Work work) {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return ORVPrintModelRender::kLowMemory;
    } catch (...) {  // anything that the host throws
        return ORVPrintModelRender::kThrown;
    }
}

}  // namespace

ORVPrintModelRender::ORVPrintModelRender(const ORVPrtModel& model, ORVPrintGenerator* generator,
                                         const ORVPrintParameters& parameters)
    : model_(model), generator_(generator), parameters_(parameters) {}

ORVPrintModelRender::ORVPrintModelRender(ORVPrtModel&& model, ORVPrintGenerator* generator,
                                         const ORVPrintParameters& parameters)
    : model_(model), takesApart_(true), generator_(generator), parameters_(parameters) {}

ORVPrintModelRender::~ORVPrintModelRender() = default;

int ORVPrintModelRender::Draw() {
    return DrawDocument([this](bool& begun) {
        if (!parameters_.GetPages().empty()) return DrawPages(parameters_.GetPages(), begun);
        return DrawAllPages(begun);
    });
}

int ORVPrintModelRender::Draw(unsigned int page) {
    return DrawDocument([&](bool& begun) { return DrawPages({page}, begun); });
}

template <class Work>
int ORVPrintModelRender::DrawDocument(Work draw) {
    bool begun = false;
    const int result = WithoutExceptions([&] { return draw(begun); });
    if (!begun) return result;
    const int closed = WithoutExceptions([&] { return generator_->EndDocument(); });
    // The output must be complete even if pages without area were skipped.
    return result == kDone || (result == kPageWithoutArea && closed != kDone) ? closed : result;
}

int ORVPrintModelRender::DrawAllPages(bool& begun) {
    std::vector<unsigned int> numbers;
    const ORVListPtr<ORVPrtImageElt>& pages = *model_.GetImages();
    for (unsigned int i = 0; i < pages.size(); ++i)
        if (pages[i]->HasArea()) numbers.push_back(i + 1);
    const bool isComplete = numbers.size() == pages.size();
    // With no other page to draw, a page without area is an error.
    if (numbers.empty() && !isComplete) numbers.push_back(1);
    const int result = DrawPages(numbers, begun);
    return result == kDone && generator_ && !isComplete ? kPageWithoutArea : result;
}

int ORVPrintModelRender::DrawPages(const std::vector<unsigned int>& numbers, bool& begun) {
    if (ORVPrintModelInspector* inspector = parameters_.GetModelInspector()) {
        inspector->Inspect(model_);
        if (!generator_) return kDone;
    }
    std::vector<const ORVPrtImageElt*> pages;
    for (const unsigned int number : numbers)
        if (number >= 1 && number <= model_.GetImages()->size())
            pages.push_back((*model_.GetImages())[number - 1]);
    if (!generator_ || pages.empty()) return 0;
    // Checked before anything is drawn, so that no output is begun that cannot be finished.
    for (const ORVPrtImageElt* page : pages)
        if (!page->HasArea()) return kPageWithoutArea;
    if (pages.size() > parameters_.GetPageLimit()) return kTooManyPages;
    std::uint64_t left = parameters_.GetDrawLimit(), distinct = 0;
    for (const ORVPrtImageElt* page : pages) {
        const std::uint64_t count = ORVCountPrimitives(*page, left + 1, distinct);
        if (count > left) return kTooManyPrimitives;
        left -= count;
    }

    ORVPrintProgress progress(model_, pages, *generator_, parameters_, distinct, takesApart_);
    const ORVUnicodeString& title =
        parameters_.GetTitle().IsEmpty() ? pages.front()->GetTitle() : parameters_.GetTitle();
    if (const int result = generator_->BeginDocument({title, static_cast<unsigned int>(pages.size())});
        result != kDone)
        return result;
    begun = true;

    unsigned int number = 0;
    int result = kDone;
    for (auto page = pages.begin(); result == kDone && page != pages.end(); ++page)
        result = DrawPage(**page, ++number, progress);
    return result;
}

int ORVPrintModelRender::DrawPage(const ORVPrtImageElt& page, unsigned int number,
                                  ORVPrintProgress& progress) {
    ORVPrintPageInfo info;
    info.number = number;
    page.GetSize(info.width, info.height);
    info.id = page.GetID();
    info.title = page.GetTitle();
    info.description = page.GetDescription();
    if (const int result = generator_->BeginPage(info); result != kDone) return result;
    const int result = ORVDrawPage(*generator_, page, progress);
    if (result != kDone && !ORVIsGivenUp(result)) return result;
    const int ended = generator_->EndPage();
    return result == kDone ? ended : result;
}
