// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "apps/orvprint/commands/print_command.h"
#include "apps/orvprint/commands/sheet_options.h"
#include "apps/orvprint/printing/PrinterConnection.h"

class CommandOptions;

/// The words of the command line about a printer.
struct DirectArguments {
    std::string printer;  ///< its name or address; empty to print into files
    unsigned int copies = 1;
    std::string title;
    std::vector<std::string> options;  ///< NAME=VALUE or NAME each, as lp takes them
    bool waits = false;
};

/// Adds the options of printers to a command, as a group of their own.
void AddDirectOptions(CommandOptions& command, DirectArguments& arguments);

/// Printing on a printer. The printer is asked first, for its paper decides on the sheets; then drawings are
/// printed by a process of their own, in the sandbox, into a file without a name; what came of it is sent
/// from here, where no drawing is read.
class DirectPrinting {
public:
    explicit DirectPrinting(const DirectArguments& arguments) : arguments_(arguments) {}

    /// Asks the printer, and completes the words about paper that were not said.
    /// @return an exit code; a failure was reported
    int Prepare(SheetWords& sheet, PrintOptions& print);
    /// Prints, sends, and waits if that is wanted. @return an exit code
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
