// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/geometry/images.h"

#include <algorithm>
#include <array>
#include <string>

#include "interpreters/svg/definitions/definitions.h"
#include "interpreters/svg/geometry/base64.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_texts.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/style/presentation.h"
#include "interpreters/svg/values/length.h"
#include "interpreters/svg/values/transform_list.h"
#include "platform/model/ORVPrtBitmapImageElt.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtPrimitiveBudget.h"
#include "platform/system/ORVString.h"
#include "platform/system/files.h"

namespace {

struct DataFormat {
    std::string_view prefix;
    ORVPixelImage* (*read)(const void* bytes, std::size_t count, int flag);
};
constexpr std::array kDataFormats{
    DataFormat{"data:image/png;base64,", ReadMemoryPNGPixelImage},
    DataFormat{"data:image/jpg;base64,", ReadMemoryJPEGPixelImage},
    DataFormat{"data:image/jpeg;base64,", ReadMemoryJPEGPixelImage},
    DataFormat{"data:image/bmp;base64,", ReadMemBMPPixelImage},
};

bool IsReadableFile(const ORVUnicodeString& path) {
    return ORVFileStat(path) == 1 && ORVFileAccess(path, 0) == 1;
}

ORVRef<ORVPixelImage> LoadFile(const ORVUnicodeString& path) {
    return ORVRef<ORVPixelImage>(ORVPixelImage::CreateFromFile(ORVString(path.GetView()), 1, 0));
}

ORVRef<ORVPixelImage> LoadData(std::string_view reference) {
    for (const DataFormat& format : kDataFormats) {
        if (!reference.starts_with(format.prefix)) continue;
        std::string bytes;
        if (!DecodeBase64(reference.substr(format.prefix.size()), bytes)) return {};
        return ORVRef<ORVPixelImage>(format.read(bytes.data(), bytes.size(), 0));
    }
    return {};
}

}  // namespace

bool FindImageFile(const SvgDrawState& state, std::string_view reference, ORVUnicodeString& path) {
    // No file name is longer than this; avoids copying data URIs.
    constexpr std::size_t kLongestName = 4096;
    if (reference.empty() || reference.size() > kLongestName) return false;
    const ORVUnicodeString name(reference);
    path = name;
    if (IsReadableFile(path)) return true;
    ORVUnicodeString folder, documentName;
    ORVSplitPath(*state.currentPath, folder, documentName);
    path = ORVMakePath(folder, name);
    return IsReadableFile(path);
}

bool HoldsImageData(std::string_view reference) {
    return std::any_of(kDataFormats.begin(), kDataFormats.end(),
                       [&](const DataFormat& format) { return reference.starts_with(format.prefix); });
}

bool LoadPixelImage(const SvgDrawState& state, std::string_view reference, ORVPrtBitmapImageElt& bitmap) {
    ORVPrtPrimitiveBudget* const budget = bitmap.GetBudget();
    if (budget && !budget->MayTakePixels()) return true;
    ORVUnicodeString path;
    const ORVRef<ORVPixelImage> image =
        FindImageFile(state, reference, path) ? LoadFile(path) : LoadData(reference);
    if (!image) {
        const bool isOutOfMemory = ORVPixelImage::RanOutOfMemory();
        if (budget && isOutOfMemory) budget->NoteOutOfMemory();
        return !isOutOfMemory;
    }
    bitmap.SetPixelImage(image.get());
    if (!budget) return true;
    // A colour profile costs as much work as pixels and is compressed as well.
    const std::uint64_t pixels =
        static_cast<std::uint64_t>(image->GetWidth()) * static_cast<std::uint64_t>(image->GetHeight());
    budget->NotePixels(pixels + image->GetProfileSize(), image->GetFileSize());
    return true;
}

ORVPrtGraphicPrimitiveElt* AddReferencedDefinition(const SvgDrawState& state, std::string_view reference,
                                                   ORVPrtGroupElt& group) {
    if (!reference.starts_with('#')) return nullptr;
    ORVRef<ORVPrtGraphicPrimitiveElt> definition;
    FindDefinition(state, reference.substr(1), definition);
    group.AddChild(definition.get());
    return definition.get();
}

template <SvgElementAccess Element>
int HandleImage(SvgDrawState state, const Element& element, ORVPrtBitmapImageElt* bitmap,
                ORVPrtGraphicPrimitiveElt& /*container*/) {
    if (!bitmap) return kUnusable;

    ApplyImagePresentation(state, element);
    const AttributeValue reference = element.Attribute(AttributeName::kXlinkHref);
    if (reference.WasRead()) LoadPixelImage(state, reference.text, *bitmap);
    element.Forget(AttributeName::kXlinkHref);
    ReadIdentifier(element, *bitmap);
    const std::string_view transform = element.Attribute(AttributeName::kTransform).text;
    if (!transform.empty()) ApplyTransformList(state, transform, bitmap);

    double x = 0.0, y = 0.0, width = 0.0, height = 0.0;
    ReadHorizontalAttribute(state, element, AttributeName::kX, x);
    ReadVerticalCoordinateAttribute(state, element, AttributeName::kY, y);
    ReadHorizontalAttribute(state, element, AttributeName::kWidth, width);
    ParseVerticalLength(state, element.Attribute(AttributeName::kHeight).text, height);
    bitmap->SetOrientation(0.0F);
    bitmap->SetOrigin({x, state.yFlip == 1 ? y - height : y});
    bitmap->SetSize(width, height);
    ReadDescriptions(element, *bitmap);
    return kDone;
}

template int HandleImage(SvgDrawState, const DomElementAccess&, ORVPrtBitmapImageElt*,
                         ORVPrtGraphicPrimitiveElt&);
template int HandleImage(SvgDrawState, const LightElementAccess&, ORVPrtBitmapImageElt*,
                         ORVPrtGraphicPrimitiveElt&);
