// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include <gif_lib.h>

#include "platform/visualization/images/module/readers.h"

namespace {

/// Input that giflib has not read yet.
struct Input {
    std::span<const std::uint8_t> left;
};

int TakeBytes(GifFileType* gif, GifByteType* out, int count) {
    auto* input = static_cast<Input*>(gif->UserData);
    const std::size_t taken = std::min(static_cast<std::size_t>(count), input->left.size());
    std::memcpy(out, input->left.data(), taken);
    input->left = input->left.subspan(taken);
    return static_cast<int>(taken);
}

struct GifCloser {
    void operator()(GifFileType* gif) const { DGifCloseFile(gif, nullptr); }
};

class GifReading {
public:
    explicit GifReading(std::span<const std::uint8_t> file) : input_{file} {}

    ModuleImageStatus Read(ModuleImagePixels& pixels) {
        int error = 0;
        gif_.reset(DGifOpen(&input_, TakeBytes, &error));
        if (!gif_) return StatusOf(error);
        return FindFrame() && DrawFrame(pixels) ? ModuleImageStatus::kRead : StatusOf(gif_->Error);
    }

private:
    static ModuleImageStatus StatusOf(int error) {
        return error == D_GIF_ERR_NOT_ENOUGH_MEM ? ModuleImageStatus::kOutOfMemory
                                                 : ModuleImageStatus::kUnreadable;
    }

    /// Advances to the first frame. Its transparent colour is in an extension block before it.
    bool FindFrame() {
        for (;;) {
            GifRecordType type = UNDEFINED_RECORD_TYPE;
            if (DGifGetRecordType(gif_.get(), &type) != GIF_OK) return false;
            if (type == IMAGE_DESC_RECORD_TYPE) return DGifGetImageDesc(gif_.get()) == GIF_OK;
            if (type != EXTENSION_RECORD_TYPE || !ReadExtension()) return false;
        }
    }

    bool ReadExtension() {
        int code = 0;
        GifByteType* block = nullptr;
        if (DGifGetExtension(gif_.get(), &code, &block) != GIF_OK) return false;
        while (block) {
            GraphicsControlBlock control;
            if (code == GRAPHICS_EXT_FUNC_CODE && DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK)
                transparent_ = control.TransparentColor;
            if (DGifGetExtensionNext(gif_.get(), &block) != GIF_OK) return false;
        }
        return true;
    }

    bool DrawFrame(ModuleImagePixels& pixels) {
        const GifImageDesc& frame = gif_->Image;
        const ColorMapObject* const colours = frame.ColorMap ? frame.ColorMap : gif_->SColorMap;
        if (!colours || frame.Width <= 0 || frame.Height <= 0) return false;
        // A screen smaller than the frame is enlarged, since some writers set it carelessly.
        const int width = std::max(gif_->SWidth, frame.Left + frame.Width),
                  height = std::max(gif_->SHeight, frame.Top + frame.Height);
        std::uint8_t* const first =
            pixels.Reserve(static_cast<std::uint64_t>(width), static_cast<std::uint64_t>(height));
        if (!first) return false;
        line_.resize(static_cast<std::size_t>(frame.Width));
        const auto drawRow = [&](int row) {
            if (DGifGetLine(gif_.get(), line_.data(), frame.Width) != GIF_OK) return false;
            const auto at = static_cast<std::size_t>(frame.Top + row) * static_cast<std::size_t>(width) +
                            static_cast<std::size_t>(frame.Left);
            DrawLine(*colours, first + at * 4);
            return true;
        };
        if (!frame.Interlace) return DrawRows(drawRow, 0, 1);
        constexpr int kPasses[][2] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
        return std::all_of(std::begin(kPasses), std::end(kPasses),
                           [&](const int(&pass)[2]) { return DrawRows(drawRow, pass[0], pass[1]); });
    }

    template <class DrawRow>
    bool DrawRows(const DrawRow& drawRow, int from, int step) const {
        for (int row = from; row < gif_->Image.Height; row += step)
            if (!drawRow(row)) return false;
        return true;
    }

    void DrawLine(const ColorMapObject& colours, std::uint8_t* out) const {
        for (const GifPixelType pixel : line_) {
            if (pixel < colours.ColorCount && pixel != transparent_) {
                const GifColorType& colour = colours.Colors[pixel];
                const std::uint8_t rgba[] = {colour.Red, colour.Green, colour.Blue, 255};
                std::copy(std::begin(rgba), std::end(rgba), out);
            }
            out += 4;
        }
    }

    Input input_;
    std::unique_ptr<GifFileType, GifCloser> gif_;
    int transparent_ = NO_TRANSPARENT_COLOR;
    std::vector<GifPixelType> line_;
};

}  // namespace

ModuleImageStatus ReadGif(std::span<const std::uint8_t> file, ModuleImagePixels& pixels) {
    return GifReading(file).Read(pixels);
}
