// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "platform/xml/ORVXmlNode.h"

class ORVPrtModel;

/// Maps the primitives of a model to source elements. A row is a page or a primitive, counted from 0 in the
/// order of the model's dump: each precedes its children.
struct ModelRows {
    /// For each page, the rows of its primitives in rendering order, indexed from 0. Pieces of closed figures
    /// are not counted.
    std::vector<std::vector<std::uint32_t>> ofOrigins;
    /// For each row, the element it was made from, counted from 1 in document order; 0 if unknown, as for
    /// copies made by references and pieces of paths.
    std::vector<std::uint32_t> elements;
};

/// Numbers the rows of a model and matches them with the elements of its document. Containers whose
/// primitives do not correspond one to one to their elements are skipped. Takes time proportional to both.
/// @param root  the element the model was built from
/// @param top   the document's first element, from which elements are counted
ModelRows CountModelRows(const ORVPrtModel& model, const ORVXmlNode& root, const ORVXmlNode& top);
