// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/system/ORVFailure.h"

class JsonWriter;
class ORVPrtModel;

/// True when the pages repeat shared primitives more often than the limit of repeats allows.
bool IsTooLargeToDump(const ORVPrtModel& model);

/// Why a model cannot be dumped; nothing when it can.
ORVFailure WhyNotDumped(const ORVPrtModel& model);

/// Writes the array of the model's pages, each with all its primitives and their attributes. Neither the
/// depth of the tree nor the number of its primitives costs memory worth mentioning.
void DumpPages(const ORVPrtModel& model, JsonWriter& json);
