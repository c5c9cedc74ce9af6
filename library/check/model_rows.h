// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "platform/xml/ORVXmlNode.h"

class ORVPrtModel;

/// Where the primitives of a model come from. A row is a page or a primitive, counted from 0 in the order of
/// the model's dump: each before what it holds.
struct ModelRows {
    /// For each page, the rows of its primitives as the renderer comes to them, the first one's at 0. Pieces
    /// of closed figures are not among them.
    std::vector<std::vector<std::uint32_t>> ofOrigins;
    /// For each row, the element it was made of, counted from 1 in document order; 0 when it is not known,
    /// as of what a reference repeats and of pieces of paths.
    std::vector<std::uint32_t> elements;
};

/// Counts the rows of a model, and joins them with the elements of its document. A container whose
/// primitives do not answer its elements one by one is not looked into. Takes time in proportion to both.
/// @param root  what the model was built from
/// @param top   the document's first element, from which elements are counted
ModelRows CountModelRows(const ORVPrtModel& model, const ORVXmlNode& root, const ORVXmlNode& top);
