// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/interpreter/SvgInterpretation.h"

#include <new>
#include <utility>

#include "interpreters/svg/interpreter/model_build.h"
#include "interpreters/svg/state/statuses.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"

namespace {

class SvgPrintModel final : public ORVPrtModel {
    ~SvgPrintModel() override = default;  // use Release()
};

/// Runs the body of an entry point and returns 0 if it throws. No exception may leave the module, whether
/// memory ran out or the host's code threw.
template <class Work>
int Enter(Work work) {
    try {
        return work();
    } catch (...) {
        return 0;
    }
}

}  // namespace

int SvgInterpretation::SetCurrentPath(const ORVUnicodeString& path) {
    if (!source_) return 0;
    return Enter([&] {
        source_->SetCurrentPath(path);
        return 1;
    });
}

// The model is stored before it is built, so that a failed build is not retried.
SvgInterpretation::BuildResult SvgInterpretation::EnsureModel() {
    if (!source_) return {};
    if (model_) return {true, false, kDone};
    model_ = ORVRef<ORVPrtModel>(new (std::nothrow) SvgPrintModel);
    if (!model_) return {};
    return {true, true, BuildModel(*source_, model_.get())};
}

const ORVPrtImageElt* SvgInterpretation::SelectPage(const Selection& selection) const {
    const ORVListPtr<ORVPrtImageElt>& pages = *model_->GetImages();
    if (pages.empty()) return nullptr;
    const bool usesFirst =
        selection.allPages || selection.currentPage == 0 || selection.currentPage > pages.size();
    return pages[usesFirst ? 0 : selection.currentPage - 1];
}

int SvgInterpretation::GetPageCount(unsigned int& count) {
    return Enter([&] {
        const BuildResult build = EnsureModel();
        if (!build.available) return 0;
        count = static_cast<unsigned int>(model_->GetImages()->size());
        return build.status;
    });
}

int SvgInterpretation::GetSize(const Selection& selection, float& width, float& height) {
    return Enter([&] {
        const BuildResult build = EnsureModel();
        if (!build.available) return 0;
        if (const ORVPrtImageElt* page = SelectPage(selection)) {
            double pageWidth = 0.0, pageHeight = 0.0;
            page->GetSize(pageWidth, pageHeight);
            width = static_cast<float>(pageWidth);
            height = static_cast<float>(pageHeight);
        }
        return build.status;
    });
}

int SvgInterpretation::GetTitle(const Selection& selection, ORVUnicodeString& title) {
    return Enter([&] {
        const BuildResult build = EnsureModel();
        if (!build.available) return 0;
        if (const ORVPrtImageElt* page = SelectPage(selection)) title = page->GetTitle();
        return build.status;
    });
}

int SvgInterpretation::Decode(const Selection& selection, ORVPrintGenerator* generator,
                              const ORVPrintParameters& parameters) {
    return Enter([&] {
        const BuildResult build = EnsureModel();
        if (!build.available || (build.builtNow && build.status != kDone)) return build.status;
        // The last print releases the document and consumes the model.
        if (parameters.IsLast()) source_.reset();
        ORVPrintModelRender render = source_ ? ORVPrintModelRender(*model_, generator, parameters)
                                             : ORVPrintModelRender(std::move(*model_), generator, parameters);
        if (selection.allPages || selection.currentPage == 0) return render.Draw();
        if (selection.currentPage > model_->GetImages()->size()) return 0;
        return render.Draw(selection.currentPage);
    });
}
