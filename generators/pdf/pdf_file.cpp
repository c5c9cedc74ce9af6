// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_file.h"

#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <span>
#include <system_error>
#include <thread>
#include <utility>

#include "generators/common/ORVOutput.h"
#include "generators/common/deflate_chunk.h"
#include "generators/pdf/pdf_syntax.h"

namespace {

constexpr int kQuickLevel = 1, kThoroughLevel = 6, kPieceLevel = 5;
// Most content and fonts become 2 to 7 per cent smaller at the thorough level, which takes four times as
// long: a quarter of the total time of a typical drawing. Data that compresses to less than this fraction is
// repetitive, such as lines of text; the fast level makes it a quarter larger.
constexpr double kRepetitiveShare = 0.3;
// After this much content that is not repetitive, the rest is compressed even faster: a page of a hundred
// thousand shapes becomes a tenth larger and takes half as long.
constexpr std::uint64_t kCarefulContentBytes = std::uint64_t{1} << 18U;
// Below this size, a thread would cost more than it saves.
constexpr std::uint64_t kBytesWithoutThread = std::uint64_t{256} << 10U;
// Maximum data waiting for the thread, to bound memory.
constexpr std::size_t kWaitingBytes = std::size_t{1} << 20U;
// With this much waiting, the caller compresses independent streams itself.
constexpr std::size_t kEnoughWaitingBytes = std::size_t{512} << 10U;
// Longer streams that come in pieces are compressed incrementally.
constexpr std::size_t kStreamPiece = std::size_t{1} << 20U;
// Readers decompress an object stream as a whole to access one object.
constexpr unsigned int kObjectsInStream = 100;
constexpr std::size_t kObjectStreamBytes = std::size_t{64} << 10U;

std::span<const std::uint8_t> AsBytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string_view AsText(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

/// An object to be written.
struct PdfFile::Job {
    enum class Kind { kWhole, kBegin, kPiece, kEnd };
    Kind kind = Kind::kWhole;
    unsigned int number = 0;  // object number; for kEnd, the object that holds the length
    Packing packing = Packing::kStored;
    std::string entries = {};  // of the stream's dictionary
    std::string bytes = {};
    std::vector<std::uint8_t> packed = {};  // the compressed bytes; empty until compressed
};

/// Compresses, writes, and records object offsets.
class PdfFile::Writer {
public:
    Writer(ORVOutput& output, std::atomic<bool>& good) : output_(output), good_(good) {
        // Non-ASCII bytes in the second line mark the file as binary for transfer programs.
        Put("%PDF-1.5\n%\xE2\xE3\xCF\xD3\n");
    }
    ~Writer() {
        if (hasStream_) deflateEnd(&stream_);
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void Write(const Job& job) {
        if (!good_.load(std::memory_order_relaxed)) return;
        switch (job.kind) {
            case Job::Kind::kWhole: return WriteWhole(job);
            case Job::Kind::kBegin: return BeginPieces(job);
            case Job::Kind::kPiece: return Deflate(job.bytes, false);
            case Job::Kind::kEnd: return EndPieces(job);
        }
    }

    /// True if all following content is compressed fast, each stream independently, so that any thread may do
    /// it.
    bool IsContentFast() const { return isContentFast_.load(std::memory_order_acquire); }

    void Put(std::string_view bytes) {
        if (!good_.load(std::memory_order_relaxed)) return;
        crc_ = libdeflate_crc32(crc_, bytes.data(), bytes.size());
        adler_ = libdeflate_adler32(adler_, bytes.data(), bytes.size());
        position_ += bytes.size();
        if (output_.Write(bytes.data(), bytes.size()) != 1) good_.store(false, std::memory_order_release);
    }

    std::uint64_t GetPosition() const { return position_; }
    /// Offset of an object, 0 if it was not written.
    std::uint64_t GetOffset(unsigned int number) const {
        return number <= offsets_.size() ? offsets_[number - 1] : 0;
    }
    /// 32 hexadecimal digits derived from all bytes so far.
    std::string GetDigest() const {
        std::string digits;
        const auto add = [&digits](std::uint64_t value, int count) {
            for (int shift = 4 * (count - 1); shift >= 0; shift -= 4)
                digits += "0123456789ABCDEF"[value >> static_cast<unsigned>(shift) & 15U];
        };
        add(crc_, 8);
        add(adler_, 8);
        add(position_, 16);
        return digits;
    }

private:
    struct FreeCompressor {
        void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
    };
    using Compressor = std::unique_ptr<libdeflate_compressor, FreeCompressor>;

    void BeginObject(unsigned int number, const std::string& start) {
        if (offsets_.size() < number) offsets_.resize(number, 0);
        offsets_[number - 1] = position_;
        Put(std::to_string(number) + " 0 obj\n" + start);
    }

    void WriteWhole(const Job& job) {
        const std::string_view bytes = Packed(job);
        std::string start = "<<" + job.entries;
        if (job.packing != Packing::kStored) start += "/Filter/FlateDecode";
        BeginObject(job.number, start + "/Length " + std::to_string(bytes.size()) + ">>\nstream\n");
        Put(bytes);
        Put("\nendstream\nendobj\n");
    }

    std::string_view Packed(const Job& job) {
        if (!job.packed.empty()) return AsText(job.packed);
        switch (job.packing) {
            case Packing::kStored: break;
            case Packing::kDeflate: return Compress(job.bytes);
            case Packing::kContent: return CompressContent(job.bytes);
        }
        return job.bytes;
    }

    std::string_view CompressContent(std::string_view bytes) {
        if (IsContentFast()) return CompressFast(bytes);
        const std::string_view packed = Compress(bytes);
        contentBytes_ += bytes.size();
        packedContentBytes_ += packed.size();
        if (contentBytes_ >= kCarefulContentBytes && !IsRepetitive(contentBytes_, packedContentBytes_))
            isContentFast_.store(true, std::memory_order_release);
        return packed;
    }

    std::string_view Compress(std::string_view bytes) {
        const std::string_view packed = Compress(bytes, quick_, kQuickLevel);
        return IsRepetitive(bytes.size(), packed.size()) ? Compress(bytes, thorough_, kThoroughLevel)
                                                         : packed;
    }

    static bool IsRepetitive(std::uint64_t bytes, std::uint64_t packedBytes) {
        return static_cast<double>(packedBytes) < kRepetitiveShare * static_cast<double>(bytes);
    }

    std::string_view Compress(std::string_view bytes, Compressor& compressor, int level) {
        if (!compressor) compressor.reset(libdeflate_alloc_compressor(level));
        if (!compressor) return Fail();
        const std::size_t bound = libdeflate_zlib_compress_bound(compressor.get(), bytes.size());
        if (packed_.size() < bound) packed_.resize(bound);
        return {packed_.data(), libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(),
                                                         packed_.data(), bound)};
    }

    std::string_view CompressFast(std::string_view bytes) {
        packedFast_.clear();
        return ORVDeflateWhole(AsBytes(bytes), packedFast_) ? AsText(packedFast_) : Fail();
    }

    std::string_view Fail() {
        good_.store(false, std::memory_order_release);
        return {};
    }

    void BeginPieces(const Job& job) {
        const int status = hasStream_ ? deflateReset(&stream_) : deflateInit(&stream_, kPieceLevel);
        if (status != Z_OK) return good_.store(false, std::memory_order_release);
        hasStream_ = true;
        BeginObject(job.number, "<<" + job.entries + "/Filter/FlateDecode>>\nstream\n");
        streamStart_ = position_;
    }

    void Deflate(const std::string& bytes, bool atEnd) {
        constexpr std::size_t kOutputBytes = std::size_t{64} << 10U;
        if (packed_.size() < kOutputBytes) packed_.resize(kOutputBytes);
        stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
        stream_.avail_in = static_cast<uInt>(bytes.size());
        int status = Z_OK;
        do {
            stream_.next_out = reinterpret_cast<Bytef*>(packed_.data());
            stream_.avail_out = static_cast<uInt>(kOutputBytes);
            status = deflate(&stream_, atEnd ? Z_FINISH : Z_NO_FLUSH);
            if (status == Z_STREAM_ERROR) return good_.store(false, std::memory_order_release);
            Put({packed_.data(), kOutputBytes - stream_.avail_out});
        } while (good_.load(std::memory_order_relaxed) &&
                 (atEnd ? status != Z_STREAM_END : stream_.avail_in > 0 || stream_.avail_out == 0));
    }

    void EndPieces(const Job& job) {
        Deflate({}, true);
        const std::uint64_t length = position_ - streamStart_;
        Put("\nendstream\nendobj\n");
        BeginObject(job.number, std::to_string(length) + "\nendobj\n");
    }

    ORVOutput& output_;
    std::atomic<bool>& good_;
    std::uint64_t position_ = 0, streamStart_ = 0;
    std::uint32_t crc_ = 0, adler_ = 1;
    std::vector<std::uint64_t> offsets_;
    Compressor quick_, thorough_;
    std::uint64_t contentBytes_ = 0, packedContentBytes_ = 0;  // excluding content that was compressed fast
    std::atomic<bool> isContentFast_{false};
    std::string packed_;
    std::vector<std::uint8_t> packedFast_;
    z_stream stream_{};
    bool hasStream_ = false;
};

/// The thread that compresses and writes, in the order of the jobs.
class PdfFile::Worker {
public:
    /// Throws if no thread can be started.
    Worker(Writer& writer, std::atomic<bool>& good)
        : writer_(writer), good_(good), thread_([this] { Run(); }) {}
    ~Worker() {
        {
            const std::lock_guard lock(mutex_);
            closed_ = true;
        }
        changed_.notify_all();
        thread_.join();
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    bool HasEnough() {
        const std::lock_guard lock(mutex_);
        return waitingBytes_ >= kEnoughWaitingBytes;
    }

    void Take(Job job) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return waitingBytes_ < kWaitingBytes; });
        const std::size_t size = Size(job);
        jobs_.push_back(std::move(job));
        waitingBytes_ += size;
        lock.unlock();
        changed_.notify_all();
    }

private:
    static std::size_t Size(const Job& job) {
        return job.bytes.size() + job.packed.size() + job.entries.size() + sizeof(Job);
    }

