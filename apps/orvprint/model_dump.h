#pragma once

#include <cstdint>

class JsonWriter;
class ORVPrtModel;

/// Primitives that a dump may hold, shared ones counted each time.
inline constexpr std::uint64_t kDumpLimit = 20'000'000;

/// True when the model's pages hold more primitives than a dump may.
bool IsTooLargeToDump(const ORVPrtModel& model);

/// Writes the array of the model's pages, each with all its primitives and their attributes. Neither the
/// depth of the tree nor the number of its primitives costs memory worth mentioning.
void DumpPages(const ORVPrtModel& model, JsonWriter& json);
