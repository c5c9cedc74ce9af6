// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

/// A printer in a list.
struct PrinterFacts {
    std::string name, location, state;
    std::vector<std::string> formats;  ///< our formats that it accepts; empty if unknown
    bool isDefault = false;
};

/// A paper size of a printer. Lengths are in millimetres.
struct PrinterMedium {
    std::string name;  ///< name in the print system
    double width = 0.0, height = 0.0;
    double top = 0.0, right = 0.0, bottom = 0.0, left = 0.0;  ///< unprintable margins
};

/// What to send to a printer.
struct PrinterNeeds {
    std::string format;  ///< preferred format: "pdf", otherwise "pwg", otherwise "urf"
    PrinterMedium medium;
    double dotsPerInch = 0.0;             ///< for raster formats
    bool isGrey = false, isMono = false;  ///< accepts no colour pixels, or only black ones
};

/// A print job.
struct PrinterJob {
    std::string title;
    unsigned int copies = 1;
    std::vector<std::pair<std::string, std::string>> options;  ///< options of the print system, as for lp
};

/// A connection to the print system, for use by one thread. Functions returning false set one line of
/// `error`; the only exception is std::bad_alloc.
class PrinterConnection {
public:
    PrinterConnection() = default;
    PrinterConnection(const PrinterConnection&) = delete;
    PrinterConnection& operator=(const PrinterConnection&) = delete;
    virtual ~PrinterConnection() = default;

    /// Lists all printers known to the print system.
    virtual bool List(std::vector<PrinterFacts>& printers, std::string& error) = 0;

    /// Finds a printer by name or by address ("ipp://host/...").
    virtual bool Open(const std::string& printer, std::string& error) = 0;
    /// Asks what to send to the printer.
    /// @param medium  a paper name; empty for the printer's default
    virtual bool Ask(const std::string& medium, PrinterNeeds& needs, std::string& error) = 0;
    /// Prints a file.
    /// @param document  descriptor, read from the beginning
    /// @param number    receives the job number
    virtual bool Send(const PrinterJob& job, const PrinterNeeds& needs, int document, int& number,
                      std::string& error) = 0;
    /// Waits until the job has ended.
    /// @param tell  called with each new state, such as "printing, 2 sheets"
    /// @return false with the reason if it was not printed
    virtual bool Wait(int number, const std::function<void(const std::string& state)>& tell,
                      std::string& error) = 0;
};

/// The module that uses the print system's library, and its exported function: it takes no arguments and
/// returns a new connection, or null when out of memory.
inline constexpr const char* kPrintingModule = "liborvprinting.so";
inline constexpr const char* kPrintingFactory = "ORVCreatePrinterConnection";
using PrinterConnectionFactory = PrinterConnection* (*)();
