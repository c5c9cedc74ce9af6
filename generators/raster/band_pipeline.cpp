// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/band_pipeline.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <exception>
#include <iterator>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "generators/common/exception_text.h"
#include "generators/common/generator_status.h"
#include "generators/raster/band_renderer.h"
#include "generators/raster/image_store.h"

namespace {

// Pixels of a band: few enough for the cells to fit the processor's cache, enough to compress well.
constexpr int kPixelsOfBand = 1 << 18;
constexpr int kMostRows = 256, kFewestRows = 8;
// Maximum memory of all threads for bands, in bytes. Wide pages use fewer threads.
constexpr std::size_t kBandMemory = std::size_t{128} << 20U;
constexpr std::size_t kBytesOfPixel = 10;  // cells, colours, compressed bytes

/// Finds the pieces that touch each band. A piece is active from its first band to its last.
class BandQueue {
public:
    BandQueue(const DisplayList& list, int bandRows) : list_(list), bandRows_(bandRows) {
        const RasterSequence<RasterPiece>& pieces = list.GetPieces();
        bandCount_ = (list.GetHeight() + bandRows - 1) / bandRows;
        // Sorts pieces by first band, keeping the drawing order.
        starts_.assign(static_cast<std::size_t>(bandCount_) + 1, 0);
        for (std::size_t i = 0; i < pieces.GetSize(); ++i) ++starts_[BandOf(pieces[i].firstRow) + 1];
        for (std::size_t i = 1; i < starts_.size(); ++i) starts_[i] += starts_[i - 1];
        order_.resize(pieces.GetSize());
        std::vector<std::uint32_t> next(starts_.begin(), starts_.end() - 1);
        for (std::uint32_t i = 0; i < pieces.GetSize(); ++i) order_[next[BandOf(pieces[i].firstRow)]++] = i;
    }

    int GetBandCount() const { return bandCount_; }
    bool IsEmpty() const { return band_ == bandCount_; }
    /// Advances to the next band. @return its index
    int Next(std::vector<std::uint32_t>& pieces) {
        const auto band = static_cast<std::size_t>(band_);
        pieces.clear();
        std::merge(carried_.begin(), carried_.end(), order_.begin() + starts_[band],
                   order_.begin() + starts_[band + 1], std::back_inserter(pieces));
        carried_.clear();
        const int nextRow = (band_ + 1) * bandRows_;
        std::copy_if(pieces.begin(), pieces.end(), std::back_inserter(carried_),
                     [&](std::uint32_t i) { return list_.GetPieces()[i].lastRow >= nextRow; });
        return band_++;
    }

private:
    std::size_t BandOf(int row) const { return static_cast<std::size_t>(row / bandRows_); }

    const DisplayList& list_;
    const int bandRows_;
    int bandCount_ = 0, band_ = 0;
    std::vector<std::uint32_t> starts_, order_, carried_;
};

/// A finished band on its way to the sink.
struct FinishedBand {
    RasterBand band;  // pixels only if the sink writes them unencoded
    std::vector<std::uint8_t> bytes;
    bool isDone = false;
};

/// Renders, encodes and writes bands. Each thread takes the next band; the number of bands waiting for the
/// sink is bounded.
class BandPipeline {
public:
    /// @param failure  receives the exception, as an error
    BandPipeline(const DisplayList& list, const RasterPageInfo& info, PaintBudget& budget, ORVBandSink& sink,
                 ORVFailure& failure)
        : list_(list),
          info_(info),
          budget_(budget),
          sink_(sink),
          failure_(failure),
          queue_(list, info.bandRows) {}

    int Run(unsigned int threads) {
        most_ = threads + 1;
        std::vector<std::thread> workers;
        int status = kGeneratorDone;
        try {
            if (queue_.GetBandCount() == 1)
                Work();  // a separate thread would have no benefit
            else
                for (unsigned int i = 0; i < threads; ++i) workers.emplace_back([this] { Work(); });
        } catch (const std::exception&) {
            // Continue with fewer threads, unless there is none.
            if (workers.empty()) status = Fail();
        }
        try {
            if (status == kGeneratorDone) status = WriteBands();
        } catch (const std::exception&) {
            status = Fail();  // the threads must end first
        }
        {
            const std::lock_guard lock(mutex_);
            stopped_ = true;
        }
        taken_.notify_all();
        for (std::thread& worker : workers) worker.join();
        images_.Clear();
        return status;
    }

private:
    /// Records the exception being handled. Only the first failure is kept.
    int Fail() {
        const std::lock_guard lock(mutex_);
        if (!failure_) ORVNameException(failure_);
        failed_ = true;
        return kDrawingFailed;
    }