    void Run() {
        std::unique_lock lock(mutex_);
        for (;;) {
            changed_.wait(lock, [this] { return closed_ || !jobs_.empty(); });
            if (jobs_.empty()) return;
            const Job job = std::move(jobs_.front());
            jobs_.pop_front();
            lock.unlock();
            try {
                writer_.Write(job);
            } catch (const std::exception&) {
                good_.store(false, std::memory_order_release);
            }
            lock.lock();
            waitingBytes_ -= Size(job);
            changed_.notify_all();
        }
    }

    Writer& writer_;
    std::atomic<bool>& good_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Job> jobs_;
    std::size_t waitingBytes_ = 0;
    bool closed_ = false;
    std::thread thread_;  // last: it uses all members above
};

PdfFile::PdfFile(ORVOutput& output) : output_(output), writer_(std::make_unique<Writer>(output_, good_)) {}

PdfFile::~PdfFile() = default;

void PdfFile::Hand(Job job) {
    handedBytes_ += job.bytes.size();
    if (!worker_ && handedBytes_ > kBytesWithoutThread) {
        try {
            worker_ = std::make_unique<Worker>(*writer_, good_);
        } catch (const std::system_error&) {
            handedBytes_ = 0;  // no thread available; try again later
        }
    }
    if (!worker_) return writer_->Write(job);
    if (job.packing == Packing::kContent && writer_->IsContentFast() && worker_->HasEnough() &&
        ORVDeflateWhole(AsBytes(job.bytes), job.packed))
        std::string().swap(job.bytes);  // releases the memory
    worker_->Take(std::move(job));
}

