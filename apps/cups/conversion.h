// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/cups/settings.h"

/// Bytes in a file without a name, in the folder that the print system gives filters. They go away with the
/// process, however it ends.
class HeldPages {
public:
    HeldPages() = default;
    ~HeldPages();
    HeldPages(const HeldPages&) = delete;
    HeldPages& operator=(const HeldPages&) = delete;

    /// Makes the file. @return false with errno
    bool Open();
    int GetDescriptor() const { return descriptor_; }
    /// Writes all of it to another descriptor. @return false with errno
    bool CopyTo(int descriptor) const;

private:
    int descriptor_ = -1;
};

/// How a run of the command ended, and what it said.
struct Conversion {
    int exitCode = 0;
    int signal = 0;                  ///< that ended it; 0 for none
    std::vector<std::string> lines;  ///< of its standard error, up to a limit
};

/// Signals that end the filter end the command, too, from here on until EndBySignalCaught.
void CatchEndingSignals();
/// Ends the process by the signal that was caught in the meantime, as it would have; returns if there was
/// none.
void EndBySignalCaught();

/// Has the command print a drawing as PDF. It reads the drawing's bytes, which have no name, reads no file
/// that the drawing names, and has its own sandbox.
/// @param drawing  descriptor of the bytes
/// @param pages    descriptor that takes the PDF
/// @return false with errno when the command could not be started
bool Convert(const FilterSettings& settings, int drawing, int pages, Conversion& conversion);
