#pragma once

#include <cstdint>

/// Counts the primitives allocated for a model, so that hostile input ends in an answer. Shared by the
/// model and its primitives through a count of its own (not atomic).
class ORVPrtPrimitiveBudget {
public:
    explicit ORVPrtPrimitiveBudget(std::uint64_t limit) : limit_(limit) {}

    /// Takes one primitive; false when the budget is spent. What was taken is never given back.
    bool Take() {
        if (taken_ >= limit_) return false;
        ++taken_;
        return true;
    }
    std::uint64_t GetTaken() const { return taken_; }
    bool IsSpent() const { return taken_ >= limit_; }

    void AddRef() { ++references_; }
    void Release() {
        if (--references_ == 0) delete this;
    }

private:
    std::uint64_t limit_;
    std::uint64_t taken_ = 0;
    std::uint64_t references_ = 1;
};
