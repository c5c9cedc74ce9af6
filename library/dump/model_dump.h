// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/system/ORVFailure.h"

class JsonWriter;
class ORVPrtModel;

/// Whether the pages repeat shared primitives more often than the limit of repeats allows.
bool IsTooLargeToDump(const ORVPrtModel& model);

/// Why a model cannot be dumped; empty if it can.
ORVFailure WhyNotDumped(const ORVPrtModel& model);

/// Writes an array of the model's pages, each with all its primitives and their attributes. Memory use does
/// not depend on the depth of the tree or the number of primitives.
void DumpPages(const ORVPrtModel& model, JsonWriter& json);