void PdfFile::WriteObject(unsigned int number, std::string_view content) {
    if (gathered_ == 0) gatheringStream_ = Reserve();
    members_.push_back({number, gatheringStream_, gathered_++});
    objectPlaces_ += std::to_string(number) + " " + std::to_string(objects_.size()) + " ";
    objects_ += content;
    objects_ += '\n';
    if (gathered_ == kObjectsInStream || objects_.size() >= kObjectStreamBytes) FlushObjects();
}

void PdfFile::FlushObjects() {
    if (gathered_ == 0) return;
    const std::string entries =
        "/Type/ObjStm/N " + std::to_string(gathered_) + "/First " + std::to_string(objectPlaces_.size());
    WriteStream(gatheringStream_, entries, objectPlaces_ + objects_, Packing::kDeflate);
    objectPlaces_.clear();
    objects_.clear();
    gathered_ = 0;
}

void PdfFile::WriteStream(unsigned int number, std::string_view entries, std::string bytes, Packing packing) {
    Hand({Job::Kind::kWhole, number, packing, std::string(entries), std::move(bytes)});
}

void PdfFile::BeginStream(unsigned int number, std::string_view entries) {
    openStream_ = number;
    openEntries_ = entries;
    lengthObject_ = 0;
}

void PdfFile::AppendToStream(std::string_view bytes) {
    openBytes_ += bytes;
    if (openBytes_.size() < kStreamPiece) return;
    if (lengthObject_ == 0) {
        // The length is known only after the stream has been written, so it is a separate object.
        lengthObject_ = Reserve();
        openEntries_ += "/Length " + PdfReference(lengthObject_);
        Hand({Job::Kind::kBegin, openStream_, Packing::kDeflate, std::move(openEntries_), {}});
    }
    Hand({Job::Kind::kPiece, 0, Packing::kDeflate, {}, std::exchange(openBytes_, {})});
}

