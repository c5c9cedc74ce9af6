// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/images/ORVPixelImage.h"

#include <cstdlib>
#include <cstring>
#include <exception>
#include <limits>
#include <new>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/system/ORVPrintLimits.h"
#include "platform/system/ORVRef.h"
#include "platform/system/files.h"
#include "platform/visualization/images/ORVPixelImageBuilder.h"

namespace {

constexpr std::size_t kBytesAPixel = 4;

thread_local bool ranOutOfMemory = false;

std::uint8_t* AllocatePixels(std::size_t width, std::size_t height) {
    // calloc returns large blocks untouched; pages are allocated as they are written.
    return static_cast<std::uint8_t*>(std::calloc(height, width * kBytesAPixel));
}

/// Closes a file descriptor at the end of its scope.
class File {
public:
    // O_NONBLOCK, so that opening a pipe does not wait for a writer.
    explicit File(const char* path) : descriptor_(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }

    /// Reads all bytes of a regular file. @return false when it is not one, is larger than `limit` or cannot
    /// be read
    bool ReadAll(std::uint64_t limit, std::vector<std::uint8_t>& bytes) const {
        struct stat status = {};
        if (descriptor_ < 0 || ::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) return false;
        if (!ORVMayReadOpenFile(descriptor_)) return false;
        if (status.st_size <= 0 || static_cast<std::uint64_t>(status.st_size) > limit) return false;
        bytes.resize(static_cast<std::size_t>(status.st_size));
        std::size_t filled = 0;
        while (filled < bytes.size()) {
            const ssize_t count = ::read(descriptor_, bytes.data() + filled, bytes.size() - filled);
            if (count < 0) return false;
            if (count == 0) break;  // the file has been truncated meanwhile; the readers will detect it
            filled += static_cast<std::size_t>(count);
        }
        bytes.resize(filled);
        return true;
    }

private:
    int descriptor_;
};

bool StartsWith(std::span<const std::uint8_t> bytes, std::string_view signature) {
    return bytes.size() >= signature.size() &&
           std::memcmp(bytes.data(), signature.data(), signature.size()) == 0;
}

ORVPixelImage* ReadByContent(std::span<const std::uint8_t> bytes) {
    if (StartsWith(bytes, "\x89PNG")) return ReadMemoryPNGPixelImage(bytes.data(), bytes.size(), 0);
    if (StartsWith(bytes, "\xFF\xD8")) return ReadMemoryJPEGPixelImage(bytes.data(), bytes.size(), 0);
    if (StartsWith(bytes, "BM")) return ReadMemBMPPixelImage(bytes.data(), bytes.size(), 0);
    return nullptr;
}

}  // namespace

const ORVMetaClass& ORVPixelImage::MetaClass() {
    static const ORVMetaClass metaClass("ORVPixelImage", &ORVBaseObject::MetaClass(), "ORVnull", "ORVViz");
    return metaClass;
}

void ORVPixelImage::Free::operator()(std::uint8_t* memory) const { std::free(memory); }

void ORVPixelImage::SetPixelLimit(std::uint64_t pixels) {
    ORVPrintLimits::Set(ORVPrintLimit::kImagePixels, pixels);
}

std::uint64_t ORVPixelImage::GetPixelLimit() { return ORVPrintLimits::Get(ORVPrintLimit::kImagePixels); }

ORVPixelImage* ORVPixelImage::CreateFromFile(const ORVString& path, int /*colours*/, int /*flags*/) {
    ORVPixelImageBuilder::BeginReading();
    try {
        // Header allowance. The largest valid file is a bitmap of four bytes per pixel; twice that is
        // accepted.
        constexpr std::uint64_t kFileOverhead = std::uint64_t{64} << 20;
        const std::uint64_t limit = GetPixelLimit();
        const std::uint64_t byteLimit = limit > (std::uint64_t{1} << 56) ? limit : limit * 8 + kFileOverhead;
        std::vector<std::uint8_t> bytes;
        if (!File(path.CastToCharPtr()).ReadAll(byteLimit, bytes)) return nullptr;
        return ReadByContent(bytes);
    } catch (const std::exception&) {
        return ORVPixelImageBuilder::NoteOutOfMemory();
    }
}

ORVPixelImage* ORVPixelImage::CreateFromPixels(int width, int height, std::span<const std::uint8_t> rgba) {
    ORVPixelImageBuilder::BeginReading();
    if (width <= 0 || height <= 0) return nullptr;
    const auto columns = static_cast<std::uint64_t>(width), rows = static_cast<std::uint64_t>(height);
    if (!ORVPixelImageBuilder::IsAllowed(columns, rows) || rgba.size() != columns * rows * kBytesAPixel)
        return nullptr;
    ORVPixelImageBuilder builder;
    if (!builder.SetSize(columns, rows)) return nullptr;
    std::memcpy(builder.GetRow(0), rgba.data(), rgba.size());
    for (std::size_t row = 0; row < rows; ++row) builder.NoteAlpha(row);
    return builder.Finish();
}

