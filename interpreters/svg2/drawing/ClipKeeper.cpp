// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/drawing/ClipKeeper.h"

namespace svg2 {

bool ClipKeeper::EndInnermost() {
    isKept_ = false;
    --depth_;
    status_ = generator_.EndClipPath();
    return status_ == 1;
}

bool ClipKeeper::IsInnermost(const ORVPrintClipPath& clip) const {
    const OpenClip& innermost = open_[depth_ - 1];
    return innermost.isEvenOdd == clip.evenOdd && innermost.toPage == clip.toPage &&
           innermost.path.verbs == clip.path.verbs && innermost.path.points == clip.path.points;
}

int ClipKeeper::BeginClipPath(const ORVPrintClipPath& clip) {
    if (isKept_ && IsInnermost(clip)) {
        isKept_ = false;
        return 1;
    }
    if (!EndKept()) return status_;
    if (open_.size() == depth_) open_.emplace_back();
    OpenClip& opened = open_[depth_++];
    opened.path = clip.path;
    opened.toPage = clip.toPage;
    opened.isEvenOdd = clip.evenOdd;
    return generator_.BeginClipPath(clip);
}

int ClipKeeper::EndClipPath() {
    if (!EndKept()) return status_;
    isKept_ = true;
    return 1;
}

}  // namespace svg2