void PdfFile::EndStream() {
    if (lengthObject_ == 0)
        return WriteStream(openStream_, openEntries_, std::exchange(openBytes_, {}), Packing::kDeflate);
    Hand({Job::Kind::kPiece, 0, Packing::kDeflate, {}, std::exchange(openBytes_, {})});
    Hand({Job::Kind::kEnd, lengthObject_, Packing::kDeflate, {}, {}});
}

void PdfFile::Finish(unsigned int catalogue, unsigned int info) {
    FlushObjects();
    worker_.reset();
    const std::uint64_t start = writer_->GetPosition();
    const unsigned int table = Reserve();

    std::vector<const Member*> members(objectCount_ + 1, nullptr);
    for (const Member& member : members_) members[member.number] = &member;
    const std::uint64_t greatest = std::max<std::uint64_t>(start, objectCount_);
    std::size_t offsetBytes = 1;
    while (offsetBytes < 8 && greatest >> (8 * offsetBytes) != 0) ++offsetBytes;
    constexpr std::size_t kKindBytes = 1, kIndexBytes = 1;
    static_assert(kObjectsInStream <= 0xFF);
    const std::size_t rowBytes = kKindBytes + offsetBytes + kIndexBytes;
    std::string rows, before(rowBytes, '\0');
    rows.reserve((rowBytes + 1) * (objectCount_ + 1));
    for (unsigned int number = 0; number <= objectCount_; ++number) {
        std::uint64_t kind = 0, place = 0, index = 0;
        if (number == table) {
            kind = 1, place = start;
        } else if (members[number]) {
            kind = 2, place = members[number]->stream, index = members[number]->index;
        } else if (number > 0 && writer_->GetOffset(number) != 0) {
            kind = 1, place = writer_->GetOffset(number);
        }
        std::string row(1, static_cast<char>(kind));
        for (std::size_t i = offsetBytes; i-- > 0;) row += static_cast<char>(place >> (8 * i));
        row += static_cast<char>(index);
        rows += '\2';  // PNG predictor Up: each byte minus the one above it
        for (std::size_t i = 0; i < rowBytes; ++i)
            rows +=
                static_cast<char>(static_cast<unsigned char>(row[i]) - static_cast<unsigned char>(before[i]));
        before = std::move(row);
    }
    const std::string digest = writer_->GetDigest();
    const std::string entries = "/Type/XRef/Size " + std::to_string(objectCount_ + 1) + "/W[1 " +
                                std::to_string(offsetBytes) + " 1]/Root " + PdfReference(catalogue) +
                                "/Info " + PdfReference(info) + "/ID[<" + digest + "><" + digest +
                                ">]/DecodeParms<</Predictor 12/Columns " + std::to_string(rowBytes) + ">>";
    writer_->Write({Job::Kind::kWhole, table, Packing::kDeflate, entries, std::move(rows)});
    writer_->Put("startxref\n" + std::to_string(start) + "\n%%EOF\n");
}
