// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "platform/system/ORVPrintLimits.h"
#include "platform/system/ORVUnicodeString.h"

class ORVPrtModel;

/// Looks at a print model just before it is rendered.
class ORVPrintModelInspector {
public:
    virtual ~ORVPrintModelInspector() = default;
    /// Called in the thread that prints, once for each Print. What is thrown ends the print.
    virtual void Inspect(const ORVPrtModel& model) = 0;
};

/// What the host asks of one rendering.
class ORVPrintParameters {
public:
    /// Primitives that one Draw may visit when the host says nothing else; shared ones count each time.
    static constexpr std::uint64_t kDefaultDrawLimit = 200'000'000;

    /// The limits are those of the process at this moment.
    ORVPrintParameters()
        : drawLimit_(ORVPrintLimits::Get(ORVPrintLimit::kDrawn)),
          repeatLimit_(ORVPrintLimits::Get(ORVPrintLimit::kRepeats)),
          pageLimit_(ORVPrintLimits::Get(ORVPrintLimit::kPages)) {}

    /// Primitives that one Draw may visit; shared ones count each time.
    void SetDrawLimit(std::uint64_t limit) { drawLimit_ = limit; }
    std::uint64_t GetDrawLimit() const { return drawLimit_; }
    /// Repeats of shared primitives, of which every distinct one allows some more; see ORVPrintLimit.
    void SetRepeatLimit(std::uint64_t limit) { repeatLimit_ = limit; }
    std::uint64_t GetRepeatLimit() const { return repeatLimit_; }
    /// Pages that one Draw may consist of.
    void SetPageLimit(std::uint64_t limit) { pageLimit_ = limit; }
    std::uint64_t GetPageLimit() const { return pageLimit_; }

    /// Pages that a drawing of all pages consists of, 1-based, in the order in which they come out; none
    /// for every page. Numbers beyond the model's pages draw nothing.
    void SetPages(std::vector<unsigned int> pages) { pages_ = std::move(pages); }
    const std::vector<unsigned int>& GetPages() const { return pages_; }

    /// Title of the output; the first page's title when empty.
    void SetTitle(ORVUnicodeString title) { title_ = std::move(title); }
    const ORVUnicodeString& GetTitle() const { return title_; }

    /// Identifier of an element that generators are to hear of: the first place that shows it is reported as
    /// a group of that identifier, as though a link led to it. Empty for none.
    void SetReportedElement(ORVUnicodeString id) { reportedElement_ = std::move(id); }
    /// See SetReportedElement.
    const ORVUnicodeString& GetReportedElement() const { return reportedElement_; }

    /// Nothing is going to be asked of the interpreter after this print: it lets go of its document, and of
    /// long outlines as soon as they are drawn, and answers from then on like one without a document.
    void SetIsLast(bool isLast) { isLast_ = isLast; }
    /// See SetIsLast.
    bool IsLast() const { return isLast_; }

    /// Not owned; null for none.
    void SetModelInspector(ORVPrintModelInspector* inspector) { inspector_ = inspector; }
    ORVPrintModelInspector* GetModelInspector() const { return inspector_; }

private:
    std::uint64_t drawLimit_, repeatLimit_, pageLimit_;
    std::vector<unsigned int> pages_;
    ORVUnicodeString title_, reportedElement_;
    bool isLast_ = false;
    ORVPrintModelInspector* inspector_ = nullptr;
};
