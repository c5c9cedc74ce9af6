// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/cups/settings.h"

/// Data in an unnamed file, in the print system's folder for filters. It disappears with the process, however
/// that ends.
class HeldPages {
public:
    HeldPages() = default;
    ~HeldPages();
    HeldPages(const HeldPages&) = delete;
    HeldPages& operator=(const HeldPages&) = delete;

    /// Creates the file. @return false with errno set
    bool Open();
    int GetDescriptor() const { return descriptor_; }
    /// Copies all data to another descriptor. @return false with errno set
    bool CopyTo(int descriptor) const;

private:
    int descriptor_ = -1;
};

/// Exit status of the command, and its messages.
struct Conversion {
    int exitCode = 0;
    int signal = 0;                  ///< that ended it; 0 for none
    std::vector<std::string> lines;  ///< lines of standard error, up to a limit
};

/// From now on until EndBySignalCaught, signals that end the filter also end the command.
void CatchEndingSignals();
/// Ends the process by the signal caught meanwhile, with its default action; returns if there was none.
void EndBySignalCaught();

/// Runs the command to print a drawing as PDF. The drawing has no name; the command reads no files it refers
/// to, and has its own sandbox.
/// @param drawing  descriptor to read the drawing from
/// @param pages    descriptor to write the PDF to
/// @return false with errno set if the command could not be started
bool Convert(const FilterSettings& settings, int drawing, int pages, Conversion& conversion);
