// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/print/ORVPrintFilter.h"

/// Where the results of a filter's steps show anything, step by step, in user units; empty for nothing.
/// @param content  what of the content shows anything, in user units
std::vector<ORVMathBox2D> ORVExtentsOfFilter(const ORVPrintFilter& filter, const ORVMathBox2D& content);

/// What of the page a filter shows anything on, at most.
/// @param content  what of the page its content would show anything on
ORVMathBox2D ORVReachOfFilter(const ORVPrintFilter& filter, const ORVMathBox2D& content);