std::span<const std::uint8_t> ORVPixelImage::GetPixels() const {
    const auto columns = static_cast<std::size_t>(width_), rows = static_cast<std::size_t>(height_);
    if (!pixels_ && decoder_) {
        const ORVRef<ORVPixelImage> decoded(decoder_(file_.data(), file_.size()));
        if (!decoded) return {};
        pixels_ = std::move(decoded->pixels_);
    }
    if (!pixels_) {
        Pixels decoded(AllocatePixels(columns, rows));
        if (!decoded || !DecodeJpegPixels(jpeg_, isConverted_, decoded.get())) return {};
        pixels_ = std::move(decoded);
    }
    return {pixels_.get(), columns * rows * kBytesAPixel};
}

void ORVPixelImage::ReleasePixels() const {
    if (!file_.empty()) pixels_.reset();
}

bool ORVPixelImage::RanOutOfMemory() { return std::exchange(ranOutOfMemory, false); }

void ORVPixelImageBuilder::BeginReading() { ranOutOfMemory = false; }

ORVPixelImage* ORVPixelImageBuilder::NoteOutOfMemory() {
    ranOutOfMemory = true;
    return nullptr;
}

bool ORVPixelImageBuilder::IsAllowed(std::uint64_t width, std::uint64_t height) {
    constexpr std::uint64_t kLargestSide = std::numeric_limits<int>::max();
    if (width == 0 || height == 0 || width > kLargestSide || height > kLargestSide) return false;
    return width * height <= ORVPixelImage::GetPixelLimit();
}

bool ORVPixelImageBuilder::SetSize(std::uint64_t width, std::uint64_t height) {
    if (!IsAllowed(width, height)) return false;
    width_ = static_cast<std::size_t>(width);
    height_ = static_cast<std::size_t>(height);
    rowBytes_ = width_ * kBytesAPixel;
    pixels_.reset(AllocatePixels(width_, height_));
    if (!pixels_) NoteOutOfMemory();
    return pixels_ != nullptr;
}

void ORVPixelImageBuilder::SetResolution(double horizontal, double vertical) {
    if (!(horizontal > 0.0 && vertical > 0.0)) return;
    horizontalResolution_ = horizontal;
    verticalResolution_ = vertical;
}

void ORVPixelImageBuilder::NoteAlpha(std::size_t row) {
    if (hasAlpha_) return;
    const std::uint8_t* bytes = GetRow(row);
    unsigned int all = 255;
    for (std::size_t at = 3; at < rowBytes_; at += kBytesAPixel) all &= bytes[at];
    hasAlpha_ = all != 255;
}

ORVPixelImage* ORVPixelImageBuilder::Finish() {
    auto* image = new (std::nothrow) ORVPixelImage;
    if (!image) return NoteOutOfMemory();
    image->width_ = static_cast<int>(width_);
    image->height_ = static_cast<int>(height_);
    image->hasAlpha_ = hasAlpha_;
    image->horizontalResolution_ = horizontalResolution_;
    image->verticalResolution_ = verticalResolution_;
    image->remark_ = remark_;
    image->profileSize_ = profileSize_;
    image->pixels_ = std::move(pixels_);
    return image;
}

ORVPixelImage* ORVPixelImageBuilder::FinishJpeg(std::vector<std::uint8_t> file, const ORVJpegSource& source,
                                                bool isConverted) {
    ORVPixelImage* image = Finish();
    if (!image) return nullptr;
    image->width_ = source.storedWidth;
    image->height_ = source.storedHeight;
    if (source.SwapsSides()) {
        std::swap(image->width_, image->height_);
        std::swap(image->horizontalResolution_, image->verticalResolution_);
    }
    image->isConverted_ = isConverted;
    image->file_ = std::move(file);
    image->fileSize_ = image->file_.size();
    image->jpeg_ = source;
    image->jpeg_.bytes = image->file_;
    return image;
}

ORVPixelImage* ORVPixelImageBuilder::DecodeAndKeepSmaller(Decoder decoder, const void* bytes,
                                                          std::size_t size) {
    constexpr std::size_t kLarge = std::size_t{1} << 20;  // bytes of pixels
    BeginReading();
    ORVRef<ORVPixelImage> image(decoder(bytes, size));
    if (!image) return nullptr;
    image->fileSize_ = size;
    const std::size_t pixelBytes = image->GetPixels().size();
    if (pixelBytes > kLarge && size < pixelBytes / 2) {
        try {
            const auto* first = static_cast<const std::uint8_t*>(bytes);
            image->file_.assign(first, first + size);
        } catch (const std::exception&) {  // out of memory: keep the pixels
            return NoteOutOfMemory();
        }
        image->decoder_ = decoder;
        image->ReleasePixels();
    }
    return image.Detach();
}
