// SPDX-License-Identifier: Apache-2.0

// Prints a standard SVG document to PNG, which must be readable. The first byte chooses the resolution.

#include <string>

#include "fuzz/support/FuzzBytes.h"
#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/standard_documents.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

const FuzzTarget kTarget("standard_pixels", [](std::string_view bytes) {
    static constexpr double kResolutions[] = {96.0, 20.0, 72.0, 7.3};
    FuzzBytes choices(bytes);
    const double dotsPerInch = kResolutions[choices.Below(4)];
    const std::string page = PrintStandardPage(std::string(choices.GetRest()), dotsPerInch);
    if (page.empty()) return;
    const ORVRef<ORVPixelImage> image(ReadMemoryPNGPixelImage(page.data(), page.size(), 0));
    Require(static_cast<bool>(image));
});

}  // namespace
