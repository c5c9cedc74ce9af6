// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

#include "platform/system/ORVFailure.h"
#include "platform/system/ORVPrintLimits.h"

/// Counts what building a model takes, so that hostile input ends in an answer. Shared by the model and its
/// primitives through a count of its own (not atomic). What was taken is never given back.
class ORVPrtPrimitiveBudget {
public:
    /// The other limits are those of the process at this moment.
    explicit ORVPrtPrimitiveBudget(std::uint64_t limit)
        : limit_(limit),
          duplicateLimit_(ORVPrintLimits::Get(ORVPrintLimit::kDuplicates)),
          visitLimit_(ORVPrintLimits::Get(ORVPrintLimit::kVisits)),
          pixelLimit_(ORVPrintLimits::Get(ORVPrintLimit::kDocumentPixels)) {}

    /// Takes one primitive; false when the budget is used up.
    bool Take() {
        if (taken_ >= limit_) return Refuse(ORVPrintLimit::kPrimitives);
        if (memoryRefusals_ >= kMostMemoryRefusals) return false;
        ++taken_;
        return true;
    }
    /// Takes one primitive that is the duplicate of another.
    /// @param payloadBytes  bytes of points and text in it
    bool TakeDuplicate(std::uint64_t payloadBytes) {
        const std::uint64_t units = 1 + payloadBytes / orvprint::kPayloadUnit;
        if (duplicateUnits_ + units > duplicateLimit_ + GetGrowth())
            return Refuse(ORVPrintLimit::kDuplicates);
        if (!Take()) return false;
        ++duplicates_;
        duplicateUnits_ += units;
        return true;
    }
    /// Visits that walks through the model may still make.
    std::uint64_t GetVisitsLeft() const {
        const std::uint64_t most = visitLimit_ + GetGrowth();
        return most > visits_ ? most - visits_ : 0;
    }
    /// Notes visits that were made; none are left when the walk had to be given up.
    void NoteVisits(std::uint64_t visits) {
        visits_ += visits;
        if (GetVisitsLeft() == 0) Refuse(ORVPrintLimit::kVisits);
    }
    /// True when images may still be decoded.
    bool MayTakePixels() { return pixels_ <= pixelLimit_ || Refuse(ORVPrintLimit::kDocumentPixels); }
    /// Notes a decoded image; what its file pays for does not count.
    void NotePixels(std::uint64_t pixels, std::uint64_t fileBytes) {
        const std::uint64_t free = fileBytes * orvprint::kPixelsPerFileByte;
        if (pixels > free) pixels_ += pixels - free;
    }

    /// Primitives taken so far.
    std::uint64_t GetTaken() const { return taken_; }
    /// Those of the primitives taken that are duplicates.
    std::uint64_t GetDuplicates() const { return duplicates_; }
    /// Whether no primitive is left.
    bool IsSpent() const { return taken_ >= limit_; }

    /// Notes that something was left out because of a limit. @return false
    bool Refuse(ORVPrintLimit limit) {
        if (!refusal_) refusal_ = limit;
        return false;
    }
    /// The first limit that something was left out for; none when no limit was reached.
    const std::optional<ORVPrintLimit>& GetRefusal() const { return refusal_; }

    /// Notes that something was left out because there was no memory for it.
    void NoteMemorySpent() { ++memoryRefusals_; }
    /// True when something was left out for want of memory.
    bool IsMemorySpent() const { return memoryRefusals_ > 0; }
    /// After so many times, no primitive is had any more: each refusal takes the system time, and millions
    /// may be left.
    static constexpr std::uint64_t kMostMemoryRefusals = 1000;

    /// Notes that a text could not be set as it should, so that its font or the room that it takes is wrong.
    void NoteUnsetText() { hasUnsetText_ = true; }
    /// Whether a text could not be set.
    bool HasUnsetText() const { return hasUnsetText_; }

    /// Why the model is not that of the whole document; nothing when it is.
    ORVFailure GetFailure() const {
        if (refusal_) return ORVFailure::OfLimit(*refusal_);
        if (IsMemorySpent()) return ORVFailure::OutOfMemory();
        return hasUnsetText_ ? ORVFailure::Of(ORVFailureReason::kTextNotSet) : ORVFailure();
    }

    /// Adds a reference.
    void AddRef() { ++references_; }
    /// Gives a reference back; the last one destroys the budget.
    void Release() {
        if (--references_ == 0) delete this;
    }

private:
    std::uint64_t GetGrowth() const { return orvprint::kGrowthPerPrimitive * (taken_ - duplicates_); }

    std::uint64_t limit_, duplicateLimit_, visitLimit_, pixelLimit_;
    std::uint64_t taken_ = 0, duplicates_ = 0, duplicateUnits_ = 0, visits_ = 0, pixels_ = 0;
    std::uint64_t references_ = 1;
    std::optional<ORVPrintLimit> refusal_;
    std::uint64_t memoryRefusals_ = 0;
    bool hasUnsetText_ = false;
};