    /// Passes finished bands to the sink, in order.
    int WriteBands() {
        int status = kGeneratorDone;
        for (int band = 0; band < queue_.GetBandCount() && status == kGeneratorDone; ++band) {
            FinishedBand finished;
            {
                std::unique_lock lock(mutex_);
                arrived_.wait(lock,
                              [&] { return failed_ || (!waiting_.empty() && waiting_.front().isDone); });
                if (failed_) return budget_.IsSpent() ? kTooMuchToPaint : kDrawingFailed;
                finished = std::move(waiting_.front());
                waiting_.pop_front();
                ++firstWaiting_;
            }
            taken_.notify_all();
            status = sink_.WriteBand(finished.band, finished.bytes);
            const std::lock_guard lock(mutex_);
            spare_.push_back(std::move(finished.bytes));
        }
        return status;
    }

    void Work() {
        try {
            // A page may have fewer rows than a band.
            BandRenderer renderer(list_, images_, budget_, info_.pixels,
                                  std::min(info_.bandRows, info_.height));
            std::vector<std::uint32_t> pieces;
            std::vector<std::uint8_t> bytes;
            while (true) {
                int number = 0;
                {
                    std::unique_lock lock(mutex_);
                    taken_.wait(lock, [&] { return stopped_ || failed_ || waiting_.size() < most_; });
                    if (stopped_ || failed_ || queue_.IsEmpty()) return;
                    waiting_.emplace_back();
                    number = queue_.Next(pieces);
                }
                const int firstRow = number * info_.bandRows;
                const RasterBand band =
                    renderer.Render(firstRow, std::min(info_.bandRows, info_.height - firstRow), pieces);
                if (budget_.IsSpent()) break;
                bytes.clear();
                sink_.EncodeBand(band, bytes);
                {
                    const std::lock_guard lock(mutex_);
                    FinishedBand& finished = waiting_[static_cast<std::size_t>(number - firstWaiting_)];
                    finished.band = band;
                    finished.band.pixels = finished.band.isDrawn = nullptr;
                    finished.bytes = std::move(bytes);
                    finished.isDone = true;
                    bytes = {};
                    if (!spare_.empty()) {
                        bytes = std::move(spare_.back());
                        spare_.pop_back();
                    }
                }
                arrived_.notify_one();
            }
            const std::lock_guard lock(mutex_);
            failed_ = true;
        } catch (const std::exception&) {
            Fail();
        }
        arrived_.notify_one();
        taken_.notify_all();
    }

    const DisplayList& list_;
    const RasterPageInfo& info_;
    PaintBudget& budget_;
    ORVBandSink& sink_;
    ORVFailure& failure_;
    ImageStore images_;
    std::mutex mutex_;
    std::condition_variable arrived_, taken_;
    BandQueue queue_;
    std::deque<FinishedBand> waiting_;
    std::vector<std::vector<std::uint8_t>> spare_;  // buffers of written bands, for reuse
    int firstWaiting_ = 0;
    std::size_t most_ = 1;
    bool stopped_ = false, failed_ = false;
};

}  // namespace

int ORVRowsOfBand(int width) { return std::clamp(kPixelsOfBand / width, kFewestRows, kMostRows); }

int ORVDrawBands(const DisplayList& list, const RasterPageInfo& info, unsigned int threads,
                 PaintBudget& budget, ORVBandSink& sink, ORVFailure& failure) {
    if (list.GetLayerRowBytes() > BandRenderer::kMostLayerRowBytes) return kTooMuchToPaint;
    const std::size_t bytesOfBand =
        static_cast<std::size_t>(info.width) * static_cast<std::size_t>(info.bandRows) * kBytesOfPixel +
        list.GetLayerRowBytes() * static_cast<std::size_t>(BandRenderer::RowsOfStrip(list, info.bandRows));
    const std::size_t affordable = std::max<std::size_t>(kBandMemory / bytesOfBand, 1);
    const int bands = (info.height + info.bandRows - 1) / info.bandRows;
    const auto useful = static_cast<unsigned int>(
        std::min({static_cast<std::size_t>(threads), affordable, static_cast<std::size_t>(bands)}));
    try {
        return BandPipeline(list, info, budget, sink, failure).Run(std::max(useful, 1U));
    } catch (const std::exception&) {
        ORVNameException(failure);
        return kDrawingFailed;
    }
}
