// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "platform/system/ORVPrintLimits.h"
#include "platform/system/ORVUnicodeString.h"

class ORVPrtModel;

/// Callback that examines a print model before it is rendered.
class ORVPrintModelInspector {
public:
    virtual ~ORVPrintModelInspector() = default;
    /// Called once for each Print, in the printing thread. An exception ends the print.
    virtual void Inspect(const ORVPrtModel& model) = 0;
};

/// Parameters of one rendering.
class ORVPrintParameters {
public:
    /// Default limit of primitives that one Draw may visit; shared ones count each time.
    static constexpr std::uint64_t kDefaultDrawLimit = 200'000'000;

    /// Takes the limits from ORVPrintLimits, as they are at this moment.
    ORVPrintParameters()
        : drawLimit_(ORVPrintLimits::Get(ORVPrintLimit::kDrawn)),
          repeatLimit_(ORVPrintLimits::Get(ORVPrintLimit::kRepeats)),
          pageLimit_(ORVPrintLimits::Get(ORVPrintLimit::kPages)) {}

    /// Largest number of primitives that one Draw may visit; shared ones count each time.
    void SetDrawLimit(std::uint64_t limit) { drawLimit_ = limit; }
    std::uint64_t GetDrawLimit() const { return drawLimit_; }
    /// Largest number of repeats of shared primitives; every distinct primitive raises it. See
    /// ORVPrintLimit::kRepeats.
    void SetRepeatLimit(std::uint64_t limit) { repeatLimit_ = limit; }
    std::uint64_t GetRepeatLimit() const { return repeatLimit_; }
    /// Largest number of pages that one Draw may output.
    void SetPageLimit(std::uint64_t limit) { pageLimit_ = limit; }
    std::uint64_t GetPageLimit() const { return pageLimit_; }

    /// Pages to draw when all pages are drawn, numbered from 1, in output order. Empty for every page.
    /// Numbers beyond the last page are ignored.
    void SetPages(std::vector<unsigned int> pages) { pages_ = std::move(pages); }
    const std::vector<unsigned int>& GetPages() const { return pages_; }

    /// Title of the output; when empty, the title of the first page.
    void SetTitle(ORVUnicodeString title) { title_ = std::move(title); }
    const ORVUnicodeString& GetTitle() const { return title_; }

    /// Identifier of an element that the generator is to be told about: the first occurrence is reported as a
    /// group with that identifier, as if a link led to it. Empty for none.
    void SetReportedElement(ORVUnicodeString id) { reportedElement_ = std::move(id); }
    /// See SetReportedElement.
    const ORVUnicodeString& GetReportedElement() const { return reportedElement_; }

    /// Declares that the interpreter will not be used after this print. It releases its document, frees long
    /// outlines as soon as they are drawn, and afterwards behaves as if it had no document.
    void SetIsLast(bool isLast) { isLast_ = isLast; }
    /// See SetIsLast.
    bool IsLast() const { return isLast_; }

    /// Not owned and must outlive the print; null for none.
    void SetModelInspector(ORVPrintModelInspector* inspector) { inspector_ = inspector; }
    ORVPrintModelInspector* GetModelInspector() const { return inspector_; }

private:
    std::uint64_t drawLimit_, repeatLimit_, pageLimit_;
    std::vector<unsigned int> pages_;
    ORVUnicodeString title_, reportedElement_;
    bool isLast_ = false;
    ORVPrintModelInspector* inspector_ = nullptr;
};
