// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "apps/orvprint/commands/print_command.h"
#include "apps/orvprint/commands/sheet_options.h"
#include "apps/orvprint/printing/PrinterConnection.h"

class CommandOptions;

/// Command-line arguments for a printer.
struct DirectArguments {
    std::string printer;  ///< name or address; empty to print to files
    unsigned int copies = 1;
    std::string title;
    std::vector<std::string> options;  ///< NAME=VALUE or NAME each, as for lp
    bool waits = false;
};

/// Adds the printer options to a command, as a group.
void AddDirectOptions(CommandOptions& command, DirectArguments& arguments);

/// Prints on a printer. The printer is queried first, because its paper determines the sheets; then a
/// sandboxed process prints the drawings to an unnamed file, which this process, in which no drawing is read,
/// sends to the printer.
class DirectPrinting {
public:
    explicit DirectPrinting(const DirectArguments& arguments) : arguments_(arguments) {}

    /// Queries the printer and completes the paper options that were not given.
    /// @return an exit code; a failure was reported
    int Prepare(SheetWords& sheet, PrintOptions& print);
    /// Prints, sends and, if requested, waits. @return an exit code
    int Run(PrintOptions print);

private:
    int Render(PrintOptions& print, int pages) const;
    int SendPages(const PrintOptions& print, int pages);

    const DirectArguments& arguments_;
    std::unique_ptr<PrinterConnection> connection_;
    PrinterNeeds needs_;
    PrinterJob job_;
};

/// Lists printers. @return an exit code
int RunPrinters();
