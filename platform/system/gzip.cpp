// SPDX-License-Identifier: Apache-2.0
#include "platform/system/gzip.h"

#include <zlib.h>

#include <algorithm>
#include <new>

#include "platform/system/ORVPrintLimits.h"

namespace {

constexpr std::string_view kMagic = "\x1f\x8b";
constexpr int kGzipWindow = 15 + 16;  // the largest window; 16 asks zlib for gzip's header and trailer

// Largest input and output of one call of zlib, so that limits are checked frequently.
constexpr std::size_t kStep = std::size_t{1} << 20U;

/// Decompressor for consecutive streams.
class Inflater {
public:
    explicit Inflater(std::string_view packed) : packed_(packed) {
        if (inflateInit2(&stream_, kGzipWindow) != Z_OK) throw std::bad_alloc();
    }
    ~Inflater() { inflateEnd(&stream_); }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    /// Decompresses up to `room` bytes. @return zlib's status
    int Step(char* out, std::size_t room, std::size_t& written) {
        // zlib's interface predates const; it does not modify its input.
        stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed_.data() + taken_));
        stream_.avail_in = static_cast<uInt>(std::min(packed_.size() - taken_, kStep));
        stream_.next_out = reinterpret_cast<Bytef*>(out);
        stream_.avail_out = static_cast<uInt>(std::min(room, kStep));
        const uInt offered = stream_.avail_in, asked = stream_.avail_out;
        const int status = inflate(&stream_, Z_NO_FLUSH);
        taken_ += offered - stream_.avail_in;
        written = asked - stream_.avail_out;
        return status;
    }
    void BeginNextMember() { inflateReset(&stream_); }

    std::size_t GetTaken() const { return taken_; }
    std::string_view GetRest() const { return packed_.substr(taken_); }
    const char* GetMessage() const { return stream_.msg ? stream_.msg : "it makes no sense"; }

private:
    const std::string_view packed_;
    std::size_t taken_ = 0;
    z_stream stream_{};
};

std::string LimitError(std::size_t size, std::size_t taken, const UnpackLimits& limits) {
    if (size > limits.size)
        return "is more than " + std::to_string(limits.size) + " bytes when decompressed, the limit";
    if (size > limits.freeSize && size / limits.ratio > taken)
        return "unpacks to more than " + std::to_string(limits.ratio) +
               " times its size when decompressed, the limit; to allow it, decompress it first";
    return {};
}

}  // namespace

UnpackLimits UnpackLimits::InForce() {
    UnpackLimits limits;
    limits.size = ORVPrintLimits::Get(ORVPrintLimit::kUnpackedBytes);
    limits.ratio = std::max<std::size_t>(ORVPrintLimits::Get(ORVPrintLimit::kUnpackedGrowth), 1);
    return limits;
}

bool IsGzip(std::string_view bytes) { return bytes.starts_with(kMagic); }

UnpackResult UnpackGzip(std::string_view packed, const UnpackLimits& limits, GrowingBytes& bytes,
                        std::string& error) {
    Inflater inflater(packed);
    // The declared size is not trusted: the buffer starts at the least compression of typical drawings and
    // grows as needed. One extra byte lets zlib detect the end without another call.
    const std::size_t most = limits.size + 1;
    bytes.SetRoom(std::min(std::max(4 * packed.size(), kStep), most));
    std::size_t size = 0;
    for (;;) {
        if (size == bytes.GetRoom()) bytes.SetRoom(std::min(size + std::max(size / 2, kStep), most));
        std::size_t written = 0;
        const int status = inflater.Step(bytes.GetBytes() + size, bytes.GetRoom() - size, written);
        size += written;
        error = LimitError(size, inflater.GetTaken(), limits);
        if (!error.empty()) return UnpackResult::kOverLimit;
        if (status == Z_OK) continue;
        if (status == Z_MEM_ERROR) throw std::bad_alloc();
        if (status == Z_BUF_ERROR) {
            error = "is cut off: its gzip data ends too early";
            return UnpackResult::kDamaged;
        }
        if (status != Z_STREAM_END) {
            error = std::string("is damaged gzip data: ") + inflater.GetMessage();
            return UnpackResult::kDamaged;
        }
        if (inflater.GetRest().find_first_not_of('\0') == std::string_view::npos) break;
        if (!IsGzip(inflater.GetRest())) {
            error = "is damaged gzip data: something else follows it";
            return UnpackResult::kDamaged;
        }
        inflater.BeginNextMember();
    }
    bytes.SetRoom(size);
    bytes.SetSize(size);
    return UnpackResult::kUnpacked;
}
