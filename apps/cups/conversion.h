// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/cups/settings.h"

/// Bytes in an unnamed file, in the filters' temporary folder. They disappear with the process, however it
/// ends.
class HeldPages {
public:
    HeldPages() = default;
    ~HeldPages();
    HeldPages(const HeldPages&) = delete;
    HeldPages& operator=(const HeldPages&) = delete;

    /// Creates the file.
    /// @return false with errno
    bool Open();
    int GetDescriptor() const { return descriptor_; }
    /// Copies the contents to another descriptor.
    /// @return false with errno
    bool CopyTo(int descriptor) const;

private:
    int descriptor_ = -1;
};

/// How a run of the command ended, and its messages.
struct Conversion {
    int exitCode = 0;
    int signal = 0;                  ///< signal that terminated it; 0: none
    std::vector<std::string> lines;  ///< its standard error, up to a limit
};

/// From here on until EndBySignalCaught, signals that terminate the filter terminate the command as well.
void CatchEndingSignals();
/// If a signal was caught in the meantime, terminates the process by it; otherwise returns.
void EndBySignalCaught();

/// Runs the command to print a drawing as PDF. It gets the drawing's bytes without a name, reads no file that
/// the drawing names, and enters its own sandbox.
/// @param drawing  descriptor of the bytes
/// @param pages    descriptor that receives the PDF
/// @return false with errno if the command could not be started
bool Convert(const FilterSettings& settings, int drawing, int pages, Conversion& conversion);
