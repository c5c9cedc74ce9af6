// SPDX-License-Identifier: Apache-2.0
#include "tests/support/page_state.h"

#include "platform/model/ORVPrtImageElt.h"

PageState::PageState(double width, double height, int flip) : ownModel_(new ORVPrtModel) {
    const ORVRef<ORVPrtImageElt> newPage(new ORVPrtImageElt);
    ownModel_->AddImage(newPage.get());
    model = ownModel_.get();
    page = newPage.get();
    pageWidth = width;
    pageHeight = height;
    definitions = &ownDefinitions_;
    boxes = &ownBoxes_;
    currentPath = &noPath_;
    yFlip = static_cast<std::uint8_t>(flip);
}
