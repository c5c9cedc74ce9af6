#pragma once

#include <cstddef>
#include <string>

/// Sets the allocator up for what the command does: many small pieces that live as long as a drawing.
/// Once, before anything else.
void TuneAllocation();

/// Makes room in `bytes` for a document of `size` bytes, and has large pages ready for it and for the model
/// that it is going to be, where the system has such pages and the document is large enough to gain by them.
/// @throws std::bad_alloc when there is no room for the document itself
void MakeRoomForDocument(std::string& bytes, std::size_t size);
