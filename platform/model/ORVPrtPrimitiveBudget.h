// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

#include "platform/system/ORVFailure.h"
#include "platform/system/ORVPrintLimits.h"

/// Resources used to build a model, with limits against hostile input. Shared by the model and its
/// primitives; reference counted (not atomic). Freed primitives are not credited.
class ORVPrtPrimitiveBudget {
public:
    /// @param limit  of primitives; the other limits are taken from ORVPrintLimits
    explicit ORVPrtPrimitiveBudget(std::uint64_t limit)
        : limit_(limit),
          duplicateLimit_(ORVPrintLimits::Get(ORVPrintLimit::kDuplicates)),
          visitLimit_(ORVPrintLimits::Get(ORVPrintLimit::kVisits)),
          pixelLimit_(ORVPrintLimits::Get(ORVPrintLimit::kDocumentPixels)) {}

    /// Counts one primitive; false when the limit is reached.
    bool Take() {
        if (taken_ >= limit_) return Refuse(ORVPrintLimit::kPrimitives);
        if (memoryRefusals_ >= kMostMemoryRefusals) return false;
        ++taken_;
        return true;
    }
    /// Counts one duplicate of a primitive; false when a limit is reached.
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
    /// Number of visits that walks through the model may still make.
    std::uint64_t GetVisitsLeft() const {
        const std::uint64_t most = visitLimit_ + GetGrowth();
        return most > visits_ ? most - visits_ : 0;
    }
    /// Counts visits. When none are left, kVisits is noted as refused.
    void NoteVisits(std::uint64_t visits) {
        visits_ += visits;
        if (GetVisitsLeft() == 0) Refuse(ORVPrintLimit::kVisits);
    }
    /// True while further images may be decoded.
    bool MayTakePixels() { return pixels_ <= pixelLimit_ || Refuse(ORVPrintLimit::kDocumentPixels); }
    /// Counts the pixels of a decoded image, less the allowance for the size of its file.
    void NotePixels(std::uint64_t pixels, std::uint64_t fileBytes) {
        const std::uint64_t free = fileBytes * orvprint::kPixelsPerFileByte;
        if (pixels > free) pixels_ += pixels - free;
    }

    /// Number of primitives so far.
    std::uint64_t GetTaken() const { return taken_; }
    /// Number of duplicates among them.
    std::uint64_t GetDuplicates() const { return duplicates_; }
    /// Whether the limit of primitives is reached.
    bool IsSpent() const { return taken_ >= limit_; }

    /// Notes that something was omitted because of a limit. @return false
    bool Refuse(ORVPrintLimit limit) {
        if (!refusal_) refusal_ = limit;
        return false;
    }
    /// The first limit that caused something to be omitted; nullopt for none.
    const std::optional<ORVPrintLimit>& GetRefusal() const { return refusal_; }

    /// Notes that something was omitted because memory was exhausted.
    void NoteOutOfMemory() { ++memoryRefusals_; }
    /// True when something was omitted because memory was exhausted.
    bool IsOutOfMemory() const { return memoryRefusals_ > 0; }
    /// After this many failed allocations, no more are attempted: each one takes time in the system, and
    /// millions might follow.
    static constexpr std::uint64_t kMostMemoryRefusals = 1000;

    /// Notes that a text could not be set correctly, so that its font or extent is wrong.
    void NoteUnsetText() { hasUnsetText_ = true; }
    /// Whether a text could not be set correctly.
    bool HasUnsetText() const { return hasUnsetText_; }

    /// Why the model is incomplete or incorrect; kNone when it is not.
    ORVFailure GetFailure() const {
        if (refusal_) return ORVFailure::OfLimit(*refusal_);
        if (IsOutOfMemory()) return ORVFailure::OutOfMemory();
        return hasUnsetText_ ? ORVFailure::Of(ORVFailureReason::kTextNotSet) : ORVFailure();
    }

    /// Adds a reference.
    void AddRef() { ++references_; }
    /// Releases a reference; the last one destroys the budget.
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
