// SPDX-License-Identifier: Apache-2.0
#include <memory>

#include <webp/decode.h>
#include <webp/demux.h>

#include "platform/visualization/images/module/readers.h"

namespace {

constexpr std::uint64_t kBytesAPixel = 4;

/// The first frame of an animation, or the only image of the file.
struct Frame {
    const std::uint8_t* bytes = nullptr;
    std::size_t size = 0;
    int x = 0, y = 0;
    int canvasWidth = 0, canvasHeight = 0;
};

/// False when a file is too small for that many pixels. The format can represent any number of equal pixels
/// in a few bytes, which real images do not contain.
bool CanHold(std::size_t size, std::uint64_t pixels) {
    constexpr std::uint64_t kFreePixels = std::uint64_t{4} << 20U, kPixelsAByte = 1024;
    return pixels <= kFreePixels || pixels / kPixelsAByte <= size;
}

ModuleImageStatus Decode(const Frame& frame, ModuleImagePixels& pixels) {
    int width = 0, height = 0;
    if (WebPGetInfo(frame.bytes, frame.size, &width, &height) == 0) return ModuleImageStatus::kUnreadable;
    const auto canvasWidth = static_cast<std::uint64_t>(frame.canvasWidth),
               canvasHeight = static_cast<std::uint64_t>(frame.canvasHeight);
    if (frame.x + width > frame.canvasWidth || frame.y + height > frame.canvasHeight ||
        !CanHold(frame.size, canvasWidth * canvasHeight))
        return ModuleImageStatus::kUnreadable;
    std::uint8_t* const first = pixels.Reserve(canvasWidth, canvasHeight);
    if (!first) return ModuleImageStatus::kUnreadable;

    WebPDecoderConfig config;
    if (WebPInitDecoderConfig(&config) == 0) return ModuleImageStatus::kUnreadable;
    const std::uint64_t rowBytes = canvasWidth * kBytesAPixel;
    const std::uint64_t offset =
        static_cast<std::uint64_t>(frame.y) * rowBytes + static_cast<std::uint64_t>(frame.x) * kBytesAPixel;
    config.output.colorspace = MODE_RGBA;
    config.output.is_external_memory = 1;
    config.output.u.RGBA.rgba = first + offset;
    config.output.u.RGBA.stride = static_cast<int>(rowBytes);
    config.output.u.RGBA.size = rowBytes * canvasHeight - offset;
    switch (WebPDecode(frame.bytes, frame.size, &config)) {
        case VP8_STATUS_OK: return ModuleImageStatus::kRead;
        case VP8_STATUS_OUT_OF_MEMORY: return ModuleImageStatus::kOutOfMemory;
        default: return ModuleImageStatus::kUnreadable;
    }
}

struct DemuxerCloser {
    void operator()(WebPDemuxer* demuxer) const { WebPDemuxDelete(demuxer); }
};

ModuleImageStatus DecodeAnimation(std::span<const std::uint8_t> file, ModuleImagePixels& pixels) {
    const WebPData data{file.data(), file.size()};
    const std::unique_ptr<WebPDemuxer, DemuxerCloser> demuxer(WebPDemux(&data));
    WebPIterator frame{};
    if (!demuxer || WebPDemuxGetFrame(demuxer.get(), 1, &frame) == 0) return ModuleImageStatus::kUnreadable;
    const auto width = WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_WIDTH),
               height = WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_HEIGHT);
    const ModuleImageStatus status =
        Decode({frame.fragment.bytes, frame.fragment.size, frame.x_offset, frame.y_offset,
                static_cast<int>(width), static_cast<int>(height)},
               pixels);
    WebPDemuxReleaseIterator(&frame);
    return status;
}

}  // namespace

ModuleImageStatus ReadWebP(std::span<const std::uint8_t> file, ModuleImagePixels& pixels) {
    WebPBitstreamFeatures features;
    if (WebPGetFeatures(file.data(), file.size(), &features) != VP8_STATUS_OK)
        return ModuleImageStatus::kUnreadable;
    if (features.has_animation != 0) return DecodeAnimation(file, pixels);
    return Decode({file.data(), file.size(), 0, 0, features.width, features.height}, pixels);
}
